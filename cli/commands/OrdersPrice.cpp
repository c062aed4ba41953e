#include "cli/commands/Commands.h"

#include "cli/Arguments.h"
#include "cli/Context.h"
#include "cli/Listing.h"
#include "cli/OrderCalls.h"
#include "cli/OrderFile.h"
#include "cli/OrderView.h"

namespace cli
{

Action ordersPrice(Arguments& arguments)
{
    auto const file = arguments.requiredText("ORDER.json", "The order file; its files are not looked at");
    return [=](Context const& context)
    {
        auto const prices = pricesOf(readOrder(*file, context), context);
        context.output().show(described(prices), pricesText(prices));
    };
}

} // namespace cli
