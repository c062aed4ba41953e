#include "cli/commands/Commands.h"

#include <algorithm>
#include <limits>

#include <QThread>

#include "cli/Arguments.h"
#include "cli/Context.h"
#include "cli/Listing.h"
#include "cli/OrderCalls.h"
#include "cli/OrderView.h"

namespace cli
{

namespace
{

using namespace Qt::Literals::StringLiterals;

bool haveReached(std::vector<OrderDetails> const& orders, int state)
{
    return std::all_of(
        orders.begin(), orders.end(),
        [state](OrderDetails const& order) { return static_cast<int>(order.getState()) >= state; });
}

} // namespace

Action ordersWatch(Arguments& arguments)
{
    auto const orders = arguments.texts("ORDER", "References of orders");
    auto const interval = arguments.number("--interval", "Seconds between two looks; 10 unless given", 10);
    auto const last = arguments.number(
        "--until", "Ends when every order has reached this state, a number; never unless given",
        std::numeric_limits<int>::max());
    return [=](Context const& context)
    {
        auto const references = orderReferences(*orders);
        if (*interval <= 0)
        {
            throw badInput(u"The interval %1 is not positive."_s.arg(*interval));
        }
        QJsonValue shown;
        for (;;)
        {
            auto const status = orderStatus(references, context);
            if (auto const json = described(status); json != shown)
            {
                context.output().show(json, statusText(status));
                shown = json;
            }
            if (haveReached(status, *last))
            {
                return;
            }
            QThread::sleep(static_cast<unsigned long>(*interval));
        }
    };
}

} // namespace cli
