#include "cli/OrderView.h"

#include <algorithm>

#include <QJsonObject>
#include <QStringList>

#include "cli/Output.h"

namespace cli
{

namespace
{

using namespace Qt::Literals::StringLiterals;

QString teethText(int first, int last)
{
    return first == 0 && last == 0 ? u"-"_s : first == last ? QString::number(first) : u"%1-%2"_s.arg(first).arg(last);
}

/// The service's own code; it has no wording here.
QString messageText(VoucherMessage message)
{
    switch (message)
    {
    case VoucherMessage::None:
        return {};
    case VoucherMessage::MsgM999:
        return u"MSG_VOUCHER_M999"_s;
    default:
        return u"MSG_VOUCHER_%1"_s.arg(static_cast<int>(message) - static_cast<int>(VoucherMessage::Msg100) + 100);
    }
}

QString moneyText(double amount)
{
    return QString::number(amount, 'f', 2);
}

template <class List, class Convert>
QJsonArray arrayOf(List const& list, Convert convert)
{
    QJsonArray array;
    std::transform(list.begin(), list.end(), std::back_inserter(array), convert);
    return array;
}

QJsonObject priceJson(PriceInfoResponse const& price)
{
    return {
        {u"ArticleNumber"_s, price.articleNumber},
        {u"Quantity"_s, price.quantity},
        {u"ToothNumberStart"_s, price.toothNumberStart},
        {u"ToothNumberEnd"_s, price.toothNumberEnd},
        {u"ArticlePrice"_s, price.articlePrice},
        {u"VoucherDiscountPrice"_s, price.voucherDiscountPrice},
        {u"Currency"_s, price.currency},
        {u"OriginalVoucherCode"_s, price.originalVoucherCode},
        {u"VoucherMessage"_s, messageText(price.voucherMessage)}};
}

QJsonObject itemJson(OrderItemDetails const& item)
{
    return {
        {u"ArticleNumber"_s, item.getArticleNumber()},
        {u"State"_s, static_cast<int>(item.getState())},
        {u"ToothNumberStart"_s, item.getToothNumberStart()},
        {u"ToothNumberEnd"_s, item.getToothNumberEnd()}};
}

QJsonObject orderJson(OrderDetails const& order)
{
    return {
        {u"Reference"_s, order.getReference()},
        {u"State"_s, static_cast<int>(order.getState())},
        {u"OrderItems"_s, arrayOf(order.getOrderItems(), itemJson)}};
}

QJsonObject shellJson(TempShellFile const& shell)
{
    return {
        {u"Id"_s, shell.getFileId()},
        {u"Name"_s, shell.getFileName()},
        {u"FileSize"_s, shell.getFileSize()},
        {u"ArticleNumber"_s, shell.getArticleNumber()},
        {u"ToothNumberStart"_s, shell.getToothNumberStart()},
        {u"ToothNumberEnd"_s, shell.getToothNumberEnd()}};
}

} // namespace

QJsonArray pricesJson(std::vector<PriceInfoResponse> const& prices)
{
    return arrayOf(prices, priceJson);
}

QString pricesText(std::vector<PriceInfoResponse> const& prices)
{
    std::vector<QStringList> rows;
    for (auto const& price : prices)
    {
        QString const outcome = messageText(price.voucherMessage);
        rows.push_back(
            {price.articleNumber, QString::number(price.quantity),
             teethText(price.toothNumberStart, price.toothNumberEnd), moneyText(price.articlePrice),
             moneyText(price.voucherDiscountPrice), price.currency,
             u"%1 %2"_s.arg(price.originalVoucherCode, outcome).trimmed()});
    }
    return tableText(
        {u"ARTICLE"_s, u"QUANTITY"_s, u"TEETH"_s, u"PRICE"_s, u"DISCOUNT"_s, u"CURRENCY"_s, u"VOUCHER"_s}, rows);
}

QJsonArray statusJson(std::vector<OrderDetails> const& orders)
{
    return arrayOf(orders, orderJson);
}

QString statusText(std::vector<OrderDetails> const& orders)
{
    std::vector<QStringList> rows;
    for (auto const& order : orders)
    {
        rows.push_back({order.getReference(), QString::number(static_cast<int>(order.getState())), {}, {}, {}});
        auto const items = order.getOrderItems();
        for (auto const& item : items)
        {
            rows.push_back(
                {{},
                 {},
                 item.getArticleNumber(),
                 teethText(item.getToothNumberStart(), item.getToothNumberEnd()),
                 QString::number(static_cast<int>(item.getState()))});
        }
    }
    return tableText({u"ORDER"_s, u"STATE"_s, u"ARTICLE"_s, u"TEETH"_s, u"ITEM STATE"_s}, rows);
}

QJsonArray shellsJson(QList<TempShellFile> const& shells)
{
    return arrayOf(shells, shellJson);
}

QString shellsText(QList<TempShellFile> const& shells)
{
    std::vector<QStringList> rows;
    for (auto const& shell : shells)
    {
        rows.push_back(
            {shell.getFileId(), shell.getFileName(), QString::number(shell.getFileSize()), shell.getArticleNumber(),
             teethText(shell.getToothNumberStart(), shell.getToothNumberEnd())});
    }
    return tableText({u"ID"_s, u"NAME"_s, u"BYTES"_s, u"ARTICLE"_s, u"TEETH"_s}, rows);
}

} // namespace cli
