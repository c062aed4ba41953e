#include "cli/commands/Commands.h"

#include <QJsonObject>

#include "cli/Arguments.h"
#include "cli/Context.h"

namespace cli
{

using namespace Qt::Literals::StringLiterals;

Action connectionsStart(Arguments& arguments)
{
    auto const token = arguments.requiredText("--token", "The token that the partner gave out");
    auto const note = arguments.text("--note", "A note to the partner");
    return [=](Context const& context)
    {
        if (token->isEmpty())
        {
            throw badInput(u"The token is empty."_s);
        }
        StartConnectionRequest request;
        request.setInstallationReference(context.installation());
        request.setUserReference(context.user());
        request.setConnectionToken(*token);
        request.setNote(*note);
        auto const id = context.valueOf(context.connection().startConnection(request)).getConnectionId();
        context.output().show(
            QJsonObject{{u"ConnectionId"_s, id}}, u"Started the connection %1.\n"_s.arg(printable(id)));
    };
}

} // namespace cli
