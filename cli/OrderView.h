#pragma once

#include <vector>

#include <QJsonArray>
#include <QString>

#include <KeloCommunicationLib/orders/OrderStatusRecords.h>
#include <KeloCommunicationLib/orders/PriceRecords.h>
#include <KeloCommunicationLib/orders/TempShellRecords.h>

/// How orders look, for programs and for people. JSON members are named as in the service's own replies.
namespace cli
{

QJsonArray pricesJson(std::vector<PriceInfoResponse> const& prices);
QString pricesText(std::vector<PriceInfoResponse> const& prices);

QJsonArray statusJson(std::vector<OrderDetails> const& orders);
QString statusText(std::vector<OrderDetails> const& orders);

QJsonArray shellsJson(QList<TempShellFile> const& shells);
QString shellsText(QList<TempShellFile> const& shells);

} // namespace cli
