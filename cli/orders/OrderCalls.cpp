#include "cli/orders/OrderCalls.h"

#include <algorithm>

#include "cli/orders/OrderFile.h"
#include "cli/shell/Context.h"
#include "cli/shell/Input.h"

namespace cli
{

using namespace Qt::Literals::StringLiterals;

std::vector<PriceInfoResponse> pricesOf(OrderDraft const& draft, Context const& context)
{
    checkArticles(draft, context);
    return context.valueOf(context.connection().getPriceInfo(draft.prices));
}

std::vector<OrderDetails> orderStatus(QStringList const& references, Context const& context)
{
    OrderDetailsRequest request;
    request.setOrderReferences(references);
    auto const orders = context.valueOf(context.connection().getOrderStatus(request));
    for (QString const& reference : references)
    {
        bool const isKnown = std::any_of(
            orders.begin(), orders.end(),
            [&reference](OrderDetails const& order) { return order.getReference() == reference; });
        if (!isKnown)
        {
            throw Failure(ExitCode::ServiceError, u"The service has no order \"%1\"."_s.arg(reference));
        }
    }
    return orders;
}

QStringList orderReferences(QStringList const& texts)
{
    if (texts.isEmpty())
    {
        throw badInput(u"No order is given."_s);
    }
    QStringList references;
    for (QString const& text : texts)
    {
        references << identifier("order reference", text);
    }
    references.removeDuplicates();
    return references;
}

} // namespace cli
