#include "cli/Commands.h"

#include <QJsonObject>

#include "cli/requests/Session.h"
#include "cli/shell/Arguments.h"
#include "cli/shell/Context.h"

namespace cli
{

using namespace Qt::Literals::StringLiterals;

Action sessionsCreate(Arguments& arguments)
{
    auto const connection =
        arguments.text("--connection,--partner", "The partner connection's id; none without a partner");
    return [=](Context const& context)
    {
        auto const id = openSession(context, checkedConnection(*connection));
        context.output().showDone(QJsonObject{{u"SessionId"_s, id}}, u"Opened the session %1.\n"_s.arg(printable(id)));
    };
}

} // namespace cli
