#pragma once

#include <vector>

#include <QStringList>

#include <KeloCommunicationLib/orders/OrderStatusRecords.h>
#include <KeloCommunicationLib/orders/PriceRecords.h>

/// Calls that several order commands make. Each throws a Failure when there is no outcome.
namespace cli
{

class Context;
struct OrderDraft;

/// The prices of the order's items, after a check that its articles may be ordered at all.
std::vector<PriceInfoResponse> pricesOf(OrderDraft const& draft, Context const& context);

/// The states of these orders; a Failure if the service does not know one of them.
std::vector<OrderDetails> orderStatus(QStringList const& references, Context const& context);

/// The given texts as order references, checked: at least one.
QStringList orderReferences(QStringList const& texts);

} // namespace cli
