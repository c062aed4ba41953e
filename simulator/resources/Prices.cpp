#include "simulator/resources/Prices.h"

#include "simulator/Routing.h"
#include "simulator/State.h"

#include <algorithm>

namespace simulator
{

namespace
{

constexpr auto unknownVoucher = vouchers[3];

enum class PriceType : int
{
    List = 1,
    LocalProduction = 2
};

constexpr Member itemMembers[] = {
    {"ArticleNumber", Kind::Text},     {"Quantity", Kind::Integer}, {"ToothNumberStart", Kind::Integer},
    {"ToothNumberEnd", Kind::Integer}, {"VoucherCode", Kind::Text}, {"IsLocalProductionArticle", Kind::Boolean},
};
constexpr Member simulationMembers[] = {
    {"InstallationReference", Kind::Text},
    {"OrderItems", Kind::Objects, true, itemMembers},
};

Voucher voucherOf(QString const& code)
{
    auto const* const found = std::find_if(
        vouchers.begin(), vouchers.end(), [&code](Voucher const& row) { return code == QLatin1String(row.code); });
    return found == vouchers.end() ? unknownVoucher : *found;
}

QJsonObject priceOf(Article const& article, QJsonObject const& item)
{
    auto const isLocal = item["IsLocalProductionArticle"].toBool();
    auto const cents = isLocal ? article.cents * 3 / 5 : article.cents;
    auto const voucher = voucherOf(item["VoucherCode"].toString());
    auto const centsOff = cents * voucher.percentOff / 100;
    QJsonObject price = {
        {"ArticleNumber", article.id},
        {"ArticlePrice", cents / 100.0},
        {"OriginalVoucherCode", item["VoucherCode"]},
        {"Quantity", item["Quantity"]},
        {"ToothNumberStart", item["ToothNumberStart"]},
        {"ToothNumberEnd", item["ToothNumberEnd"]},
        {"VoucherDiscountPrice", centsOff / 100.0},
        {"Currency", "EUR"},
        {"PriceType", static_cast<int>(isLocal ? PriceType::LocalProduction : PriceType::List)},
    };
    if (*voucher.message != '\0')
    {
        price.insert("VoucherMessage", voucher.message);
    }
    return price;
}

Answer simulatePrices(Call const& call)
{
    auto const installation = knownInstallation(call.state, call.text("InstallationReference"));
    QJsonArray prices;
    for (QJsonValue const value : call["OrderItems"].toArray())
    {
        auto const item = value.toObject();
        prices.append(priceOf(checkedArticle(call.state, installation, item), item));
    }
    return Answer::json(prices);
}

} // namespace

std::vector<Route> priceRoutes()
{
    return {{"getPriceInfo", "POST", "/Orders/simulation", simulationMembers, simulatePrices}};
}

} // namespace simulator
