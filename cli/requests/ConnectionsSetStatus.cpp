#include "cli/Commands.h"

#include <QJsonObject>

#include "cli/shell/Arguments.h"
#include "cli/shell/Context.h"
#include "cli/shell/Input.h"

namespace cli
{

using namespace Qt::Literals::StringLiterals;

Action connectionsSetStatus(Arguments& arguments)
{
    auto const id = arguments.requiredText("CONNECTION", "The connection's id");
    auto const status =
        arguments.requiredText("STATUS", "The new status, by its name or its number", connectionStatusNames);
    return [=](Context const& context)
    {
        UpdateConnectionStatusRequest request;
        request.setConnectionId(identifier("connection id", *id));
        request.setInstallationReference(context.installation());
        request.setStatus(connectionStatus(*status));
        context.valueOf(context.connection().updateConnectionStatus(request));
        QString const name = nameOf(request.getStatus());
        context.output().showDone(
            QJsonObject{{u"ConnectionId"_s, *id}, {u"Status"_s, name}},
            u"The connection %1 is now %2.\n"_s.arg(*id, name));
    };
}

} // namespace cli
