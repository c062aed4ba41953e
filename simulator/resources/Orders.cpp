#include "simulator/resources/Orders.h"

#include "simulator/Lookup.h"
#include "simulator/State.h"
#include "simulator/resources/OrderChecks.h"

#include <QJsonDocument>

#include <algorithm>
#include <map>
#include <numeric>

namespace simulator
{

namespace
{

using namespace orders;

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
    constexpr char const* states[] = {"AwaitingFiles", "Received", "Checked", "InProduction", "Shipped", "Completed"};
    json.insert("Files", files);
    json.insert("Kind", kinds[static_cast<int>(order.kind)]);
    json.insert("StateName", states[static_cast<int>(order.state)]);
    json.insert("CanAdvance", order.state != OrderState::AwaitingFiles && order.state != OrderState::Completed);
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
