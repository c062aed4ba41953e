#include "cli/Commands.h"

#include <QJsonObject>

#include "cli/shell/Arguments.h"
#include "cli/shell/Context.h"
#include "cli/shell/Input.h"

namespace cli
{

using namespace Qt::Literals::StringLiterals;

Action requestsUrl(Arguments& arguments)
{
    auto const id = arguments.requiredText("REQUEST", "The id of a restoration request");
    return [=](Context const& context)
    {
        RequestRestorationDetailsInfo info;
        info.setInstallationReference(context.installation());
        info.setRequestIds({identifier("request id", *id)});
        auto const reply = context.connection().getRestorationURL(info, *id);
        auto const url = context.finished(reply).get().first;
        context.check(context.untoldStatus(), Shape::Object);
        if (url.isEmpty())
        {
            throw Failure(
                ExitCode::ServiceError, u"The installation has no restoration request \"%1\" with a URL."_s.arg(*id));
        }
        context.output().show(QJsonObject{{u"RequestId"_s, *id}, {u"Url"_s, url}}, printable(url) + u'\n');
    };
}

} // namespace cli
