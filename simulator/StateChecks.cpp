#include "simulator/StateChecks.h"

#include <QStringList>
#include <QVersionNumber>

#include <algorithm>

namespace simulator
{

namespace
{

/// Calls for each element, with its place.
template <class List, class Check>
void each(char const* place, List const& list, Check check)
{
    auto number = 0;
    for (auto const& element : list)
    {
        check(element, QStringLiteral("%1[%2]").arg(QLatin1String(place)).arg(number++));
    }
}

void checkReference(bool isKnown, QString const& place, QString const& id)
{
    require(isKnown, Reason::UnknownReference, place, id);
}

template <class List>
void checkInstallations(State const& state, char const* place, List const& list)
{
    each(
        place, list,
        [&state](auto const& element, QString const& at) {
            checkReference(
                state.installations.contains(element.installation), at + ".Installation", element.installation);
        });
}

/// Whether the list, in which ids are unique within an installation only, has this one.
template <class List>
bool has(List const& list, QString const& installation, QString const& id)
{
    return std::any_of(
        list.begin(), list.end(),
        [&](auto const& element) { return element.id == id && element.installation == installation; });
}

void checkCollaboration(State const& state)
{
    auto const& [connections, sessions, requests, files] = state.collaboration;
    checkInstallations(state, "Collaboration.Connections", connections);
    checkInstallations(state, "Collaboration.Sessions", sessions);
    checkInstallations(state, "Collaboration.Requests", requests);
    auto const checkConnection = [&connections = connections](auto const& element, QString const& at)
    {
        auto const isKnown = element.connectionId.isEmpty() || connections.contains(element.connectionId);
        checkReference(isKnown, at + ".ConnectionId", element.connectionId);
    };
    each("Collaboration.Sessions", sessions, checkConnection);
    each("Collaboration.Requests", requests, checkConnection);
    each(
        "Collaboration.Requests", requests,
        [&files = files](CollaborationRequest const& request, QString const& at)
        {
            for (auto const& id : request.fileIds)
            {
                checkReference(files.contains(id), at + ".FileIds", id);
            }
        });
    each(
        "Collaboration.Connections", connections,
        [](PartnerConnection const& connection, QString const& at)
        {
            auto const last = static_cast<int>(connectionStatusTexts.size()) - 1;
            auto const fits = connection.status >= 0 && connection.status <= last;
            require(fits, Reason::BadValue, at + ".Status", QStringLiteral("from 0 to %1").arg(last));
        });
}

void checkOrders(State const& state)
{
    auto const& [articles, addresses, orders] = state.orders;
    checkInstallations(state, "Orders.Articles", articles);
    checkInstallations(state, "Orders.Addresses", addresses);
    checkInstallations(state, "Orders.Orders", orders);
    each(
        "Orders.Orders", orders,
        [&articles = articles](Order const& order, QString const& at)
        {
            for (auto const& item : order.items)
            {
                auto const isKnown = has(articles, order.installation, item.articleNumber);
                checkReference(isKnown, at + ".Items", item.articleNumber);
            }
        });
}

void checkPartners(State const& state)
{
    auto const& partners = state.partners;
    checkInstallations(state, "Partners.Platforms", partners.platforms);
    checkInstallations(state, "Partners.Accounts", partners.accounts);
    checkInstallations(state, "Partners.Cases", partners.cases);
    each(
        "Partners.Accounts", partners.accounts,
        [&partners](PartnerAccount const& account, QString const& at)
        {
            auto const isKnown = has(partners.platforms, account.installation, account.partnerId);
            checkReference(isKnown, at + ".PartnerId", account.partnerId);
        });
    each(
        "Partners.Cases", partners.cases,
        [&state](PartnerCase const& partnerCase, QString const& at)
        {
            checkReference(state.cases.contains(partnerCase.caseId), at + ".CaseId", partnerCase.caseId);
            auto const isKnown = state.partners.accounts.contains(partnerCase.accountId);
            checkReference(isKnown, at + ".AccountId", partnerCase.accountId);
        });
}

/// Of those that an installation has one of.
template <class List>
void checkOneEach(State const& state, char const* place, List const& list)
{
    checkInstallations(state, place, list);
    QStringList seen;
    each(
        place, list,
        [&seen](auto const& element, QString const& at)
        {
            require(
                !seen.contains(element.installation), Reason::BadValue, at, element.installation + " is there twice");
            seen << element.installation;
        });
}

void checkVersion(QString const& version, QString const& place)
{
    qsizetype end = 0;
    auto const isRead = !QVersionNumber::fromString(version, &end).isNull() && end == version.size();
    require(isRead, Reason::BadValue, place, "a version such as 4.2 is wanted");
}

void checkTables(State const& state)
{
    checkOneEach(state, "Accounts.Accounts", state.accounts.accounts);
    checkInstallations(state, "Documents.Documents", state.documents.documents);
    checkOneEach(state, "Documents.Releases", state.documents.releases);
    checkInstallations(state, "Users.Users", state.users.users);
    checkInstallations(state, "Users.Studies", state.users.studies);
    checkInstallations(state, "Users.Keys", state.users.keys);
    checkOneEach(state, "Catalogs", state.catalogs);
    each(
        "Catalogs", state.catalogs,
        [](Catalog const& catalog, QString const& at)
        {
            checkVersion(catalog.version, at + ".Version");
            checkVersion(catalog.oldestUsable, at + ".OldestUsable");
        });
}

void raiseLastNumber(State& state, QString const& id)
{
    auto const prefix = id.section('-', 0, -2);
    auto const number = id.section('-', -1).toInt();
    if (!prefix.isEmpty() && number > state.lastNumbers.value(prefix) && id == idOf(prefix, number))
    {
        state.lastNumbers[prefix] = number;
    }
}

} // namespace

void require(bool fits, Reason reason, QString const& place, QString const& why)
{
    if (!fits)
    {
        throw Refusal(reason, place + (place.isEmpty() ? "" : ": ") + why);
    }
}

void check(State const& state)
{
    checkCollaboration(state);
    checkInstallations(state, "Cases", state.cases);
    checkOrders(state);
    checkPartners(state);
    checkTables(state);
}

void raiseLastNumbers(State& state)
{
    auto const raiseAll = [&state](auto const& list)
    {
        for (auto const& element : list)
        {
            raiseLastNumber(state, element.id);
        }
    };
    raiseAll(state.collaboration.connections);
    raiseAll(state.collaboration.sessions);
    raiseAll(state.collaboration.requests);
    raiseAll(state.collaboration.files);
    raiseAll(state.cases);
    raiseAll(state.orders.orders);
    for (auto const& request : state.collaboration.requests)
    {
        raiseLastNumber(state, request.transactionId);
        raiseLastNumber(state, request.orderReference);
    }
    for (auto const& order : state.orders.orders)
    {
        for (auto const& item : order.items)
        {
            raiseAll(item.files);
        }
    }
}

} // namespace simulator
