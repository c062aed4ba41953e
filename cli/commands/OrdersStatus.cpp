#include "cli/commands/Commands.h"

#include "cli/Arguments.h"
#include "cli/Context.h"
#include "cli/Listing.h"
#include "cli/OrderCalls.h"
#include "cli/OrderView.h"

namespace cli
{

Action ordersStatus(Arguments& arguments)
{
    auto const orders = arguments.texts("ORDER", "References of orders");
    return [=](Context const& context)
    {
        auto const status = orderStatus(orderReferences(*orders), context);
        context.output().show(described(status), statusText(status));
    };
}

} // namespace cli
