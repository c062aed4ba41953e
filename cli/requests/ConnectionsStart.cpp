#include "cli/Commands.h"

#include "cli/shell/Arguments.h"
#include "cli/shell/Context.h"
#include "cli/shell/Listing.h"

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
        auto const started = context.valueOf(context.connection().startConnection(request));
        context.output().showDone(
            jsonSerializer::describe(started),
            u"Started the connection %1.\n"_s.arg(printable(started.getConnectionId())));
    };
}

} // namespace cli
