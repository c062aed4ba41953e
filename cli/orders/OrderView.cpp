#include "cli/orders/OrderView.h"

#include <QStringList>

#include "cli/shell/Listing.h"

namespace cli
{

namespace
{

using namespace Qt::Literals::StringLiterals;

QString teethText(int first, int last)
{
    return first == 0 && last == 0 ? u"-"_s : first == last ? QString::number(first) : u"%1-%2"_s.arg(first).arg(last);
}

QString moneyText(double amount)
{
    return QString::number(amount, 'f', 2);
}

} // namespace

QString pricesText(std::vector<PriceInfoResponse> const& prices)
{
    return tableOf(
        {{u"ARTICLE"_s, Cells::Copied},
         u"QUANTITY"_s,
         u"TEETH"_s,
         u"PRICE"_s,
         u"DISCOUNT"_s,
         u"CURRENCY"_s,
         u"VOUCHER"_s},
        prices,
        [](PriceInfoResponse const& price) -> QStringList
        {
            // The service's own code; it has no wording here.
            QString const outcome = jsonSerializer::describe(price)[u"VoucherMessage"].toString();
            return {
                price.articleNumber,
                QString::number(price.quantity),
                teethText(price.toothNumberStart, price.toothNumberEnd),
                moneyText(price.articlePrice),
                moneyText(price.voucherDiscountPrice),
                price.currency,
                u"%1 %2"_s.arg(price.originalVoucherCode, outcome).trimmed()};
        });
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
    return tableText(
        {{u"ORDER"_s, Cells::Copied}, u"STATE"_s, {u"ARTICLE"_s, Cells::Copied}, u"TEETH"_s, u"ITEM STATE"_s}, rows);
}

QString shellsText(QList<TempShellFile> const& shells)
{
    return tableOf(
        {{u"ID"_s, Cells::Copied}, u"NAME"_s, {u"BYTES"_s, Cells::Whole}, u"ARTICLE"_s, u"TEETH"_s}, shells,
        [](TempShellFile const& shell) -> QStringList
        {
            return {
                shell.getFileId(), shell.getFileName(), QString::number(shell.getFileSize()), shell.getArticleNumber(),
                teethText(shell.getToothNumberStart(), shell.getToothNumberEnd())};
        });
}

} // namespace cli
