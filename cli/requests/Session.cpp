#include "cli/requests/Session.h"

#include "cli/shell/Context.h"
#include "cli/shell/Input.h"

namespace cli
{

using namespace Qt::Literals::StringLiterals;

QString checkedConnection(QString const& connectionId)
{
    return connectionId.isNull() ? QString() : identifier("connection id", connectionId);
}

QString openSession(Context const& context, QString const& connectionId)
{
    auto& connection = context.connection();
    auto const session = connectionId.isNull() ? connection.createCollaborationSession(context.installation())
                                               : connection.createCollaborationSession(CreateCollaborationSessionInfo(
                                                   connectionId, context.installation(), context.user()));
    QString const id = context.valueOf(session).getSessionId();
    if (id.isEmpty())
    {
        throw Failure(ExitCode::NoConnection, u"The service opened a session without an id."_s);
    }
    return id;
}

} // namespace cli
