#include "simulator/Routing.h"
#include "simulator/State.h"

#include <algorithm>
#include <array>

namespace simulator
{

namespace
{

QString textOr(Call const& call, char const* key, char const* fallback)
{
    return call[key].toString(QString::fromUtf8(fallback));
}

void addPartnerNote(Call const& call, CollaborationRequest& request)
{
    auto const partner = partnerOf(call.state, request.connectionId);
    auto const text = textOr(call, "Text", "We have looked at the case; please see the attached proposal.");
    request.notes.push_back({.text = text, .createdAt = call.state.tick(), .createdBy = partner.name});
}

void addPartnerFile(Call const& call, CollaborationRequest& request)
{
    addFile(
        call.state, request,
        {.name = textOr(call, "Name", "proposal.stl"),
         .fileType = textOr(call, "FileType", "stl"),
         .size = call["Size"].toInteger(2'480'000),
         .chunkSize = 1'048'576,
         .createdBy = partnerOf(call.state, request.connectionId).name,
         .isUploaded = true});
}

void setStatus(Call const& call, CollaborationRequest& request)
{
    request.status = call.number("Status", static_cast<int>(RequestStatus::Answered));
}

void reply(Call const& call, CollaborationRequest& request)
{
    addPartnerNote(call, request);
    addPartnerFile(call, request);
    setStatus(call, request);
}

struct Change
{
    char const* action;
    void (*apply)(Call const& call, CollaborationRequest& request);
};

constexpr std::array<Change, 4> changes = {{
    {"reply", reply},
    {"status", setStatus},
    {"note", addPartnerNote},
    {"addFile", addPartnerFile},
}};

// In the order of the enumerations.
constexpr std::array kindNames = {
    "DentalScan", "LabDesign", "TempShell", "Template", "Restoration", "SurgeryPlan", "CentralizedRestoration",
    "Referral"};
constexpr std::array statusNames = {"Created", "InProgress", "Answered", "Completed", "Rejected"};

static_assert(kindNames.size() == static_cast<std::size_t>(RequestKind::Referral) + 1);
static_assert(statusNames.size() == static_cast<std::size_t>(RequestStatus::Rejected) + 1);

QStringList actionNames()
{
    QStringList names;
    std::transform(
        changes.begin(), changes.end(), std::back_inserter(names), [](Change const& row) { return row.action; });
    return names << "withdraw";
}

QJsonObject storedJson(State const& state, CollaborationRequest const& request)
{
    auto json = toJson(request, state.collaboration.files);
    auto const isNamed = request.status >= 0 && request.status < static_cast<int>(statusNames.size());
    json.insert("Type", kindNames.at(static_cast<std::size_t>(request.kind)));
    json.insert("StatusName", isNamed ? statusNames.at(static_cast<std::size_t>(request.status)) : "");
    json.insert("IsActive", request.isActive());
    json.insert("PartnerName", partnerOf(state, request.connectionId).name);
    json.insert("InstallationReference", request.installation);
    json.insert("IsFileLocked", request.isFileLocked);
    json.insert("Actions", QJsonArray::fromStringList(actionNames()));
    return json;
}

bool contains(State const& state, CollaborationRequest const& request, QString const& text)
{
    auto const kind = QLatin1String(kindNames.at(static_cast<std::size_t>(request.kind)));
    auto const words = QStringList{
        request.id,
        kind,
        partnerOf(state, request.connectionId).name,
        request.patient.firstName,
        request.patient.lastName,
        request.installation};
    return words.join('\n').contains(text, Qt::CaseInsensitive);
}

template <class Names>
QJsonArray namesJson(Names const& names)
{
    QJsonArray array;
    std::copy(names.begin(), names.end(), std::back_inserter(array));
    return array;
}

Answer answerFor(CollaborationRequest const& request)
{
    return Answer::json(QJsonObject{{"RequestId", request.id}, {"TransactionId", request.transactionId}});
}

Answer withdraw(Call const& call)
{
    auto const id = requestById(call.state, call.text("RequestId")).id;
    call.state.collaboration.requests.remove(id);
    return Answer::json(QJsonObject{{"RequestId", id}});
}

Answer create(Call const& call)
{
    auto const& connections = call.state.collaboration.connections;
    if (connections.empty())
    {
        throw Refusal(Reason::NotNow, "there is no connection to a partner");
    }
    auto const& partner = call["ConnectionId"].isUndefined() ? *connections.begin()
                                                             : connectionById(call.state, call.text("ConnectionId"));
    auto& request = addRequest(
        call.state, {.installation = partner.installation,
                     .connectionId = partner.id,
                     .kind = static_cast<RequestKind>(call.number("Type")),
                     .version = "1.0",
                     .treatingClinician = partner.name,
                     .patient = {
                         .id = call.state.newId("PAT"),
                         .firstName = textOr(call, "PatientFirstName", "Noor"),
                         .lastName = textOr(call, "PatientLastName", "Haddad"),
                         .dateOfBirth = QDate(1986, 9, 12),
                         .gender = "Female"}});
    addPartnerNote(call, request);
    addPartnerFile(call, request);
    return answerFor(request);
}

} // namespace

Answer partnerAction(Call const& call)
{
    auto const action = call.text("Action");
    if (action == QLatin1String("withdraw"))
    {
        return withdraw(call);
    }
    if (action == QLatin1String("create"))
    {
        return create(call);
    }
    auto const* change = std::find_if(
        changes.begin(), changes.end(), [&action](Change const& row) { return action == QLatin1String(row.action); });
    if (change == changes.end())
    {
        auto const names = QStringList{"create", "advanceOrder (with Reference alone)"} + actionNames();
        throw Refusal(Reason::BadValue, "Action: " + oneOf(action, names));
    }
    auto& request = requestById(call.state, call.text("RequestId"));
    change->apply(call, request);
    touch(call.state, request);
    return answerFor(request);
}

Answer storedRequests(Call const& call)
{
    auto const& [connections, sessions, requests, files] = call.state.collaboration;
    auto const text = call.query.value("text");
    std::vector<CollaborationRequest const*> matching;
    for (auto const& request : requests)
    {
        if (text.isEmpty() || contains(call.state, request, text))
        {
            matching.push_back(&request);
        }
    }
    auto const limit = static_cast<std::size_t>(call["limit"].toInteger(std::numeric_limits<int>::max()));
    QJsonArray list;
    for (auto at = matching.size() - std::min(matching.size(), limit); at < matching.size(); ++at)
    {
        list.append(storedJson(call.state, *matching[at]));
    }
    QJsonArray partners;
    std::transform(
        connections.begin(), connections.end(), std::back_inserter(partners),
        [](PartnerConnection const& connection) { return toJson(connection); });
    return Answer::json(QJsonObject{
        {"Requests", list},
        {"Matching", static_cast<qint64>(matching.size())},
        {"Total", static_cast<qint64>(requests.size())},
        {"Types", namesJson(kindNames)},
        {"Statuses", namesJson(statusNames)},
        {"Connections", partners}});
}

} // namespace simulator
