#include "cli/Commands.h"

#include <algorithm>
#include <limits>
#include <utility>
#include <vector>

#include <QThread>

#include "cli/orders/OrderCalls.h"
#include "cli/orders/OrderView.h"
#include "cli/shell/Arguments.h"
#include "cli/shell/Context.h"
#include "cli/shell/Input.h"
#include "cli/shell/Listing.h"

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

/// Looks again and again; a look that is lost is told once, and the next ones wait longer and longer.
class Watch
{
public:
    Watch(QStringList const& references, int seconds, Context const& context)
        : references_(references), seconds_(seconds), context_(context)
    {
    }

    /// The next look that succeeds; the first look of all has to.
    std::vector<OrderDetails> look()
    {
        bool isTold = false;
        for (int wait = seconds_;; wait = std::max(seconds_, std::min(wait, longestWait / 2) * 2))
        {
            if (hasLooked_)
            {
                QThread::sleep(static_cast<unsigned long>(wait));
            }
            try
            {
                auto const status = orderStatus(references_, context_);
                hasLooked_ = true;
                return status;
            }
            catch (Failure const& failure)
            {
                if (!hasLooked_ || failure.code() != ExitCode::NoConnection)
                {
                    throw;
                }
                if (!std::exchange(isTold, true))
                {
                    writeError(
                        failure.told(failure.message() + " - Trying again until you end it."_L1),
                        context_.output().isJson());
                }
            }
        }
    }

private:
    static constexpr int longestWait = 300;

    QStringList references_;
    int seconds_;
    Context const& context_;
    bool hasLooked_ = false;
};

} // namespace

Action ordersWatch(Arguments& arguments)
{
    auto const orders = arguments.texts("ORDER", "References of orders");
    auto const interval = arguments.number("--interval", "Seconds between two looks; 10 unless given", 10);
    auto const until = arguments.text(
        "--until",
        "Ends when every order has reached this state or a later one: a number, whose meaning is the service's own; "
        "never unless given");
    return [=](Context const& context)
    {
        auto const references = orderReferences(*orders);
        if (*interval <= 0)
        {
            throw badInput(u"The interval %1 is not positive."_s.arg(*interval));
        }
        int const last = until->isNull() ? std::numeric_limits<int>::max() : serviceNumber("state", *until);
        QJsonValue shown;
        Watch watch(references, *interval, context);
        for (;;)
        {
            auto const status = watch.look();
            if (auto const json = described(status); json != shown)
            {
                context.output().show(json, statusText(status));
                shown = json;
            }
            if (haveReached(status, last))
            {
                return;
            }
        }
    };
}

} // namespace cli
