#include "simulator/State.h"

#include <QCryptographicHash>
#include <QJsonArray>

#include <array>
#include <span>

namespace simulator
{

namespace
{

struct ArticleRow
{
    char const* number = "";
    char const* installation = "";
    int cents = 0;
    bool isForTeeth = true;
};

constexpr std::array<ArticleRow, 9> articles = {{
    {"ART-10010", "INST-1001", 18'900},       // crown, zirconia
    {"ART-10020", "INST-1001", 24'550},       // crown on an implant
    {"ART-10030", "INST-1001", 9'990},        // temporary shell
    {"ART-10040", "INST-1001", 31'275},       // surgical template
    {"ART-20010", "INST-1001", 61'500},       // bar, titanium
    {"ART-30010", "INST-1001", 7'445, false}, // model, printed
    {"ART-40010", "INST-1001", 3'290, false}, // implant analog
    {"ART-10010", "INST-2002", 19'400},
    {"ART-30010", "INST-2002", 7'900, false},
}};

struct AddressRow
{
    char const* id;
    char const* installation;
    char const* name;
    char const* street;
    char const* postalCode;
    char const* city;
    char const* region;
    char const* country;
};

constexpr std::array<AddressRow, 3> addresses = {{
    {"ADR-501", "INST-1001", "Harbour Street Dental Practice", "Hafenstraße 12", "24103", "Kiel", "Schleswig-Holstein",
     "DE"},
    {"ADR-502", "INST-1001", "Harbour Street Dental Practice, Laboratory", "Am Kai 3", "24103", "Kiel",
     "Schleswig-Holstein", "DE"},
    {"ADR-601", "INST-2002", "Dr. Lindqvist Dental Surgery", "Storgatan 8", "411 24", "Göteborg", "Västra Götaland",
     "SE"},
}};

struct ItemRow
{
    char const* article = "";
    int firstTooth = 0;
    int lastTooth = 0;
    int files = 0;
};

struct OrderRow
{
    OrderKind kind;
    OrderState state; // while it awaits files, the first one is there
    char const* installation;
    std::span<ItemRow const> items;
};

constexpr ItemRow shells[] = {{"ART-10030", 16, 16, 1}, {"ART-10030", 25, 26, 1}};
constexpr ItemRow crowns[] = {{"ART-10010", 36, 36, 2}, {"ART-30010"}};
constexpr ItemRow bar[] = {{"ART-20010", 14, 24, 1}};
constexpr ItemRow crown[] = {{"ART-10010", 46, 46, 1}};
constexpr ItemRow analogs[] = {{"ART-40010"}};

// They are numbered in this order, from ORD-000001 on.
constexpr std::array<OrderRow, 7> seededOrders = {{
    {OrderKind::Production, OrderState::Checked, "INST-1001", shells},
    {OrderKind::Production, OrderState::AwaitingFiles, "INST-1001", crowns},
    {OrderKind::Production, OrderState::Shipped, "INST-1001", bar},
    {OrderKind::Lab, OrderState::InProduction, "INST-1001", crown},
    {OrderKind::CaseDesigner, OrderState::Received, "INST-1001", analogs},
    {OrderKind::Production, OrderState::Completed, "INST-1001", crown},
    {OrderKind::Production, OrderState::InProduction, "INST-2002", crown},
}};

/// What is in a seeded file: so that a missing one can be sent.
QByteArray contentOf(QString const& name)
{
    return QStringLiteral("solid %1\nendsolid %1\n").arg(name).toUtf8();
}

QJsonObject fileBody(QString const& name)
{
    auto const content = contentOf(name);
    auto const md5 = QCryptographicHash::hash(content, QCryptographicHash::Md5).toHex();
    return {
        {"Name", name},
        {"Size", QString::number(content.size())},
        {"ChunkSize", "65536"},
        {"CheckSum", QString::fromLatin1(md5)}};
}

QJsonObject itemBody(ItemRow const& row)
{
    QJsonArray files;
    for (int number = 1; number <= row.files; ++number)
    {
        files.append(fileBody(QStringLiteral("tooth-%1-%2.stl").arg(row.firstTooth).arg(number)));
    }
    return {
        {"ArticleNumber", row.article},
        {"Quantity", 1},
        {"ToothNumberStart", row.firstTooth},
        {"ToothNumberEnd", row.lastTooth},
        {"Files", files}};
}

QString addressOf(State const& state, QString const& installation)
{
    for (auto const& address : state.orders.addresses)
    {
        if (address.installation == installation)
        {
            return address.id;
        }
    }
    return {};
}

void addSeededOrder(State& state, OrderRow const& row)
{
    QJsonArray items;
    for (auto const& item : row.items)
    {
        items.append(itemBody(item));
    }
    auto& order = placeOrder(
        state, row.kind,
        {{"InstallationReference", row.installation},
         {"CreationFrontendVersion", "3.1.0"},
         {"FrontendVersion", "3.1.0"},
         {"AddressIdentifier", addressOf(state, row.installation)},
         {"OrderItems", items}});
    order.state = row.state;
    for (auto& item : order.items)
    {
        for (auto& slot : item.files)
        {
            slot.uploads = row.state == OrderState::AwaitingFiles && &slot != &item.files.front() ? 0 : 1;
            slot.receivedBytes = slot.uploads == 0 ? 0 : slot.size;
        }
    }
}

} // namespace

void seedOrders(State& state)
{
    for (auto const& row : articles)
    {
        state.orders.articles.push_back(
            {.id = row.number, .installation = row.installation, .cents = row.cents, .isForTeeth = row.isForTeeth});
    }
    for (auto const& row : addresses)
    {
        state.orders.addresses.push_back(
            {.id = row.id,
             .installation = row.installation,
             .name = row.name,
             .street = row.street,
             .postalCode = row.postalCode,
             .city = row.city,
             .region = row.region,
             .country = row.country});
    }
    for (auto const& row : seededOrders)
    {
        addSeededOrder(state, row);
    }
}

} // namespace simulator
