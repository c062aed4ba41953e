#include "simulator/resources/Orders.h"

#include "simulator/Lookup.h"
#include "simulator/Routing.h"
#include "simulator/State.h"

#include <QJsonDocument>
#include <QRegularExpression>
#include <QVersionNumber>

#include <algorithm>
#include <limits>
#include <map>
#include <numeric>

namespace simulator
{

namespace
{

// ---- what an installation may order, and where it may be sent ----------------------------------------------------

Answer listArticles(Call const& call)
{
    auto const numbers = jsonOfInstallation(
        call.state.orders.articles, knownInstallation(call.state, call.id()),
        [](Article const& article) { return article.id; });
    return Answer::json(QJsonObject{{"ArticleNumbers", numbers}});
}

QJsonObject addressJson(ShippingAddress const& address)
{
    return {
        {"Identifier", address.id},         {"Name", address.name}, {"Street", address.street},
        {"PostalCode", address.postalCode}, {"City", address.city}, {"Region", address.region},
        {"Country", address.country},
    };
}

Answer listAddresses(Call const& call)
{
    auto const addresses =
        jsonOfInstallation(call.state.orders.addresses, knownInstallation(call.state, call.id()), addressJson);
    return Answer::json(QJsonObject{{"Addresses", addresses}});
}

// ---- creating orders -----------------------------------------------------------------------------------------------

constexpr Member fileMembers[] = {
    {"Name", Kind::Text},
    {"Size", Kind::DecimalText},
    {"ChunkSize", Kind::DecimalText},
    {"CheckSum", Kind::Text},
};
constexpr Member productionItemMembers[] = {
    {"ArticleNumber", Kind::Text},       {"Quantity", Kind::Integer},
    {"ToothNumberStart", Kind::Integer}, {"ToothNumberEnd", Kind::Integer},
    {"RemakeCode", Kind::Text},          {"VoucherCode", Kind::Text},
    {"CadStatus", Kind::Text},           {"Files", Kind::Objects, true, fileMembers},
};
constexpr Member productionMembers[] = {
    {"InstallationReference", Kind::Text}, {"CreationFrontendVersion", Kind::Text},
    {"FrontendVersion", Kind::Text},       {"AddressIdentifier", Kind::Text},
    {"ProductionNote", Kind::Text},        {"OriginalOrderNumber", Kind::Text},
    {"InvoiceReference", Kind::Text},      {"StudyId", Kind::Text},
    {"StudyParticipantId", Kind::Text},    {"ClinicianZipCode", Kind::Text},
    {"ClinicianName", Kind::Text},         {"OrderItems", Kind::Objects, true, productionItemMembers},
};
constexpr Member labItemMembers[] = {
    {"ArticleNumber", Kind::Text},     {"ManufacturerReference", Kind::Text},
    {"Quantity", Kind::Integer},       {"ToothNumberStart", Kind::Integer},
    {"ToothNumberEnd", Kind::Integer}, {"Files", Kind::Objects, true, fileMembers},
};
constexpr Member labMembers[] = {
    {"InstallationReference", Kind::Text},
    {"CreationFrontendVersion", Kind::Text},
    {"FrontendVersion", Kind::Text},
    {"ProductionNote", Kind::Text},
    {"OrderItems", Kind::Objects, true, labItemMembers},
};
constexpr Member caseDesignerItemMembers[] = {
    {"ArticleNumber", Kind::Text},
    {"ManufacturerReference", Kind::Text},
    {"Quantity", Kind::Integer},
};
constexpr Member caseDesignerMembers[] = {
    {"InstallationReference", Kind::Text},
    {"CreationFrontendVersion", Kind::Text},
    {"FrontendVersion", Kind::Text},
    {"PatientId", Kind::Text},
    {"OrderItems", Kind::Objects, true, caseDesignerItemMembers},
};

void require(bool isRight, Reason reason, QString const& detail)
{
    if (!isRight)
    {
        throw Refusal(reason, detail);
    }
}

/// The teeth of the four quadrants are numbered 11 to 18, 21 to 28, 31 to 38 and 41 to 48.
bool isTooth(int number)
{
    auto const quadrant = number / 10;
    auto const position = number % 10;
    return quadrant >= 1 && quadrant <= 4 && position >= 1 && position <= 8;
}

bool isUpperJaw(int tooth)
{
    return tooth < 30;
}

void checkTeeth(Article const& article, QJsonObject const& item)
{
    auto const first = item["ToothNumberStart"].toInt();
    auto const last = item["ToothNumberEnd"].toInt();
    if (!article.isForTeeth)
    {
        require(first == 0 && last == 0, Reason::BadValue, article.id + " is not for teeth");
        return;
    }
    require(isTooth(first), Reason::BadValue, "ToothNumberStart");
    require(isTooth(last) && isUpperJaw(first) == isUpperJaw(last), Reason::BadValue, "ToothNumberEnd");
}

void checkVersion(QJsonObject const& body, char const* key)
{
    auto const text = body[QLatin1String(key)].toString();
    require(text.isEmpty() || !QVersionNumber::fromString(text).isNull(), Reason::BadValue, key);
}

void checkAddress(State const& state, QString const& installation, QString const& address)
{
    auto const& addresses = state.orders.addresses;
    auto const isKnown = std::any_of(
        addresses.begin(), addresses.end(),
        [&](ShippingAddress const& known) { return known.id == address && known.installation == installation; });
    require(isKnown, Reason::UnknownReference, "AddressIdentifier " + address);
}

UploadSlot checkedFile(QJsonObject const& file)
{
    static QRegularExpression const md5("^[0-9a-fA-F]{32}$");
    auto const size = file["Size"].toString().toLongLong();
    auto const chunkSize = file["ChunkSize"].toString().toLongLong();
    constexpr auto largest = std::numeric_limits<qint32>::max();
    require(!file["Name"].toString().isEmpty(), Reason::BadValue, "Name");
    require(size <= largest, Reason::BadValue, "Size");
    require(chunkSize > 0 && chunkSize <= largest, Reason::BadValue, "ChunkSize");
    require(md5.match(file["CheckSum"].toString()).hasMatch(), Reason::BadValue, "CheckSum");
    return {.name = file["Name"].toString(), .size = size, .md5 = file["CheckSum"].toString().toLatin1().toLower()};
}

OrderItem checkedItem(State const& state, QString const& installation, QJsonObject const& item)
{
    bool isNumber = true;
    if (auto const cadStatus = item["CadStatus"]; cadStatus.isString())
    {
        cadStatus.toString().toInt(&isNumber);
    }
    require(isNumber, Reason::BadValue, "CadStatus");
    OrderItem checked = {
        .articleNumber = checkedArticle(state, installation, item).id,
        .quantity = item["Quantity"].toInt(),
        .firstTooth = item["ToothNumberStart"].toInt(),
        .lastTooth = item["ToothNumberEnd"].toInt()};
    for (QJsonValue const file : item["Files"].toArray())
    {
        checked.files.push_back(checkedFile(file.toObject()));
    }
    return checked;
}

int missingFiles(Order const& order)
{
    return std::accumulate(
        order.items.begin(), order.items.end(), 0,
        [](int count, OrderItem const& item)
        {
            auto const isMissing = [](UploadSlot const& slot) { return slot.uploads == 0; };
            return count + static_cast<int>(std::count_if(item.files.begin(), item.files.end(), isMissing));
        });
}

/// For the orders that nobody else finishes.
void finishByItself(Order& order)
{
    if (order.kind != OrderKind::Production && missingFiles(order) == 0)
    {
        order.state = OrderState::Received;
    }
}

QJsonArray slotsJson(Order const& order)
{
    QJsonArray items;
    for (auto const& item : order.items)
    {
        QJsonArray files;
        for (auto const& slot : item.files)
        {
            files.append(QJsonObject{{"Name", slot.name}, {"Reference", slot.id}});
        }
        items.append(QJsonObject{{"ArticleNumber", item.articleNumber}, {"Files", files}});
    }
    return items;
}

Answer createOrder(Call const& call)
{
    auto const& order = placeOrder(call.state, OrderKind::Production, call.body);
    QJsonObject const json = {
        {"Reference", order.id},
        {"ProductionIdentifier", order.productionIdentifier},
        {"OrderItems", slotsJson(order)}};
    return Answer::json(QJsonObject{{"Order", json}});
}

Answer createServiceOrder(Call const& call)
{
    auto const installation = knownInstallation(call.state, call.id());
    require(call.text("InstallationReference") == installation, Reason::BadValue, "InstallationReference");
    return Answer::json(QJsonObject{{"OrderItems", slotsJson(placeOrder(call.state, OrderKind::Lab, call.body))}});
}

Answer createCaseDesignerOrder(Call const& call)
{
    placeOrder(call.state, OrderKind::CaseDesigner, call.body);
    return Answer::noContent();
}

// ---- uploads -------------------------------------------------------------------------------------------------------

/// The announced file with this reference and the order it belongs to.
std::pair<Order*, UploadSlot*> slotById(State& state, QString const& id)
{
    for (auto& order : state.orders.orders)
    {
        for (auto& item : order.items)
        {
            for (auto& slot : item.files)
            {
                if (slot.id == id)
                {
                    return {&order, &slot};
                }
            }
        }
    }
    throw Refusal(Reason::UnknownId, id);
}

Answer uploadFile(Call const& call)
{
    auto const [order, slot] = slotById(call.state, call.id());
    require(order->state == OrderState::AwaitingFiles, Reason::NotNow, "the upload of the order is finished");
    require(
        call.rawSize == slot->size, Reason::WrongContent,
        QStringLiteral("%1 bytes instead of %2").arg(call.rawSize).arg(slot->size));
    require(call.rawMd5 == slot->md5, Reason::WrongContent, "MD5 " + call.rawMd5 + " instead of " + slot->md5);
    ++slot->uploads;
    slot->receivedBytes = call.rawSize;
    finishByItself(*order);
    return Answer::noContent();
}

Answer finishUpload(Call const& call)
{
    auto& order = byId(call.state.orders.orders, call.id());
    auto const missing = missingFiles(order);
    require(missing == 0, Reason::NotNow, QStringLiteral("files missing: %1").arg(missing));
    order.state = std::max(order.state, OrderState::Received);
    return Answer::noContent();
}

// ---- following orders ----------------------------------------------------------------------------------------------

constexpr Member detailsMembers[] = {{"References", Kind::Texts}};

QJsonObject detailsJson(Order const& order)
{
    QJsonArray items;
    for (auto const& item : order.items)
    {
        items.append(QJsonObject{
            {"ArticleNumber", item.articleNumber},
            {"State", static_cast<int>(order.state)},
            {"ToothNumberStart", item.firstTooth},
            {"ToothNumberEnd", item.lastTooth}});
    }
    return {{"Reference", order.id}, {"State", static_cast<int>(order.state)}, {"OrderItems", items}};
}

Answer orderDetails(Call const& call)
{
    QJsonArray list;
    for (QJsonValue const reference : call["References"].toArray())
    {
        if (auto const* const order = call.state.orders.orders.find(reference.toString()))
        {
            list.append(detailsJson(*order));
        }
    }
    return Answer::json(list);
}

QJsonObject storedJson(Order const& order)
{
    auto json = detailsJson(order);
    QJsonArray files;
    for (auto const& item : order.items)
    {
        for (auto const& slot : item.files)
        {
            files.append(QJsonObject{
                {"Reference", slot.id},
                {"Name", slot.name},
                {"Size", slot.size},
                {"ReceivedBytes", slot.receivedBytes},
                {"Uploads", slot.uploads}});
        }
    }
    constexpr char const* kinds[] = {"Production", "Lab", "CaseDesigner"};
    json.insert("Files", files);
    json.insert("Kind", kinds[static_cast<int>(order.kind)]);
    json.insert("InstallationReference", order.installation);
    json.insert("ProductionIdentifier", order.productionIdentifier);
    json.insert("Request", order.request);
    return json;
}

} // namespace

// clang-format off
std::vector<Route> orderRoutes()
{
    return {
        {"getShippingAddresses", "GET", "/Installations/{}/addresses/shipto", {}, listAddresses},
        {"getAvailableArticles", "GET", "/Installations/{}/articles", {}, listArticles},
        {"createOrder", "POST", "/Orders", productionMembers, createOrder},
        {"createServiceOrder", "POST", "/Orders/lab/{}", labMembers, createServiceOrder},
        {"createIPSOrder", "POST", "/Orders/ipscasedesigner", caseDesignerMembers, createCaseDesignerOrder},
        {"uploadOrderFile", "PUT", "/Orders/files/{}", {}, uploadFile},
        {"postFinishCadOrder", "POST", "/Orders/{}/FinishUpload", {}, finishUpload},
        {"putFinishCadOrder", "PUT", "/Orders/{}/FinishUpload", {}, finishUpload},
        {"getOrderStatus", "POST", "/Orders/details", detailsMembers, orderDetails},
    };
}
// clang-format on

Article const& checkedArticle(State const& state, QString const& installation, QJsonObject const& item)
{
    auto const number = item["ArticleNumber"].toString();
    auto const& articles = state.orders.articles;
    auto const article = std::find_if(
        articles.begin(), articles.end(),
        [&](Article const& known) { return known.id == number && known.installation == installation; });
    require(article != articles.end(), Reason::UnknownReference, "ArticleNumber " + number);
    auto const quantity = item["Quantity"].toInt();
    require(quantity >= 1 && quantity <= 999, Reason::BadValue, "Quantity");
    if (item.contains("ToothNumberStart"))
    {
        checkTeeth(*article, item);
    }
    return *article;
}

Order& placeOrder(State& state, OrderKind kind, QJsonObject const& body)
{
    Order order = {
        .kind = kind,
        .installation = knownInstallation(state, body["InstallationReference"].toString()),
        .request = body};
    checkVersion(body, "CreationFrontendVersion");
    checkVersion(body, "FrontendVersion");
    if (kind == OrderKind::Production)
    {
        checkAddress(state, order.installation, body["AddressIdentifier"].toString());
    }
    for (QJsonValue const item : body["OrderItems"].toArray())
    {
        order.items.push_back(checkedItem(state, order.installation, item.toObject()));
    }
    require(!order.items.empty(), Reason::BadValue, "OrderItems");
    order.id = state.newId("ORD");
    order.productionIdentifier = state.newId("PROD");
    for (auto& item : order.items)
    {
        for (auto& slot : item.files)
        {
            slot.id = state.newId("UPLOAD");
        }
    }
    finishByItself(order);
    state.tick();
    return state.orders.orders.add(std::move(order));
}

Answer advanceOrder(Call const& call)
{
    require(call.text("Action") == QLatin1String("advanceOrder"), Reason::BadValue, "Action");
    auto& order = byId(call.state.orders.orders, call.text("Reference"));
    require(order.state != OrderState::AwaitingFiles, Reason::NotNow, "the upload of the order is not finished");
    auto const next = static_cast<int>(order.state) + 1;
    order.state = std::min(static_cast<OrderState>(next), OrderState::Completed);
    return Answer::json(detailsJson(order));
}

Answer storedOrders(Call const& call)
{
    auto const twins = [](Order const& order)
    { return std::pair(order.kind, QJsonDocument(order.request).toJson(QJsonDocument::Compact)); };
    std::map<std::pair<OrderKind, QByteArray>, int> counts;
    for (auto const& order : call.state.orders.orders)
    {
        ++counts[twins(order)];
    }
    QJsonArray list;
    for (auto const& order : call.state.orders.orders)
    {
        auto json = storedJson(order);
        json.insert("TimesCreated", counts[twins(order)]);
        list.append(json);
    }
    return Answer::json(list);
}

} // namespace simulator
