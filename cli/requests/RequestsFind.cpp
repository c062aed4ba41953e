#include "cli/Commands.h"

#include "cli/shell/Arguments.h"
#include "cli/shell/Context.h"
#include "cli/shell/Input.h"
#include "cli/shell/Listing.h"

namespace cli
{

using namespace Qt::Literals::StringLiterals;

Action requestsFind(Arguments& arguments)
{
    auto const key = arguments.text("--key", "The request's key");
    auto const order = arguments.text("--order", "The number of the sales order that belongs to the request");
    return [=](Context const& context)
    {
        if (key->isNull() == order->isNull())
        {
            throw badInput(u"Give either --key or --order."_s);
        }
        auto const& connection = context.connection();
        auto const found =
            order->isNull()
                ? connection.getRequestId(
                    context.installation(), collaboration::RequestKeyRequest{identifier("key", *key)})
                : connection.getRequestId(
                    context.installation(), collaboration::SalesOrderNumberRequest{identifier("order number", *order)});
        auto const answer = context.valueOf(found);
        context.output().show(jsonSerializer::describe(answer), printable(answer.requestId) + u'\n');
    };
}

} // namespace cli
