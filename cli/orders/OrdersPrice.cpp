#include "cli/Commands.h"

#include "cli/orders/OrderCalls.h"
#include "cli/orders/OrderFile.h"
#include "cli/orders/OrderView.h"
#include "cli/shell/Arguments.h"
#include "cli/shell/Context.h"
#include "cli/shell/Listing.h"

namespace cli
{

Action ordersPrice(Arguments& arguments)
{
    auto const file = arguments.requiredText(
        "ORDER.json", "The order file, - for standard input; its files are not looked at", Offer::Kind::Files);
    return [=](Context const& context)
    {
        auto const prices = pricesOf(readOrder(*file, context), context);
        context.output().show(described(prices), pricesText(prices));
    };
}

} // namespace cli
