#include "cli/Commands.h"

#include <QJsonObject>

#include "cli/shell/Arguments.h"
#include "cli/shell/Context.h"
#include "cli/shell/Input.h"

namespace cli
{

using namespace Qt::Literals::StringLiterals;

Action requestsUnlock(Arguments& arguments)
{
    auto const id = arguments.requiredText("REQUEST", "The request's id");
    return [=](Context const& context)
    {
        context.valueOf(
            context.connection().unlockTemplateRequest(context.installation(), identifier("request id", *id)));
        context.output().showDone(
            QJsonObject{{u"RequestId"_s, *id}, {u"Unlocked"_s, true}},
            u"Unlocked the file of the request %1.\n"_s.arg(*id));
    };
}

} // namespace cli
