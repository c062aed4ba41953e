#include "simulator/resources/CollaborationHandlers.h"

#include "simulator/Lookup.h"
#include "simulator/State.h"

#include <algorithm>
#include <set>

namespace simulator::collaboration
{

namespace
{

constexpr Member listRow[] = {
    {"GetOnlyActiveRequests", Kind::Boolean},
    {"VersionNumber", Kind::Text},
    {"SelectedTypes", Kind::Integers},
};
constexpr Member detailsRow[] = {
    {"GetOnlyActiveRequests", Kind::Boolean},
    {"VersionNumber", Kind::Text},
    {"RequestIds", Kind::Texts},
    {"Type", Kind::Integer, false},
};
constexpr Member restorationUrlRow[] = {{"GetOnlyActiveRequests", Kind::Boolean}, {"RequestIds", Kind::Texts}};

/// The requests that the body names by their ids, or all, oldest first.
std::vector<CollaborationRequest const*> named(Call const& call)
{
    auto const& requests = call.state.collaboration.requests;
    auto const ids = call["RequestIds"].toArray();
    std::set<std::size_t> positions;
    for (auto const& id : ids)
    {
        positions.insert(requests.positionOf(id.toString()));
    }
    positions.erase(requests.size());
    std::vector<CollaborationRequest const*> found;
    if (ids.isEmpty())
    {
        std::transform(
            requests.begin(), requests.end(), std::back_inserter(found), [](auto const& request) { return &request; });
    }
    for (auto const position : positions)
    {
        found.push_back(&requests[position]);
    }
    return found;
}

/// The requests of the installation in the path that pass the filters of the body, oldest first. An empty or absent
/// list of wanted values means that every value is wanted.
std::vector<CollaborationRequest const*> selected(Call const& call)
{
    auto const installation = knownInstallation(call.state, call.id());
    auto const onlyActive = call["GetOnlyActiveRequests"].toBool();
    auto const types = call["SelectedTypes"].toArray();
    auto requests = named(call);
    std::erase_if(
        requests,
        [&](CollaborationRequest const* request)
        {
            auto const type = static_cast<int>(request->kind);
            return request->installation != installation || (onlyActive && !request->isActive())
                   || !(types.isEmpty() || types.contains(type)) || call.number("Type", type) != type;
        });
    return requests;
}

std::vector<CollaborationRequest const*> selectedOf(Call const& call, RequestKind kind)
{
    auto requests = selected(call);
    std::erase_if(requests, [kind](CollaborationRequest const* request) { return request->kind != kind; });
    return requests;
}

} // namespace

Schema const listMembers = listRow;
Schema const detailsMembers = detailsRow;
Schema const restorationUrlMembers = restorationUrlRow;

Answer listRequests(Call const& call)
{
    QJsonArray list;
    for (auto const* request : selected(call))
    {
        list.append(QJsonObject{
            {"RequestId", request->id},
            {"TransactionId", request->transactionId},
            {"RequestType", static_cast<int>(request->kind)}});
    }
    return Answer::json(list);
}

Answer searchRequest(Call const& call)
{
    auto const installation = knownInstallation(call.state, call.id());
    auto const byKey = call.query.contains("Search.Key");
    if (byKey == call.query.contains("Search.SalesOrderNumber") || !call.query.contains("api-version"))
    {
        throw Refusal(Reason::BadQuery, "one of Search.Key, Search.SalesOrderNumber, and api-version");
    }
    auto const wanted = call.query.value(byKey ? "Search.Key" : "Search.SalesOrderNumber");
    for (auto const& request : call.state.collaboration.requests)
    {
        if (request.installation == installation && wanted == (byKey ? request.key : request.orderReference))
        {
            return Answer::json(QJsonObject{{"RequestId", request.id}});
        }
    }
    throw Refusal(Reason::UnknownId, wanted);
}

Answer detailsOfAllKinds(Call const& call)
{
    return Answer::json(groupedByPartner(call.state, selected(call)));
}

Handler detailsOf(RequestKind kind)
{
    return [kind](Call const& call) { return Answer::json(groupedByPartner(call.state, selectedOf(call, kind))); };
}

Answer restorationUrls(Call const& call)
{
    auto const groups = groupedByPartner(call.state, selectedOf(call, RequestKind::Restoration));
    return Answer::json(QJsonObject{{"CollaborationSessionDetailInfos", groups}});
}

} // namespace simulator::collaboration
