#pragma once

#include <vector>

#include <QString>

#include <KeloCommunicationLib/orders/OrderStatusRecords.h>
#include <KeloCommunicationLib/orders/PriceRecords.h>
#include <KeloCommunicationLib/orders/TempShellRecords.h>

/// How orders look for people.
namespace cli
{

QString pricesText(std::vector<PriceInfoResponse> const& prices);

QString statusText(std::vector<OrderDetails> const& orders);

QString shellsText(QList<TempShellFile> const& shells);

} // namespace cli
