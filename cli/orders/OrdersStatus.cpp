#include "cli/Commands.h"

#include "cli/orders/OrderCalls.h"
#include "cli/orders/OrderView.h"
#include "cli/shell/Arguments.h"
#include "cli/shell/Context.h"
#include "cli/shell/Listing.h"

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
