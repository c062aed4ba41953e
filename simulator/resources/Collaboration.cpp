#include "simulator/resources/Collaboration.h"

#include "simulator/Lookup.h"
#include "simulator/Routing.h"
#include "simulator/State.h"

#include <algorithm>
#include <set>

namespace simulator
{

namespace
{

/// The request that the path names, if it belongs to the installation that the body names.
CollaborationRequest& requestOf(Call const& call)
{
    auto& request = requestById(call.state, call.id());
    if (request.installation != knownInstallation(call.state, call.text("InstallationReference")))
    {
        throw Refusal(Reason::UnknownId, request.id);
    }
    return request;
}

// ---- connections -----------------------------------------------------------------------------------------------

Answer listConnections(Call const& call)
{
    auto const installation = knownInstallation(call.state, call.id());
    QJsonArray list;
    for (auto const& connection : call.state.collaboration.connections)
    {
        if (connection.installation == installation)
        {
            list.append(toJson(connection));
        }
    }
    return Answer::json(list);
}

Answer startConnection(Call const& call)
{
    auto const installation = knownInstallation(call.state, call.id());
    if (call.text("InstallationReference") != installation)
    {
        throw Refusal(Reason::BadValue, "InstallationReference");
    }
    auto const token = call.text("ConnectionToken");
    if (token.isEmpty())
    {
        throw Refusal(Reason::BadValue, "ConnectionToken");
    }
    auto const& connection = call.state.collaboration.connections.add(
        {.id = call.state.newId("CON"),
         .installation = installation,
         .partnerId = call.state.newId("PARTNER"),
         .name = "Partner " + token,
         .isInitiator = true,
         .status = 1});
    return Answer::json(QJsonObject{{"ConnectionId", connection.id}, {"ConnectionStatus", connection.status}});
}

Answer updateConnectionStatus(Call const& call)
{
    auto& connection = connectionById(call.state, call.id());
    if (connection.installation != knownInstallation(call.state, call.text("InstallationReference")))
    {
        throw Refusal(Reason::UnknownId, connection.id);
    }
    auto const status = call.number("Status");
    if (status < 0 || status >= static_cast<int>(connectionStatusTexts.size()))
    {
        throw Refusal(Reason::BadValue, "Status");
    }
    connection.status = status;
    return Answer::noContent();
}

// ---- sessions --------------------------------------------------------------------------------------------------

Answer openSession(State& state, QString const& installation, QString const& connectionId)
{
    auto const& session = state.collaboration.sessions.add(
        {.id = state.newId("SES"), .installation = installation, .connectionId = connectionId});
    return Answer::json(QJsonObject{{"SessionId", session.id}});
}

Answer openSessionWithPartner(Call const& call)
{
    auto const& connection = connectionById(call.state, call.id());
    if (connection.installation != knownInstallation(call.state, call.text("InstallationReference")))
    {
        throw Refusal(Reason::UnknownId, connection.id);
    }
    return openSession(call.state, connection.installation, connection.id);
}

Answer openSessionOfInstallation(Call const& call)
{
    return openSession(call.state, knownInstallation(call.state, call.id()), {});
}

// ---- creating and changing requests ----------------------------------------------------------------------------

constexpr Member newFileMembers[] = {
    {"Name", Kind::Text},     {"Size", Kind::Integer},  {"ChunkSize", Kind::Integer},
    {"CheckSum", Kind::Text}, {"FileType", Kind::Text},
};
constexpr Member existingFileMembers[] = {{"Id", Kind::Text}};
constexpr Member connectionMembers[] = {{"ImplantConnectionId", Kind::Text}, {"ToothNumber", Kind::Integer}};

constexpr Member createRequestMembers[] = {
    {"Type", Kind::Integer, false},
    {"InstallationReference", Kind::Text},
    {"UserReference", Kind::Text},
    {"VersionNumber", Kind::Text},
    {"Note", Kind::Text},
    {"DueDate", Kind::Date},
    {"NewFiles", Kind::Objects, true, newFileMembers},
    {"ExistingFiles", Kind::Objects, true, existingFileMembers},
    {"Metadata", Kind::Text},
    {"TreatingClinician", Kind::Text},
    {"PatientId", Kind::Text},
    {"PatientFirstName", Kind::Text},
    {"PatientLastName", Kind::Text},
    {"PatientGender", Kind::Text},
    {"PatientDateOfBirth", Kind::Date},
    {"RequesterPatientReference", Kind::Text},
};

constexpr Member createRestorationMembers[] = {
    {"InstallationReference", Kind::Text},
    {"UserReference", Kind::Text},
    {"VersionNumber", Kind::Text},
    {"Note", Kind::Text},
    {"DueDate", Kind::Date},
    {"NewFiles", Kind::Objects, true, newFileMembers},
    {"ExistingFiles", Kind::Objects, true, existingFileMembers},
    {"TreatingClinician", Kind::Text},
    {"PatientId", Kind::Text},
    {"PatientFirstName", Kind::Text},
    {"PatientLastName", Kind::Text},
    {"PatientGender", Kind::Text},
    {"PatientDateOfBirth", Kind::Text},
    {"Connections", Kind::Objects, true, connectionMembers},
};

constexpr Member updateRequestMembers[] = {
    {"InstallationReference", Kind::Text},
    {"UserReference", Kind::Text},
    {"Note", Kind::Text},
    {"DueDate", Kind::Date},
    {"NewFiles", Kind::Objects, true, newFileMembers},
    {"ExistingFiles", Kind::Objects, true, existingFileMembers},
    {"Metadata", Kind::Text},
};

constexpr Member updateSurgeryPlanMembers[] = {
    {"InstallationReference", Kind::Text},
    {"UserReference", Kind::Text},
    {"NewFiles", Kind::Objects, true, newFileMembers},
    {"ExistingFiles", Kind::Objects, true, existingFileMembers},
    {"Note", Kind::Text, false},
    {"DueDate", Kind::Date, false},
    {"Metadata", Kind::Text, false},
    {"TreatingClinician", Kind::Text, false},
    {"PatientId", Kind::Text, false},
    {"PatientFirstName", Kind::Text, false},
    {"PatientLastName", Kind::Text, false},
};

/// Refuses a body that names a file nobody has, before anything is changed.
void checkFiles(Call const& call)
{
    for (auto const& file : call["ExistingFiles"].toArray())
    {
        auto const id = file.toObject()["Id"].toString();
        if (!call.state.collaboration.files.contains(id))
        {
            throw Refusal(Reason::UnknownId, id);
        }
    }
    for (auto const& file : call["NewFiles"].toArray())
    {
        if (file.toObject()["Size"].toDouble() < 0 || file.toObject()["ChunkSize"].toDouble() < 0)
        {
            throw Refusal(Reason::BadValue, "NewFiles");
        }
    }
}

/// Attaches the files of the body; returns the slots made for the new ones.
QJsonArray takeFiles(Call const& call, CollaborationRequest& request)
{
    for (auto const& file : call["ExistingFiles"].toArray())
    {
        auto const id = file.toObject()["Id"].toString();
        if (!request.fileIds.contains(id))
        {
            request.fileIds << id;
        }
    }
    QJsonArray created;
    for (auto const& value : call["NewFiles"].toArray())
    {
        auto const file = value.toObject();
        auto const id = addFile(
            call.state, request,
            {.name = file["Name"].toString(),
             .fileType = file["FileType"].toString(),
             .size = file["Size"].toInteger(),
             .chunkSize = file["ChunkSize"].toInteger(),
             .createdBy = call.text("UserReference"),
             .isOwn = true});
        created.append(QJsonObject{{"Id", id}, {"Name", file["Name"]}});
    }
    return created;
}

void takeText(Call const& call, char const* key, QString& text)
{
    if (auto const given = call.text(key); !given.isEmpty())
    {
        text = given;
    }
}

/// Takes over what the body says. A member that is absent or empty leaves the request as it is; a note is added to the
/// others.
void takeMembers(Call const& call, CollaborationRequest& request)
{
    takeText(call, "VersionNumber", request.version);
    takeText(call, "Metadata", request.metadata);
    takeText(call, "TreatingClinician", request.treatingClinician);
    takeText(call, "RequesterPatientReference", request.requesterPatientReference);
    takeText(call, "PatientId", request.patient.id);
    takeText(call, "PatientFirstName", request.patient.firstName);
    takeText(call, "PatientLastName", request.patient.lastName);
    takeText(call, "PatientGender", request.patient.gender);
    if (auto const day = QDate::fromString(call.text("PatientDateOfBirth"), Qt::ISODate); day.isValid())
    {
        request.patient.dateOfBirth = day;
    }
    if (auto const day = QDate::fromString(call.text("DueDate"), Qt::ISODate); day.isValid())
    {
        request.dueDate = day;
    }
    if (auto const note = call.text("Note"); !note.isEmpty())
    {
        request.notes.push_back(
            {.text = note, .createdAt = call.state.tick(), .createdBy = call.text("UserReference"), .isOwn = true});
    }
}

std::vector<Restoration> restorationsOf(Call const& call)
{
    std::vector<Restoration> restorations;
    for (auto const& value : call["Connections"].toArray())
    {
        auto const tooth = value.toObject()["ToothNumber"].toInt();
        restorations.push_back(
            {.firstTooth = tooth,
             .lastTooth = tooth,
             .type = "Crown",
             .implants = {{.id = value.toObject()["ImplantConnectionId"].toString(), .tooth = tooth}}});
    }
    return restorations;
}

Answer createRequestOfKind(Call const& call, RequestKind kind)
{
    auto const session = byId(call.state.collaboration.sessions, call.id());
    if (session.installation != knownInstallation(call.state, call.text("InstallationReference")))
    {
        throw Refusal(Reason::UnknownId, session.id);
    }
    checkFiles(call);
    auto& request = addRequest(
        call.state, {.installation = session.installation,
                     .connectionId = session.connectionId,
                     .kind = kind,
                     .restorations = restorationsOf(call),
                     .isFileLocked = kind == RequestKind::Template});
    takeMembers(call, request);
    auto const created = takeFiles(call, request);
    return Answer::json(QJsonObject{
        {"CollaborationRequestId", request.id}, {"CollaborationRequestKey", request.key}, {"Files", created}});
}

template <RequestKind kind>
Answer createRequestOf(Call const& call)
{
    return createRequestOfKind(call, kind);
}

Answer createRequest(Call const& call)
{
    if (call["Type"].isUndefined())
    {
        throw Refusal(Reason::MissingMember, "Type");
    }
    auto const type = call.number("Type");
    if (type < 0 || type > static_cast<int>(RequestKind::Referral))
    {
        throw Refusal(Reason::BadValue, "Type");
    }
    return createRequestOfKind(call, static_cast<RequestKind>(type));
}

QJsonArray updated(Call const& call, CollaborationRequest& request)
{
    checkFiles(call);
    takeMembers(call, request);
    auto created = takeFiles(call, request);
    touch(call.state, request);
    return created;
}

Answer updateRequest(Call const& call)
{
    return Answer::json(updated(call, requestOf(call)));
}

Answer updateSurgeryPlan(Call const& call)
{
    auto& request = requestOf(call);
    if (request.kind != RequestKind::SurgeryPlan)
    {
        throw Refusal(Reason::UnknownId, request.id);
    }
    return Answer::json(QJsonObject{{"Files", updated(call, request)}});
}

Answer updateStatus(Call const& call)
{
    auto& request = requestOf(call);
    if (call.number("Status") < 0)
    {
        throw Refusal(Reason::BadValue, "Status");
    }
    request.status = call.number("Status");
    touch(call.state, request);
    return Answer::noContent();
}

// ---- locks and seen marks --------------------------------------------------------------------------------------

constexpr Member installationMembers[] = {{"InstallationReference", Kind::Text}};

Answer lockState(Call const& call)
{
    return Answer::json(QJsonObject{{"Unlocked", !requestOf(call).isFileLocked}});
}

Answer unlock(Call const& call)
{
    auto& request = requestOf(call);
    if (request.isFileLocked)
    {
        request.isFileLocked = false;
        touch(call.state, request);
    }
    return Answer::noContent();
}

Answer markAsSeen(Call const& call)
{
    auto const installation = knownInstallation(call.state, call.text("InstallationReference"));
    auto* const file = call.state.collaboration.files.find(call.id());
    bool isOfInstallation = false;
    for (auto& request : call.state.collaboration.requests)
    {
        if (request.installation == installation && request.fileIds.contains(call.id()))
        {
            isOfInstallation = true;
            if (!file->isSeen)
            {
                touch(call.state, request);
            }
        }
    }
    if (!isOfInstallation)
    {
        throw Refusal(Reason::UnknownId, call.id());
    }
    file->isSeen = true;
    return Answer::noContent();
}

// ---- lists and details -----------------------------------------------------------------------------------------

constexpr Member listMembers[] = {
    {"GetOnlyActiveRequests", Kind::Boolean},
    {"VersionNumber", Kind::Text},
    {"SelectedTypes", Kind::Integers},
};
constexpr Member detailsMembers[] = {
    {"GetOnlyActiveRequests", Kind::Boolean},
    {"VersionNumber", Kind::Text},
    {"RequestIds", Kind::Texts},
    {"Type", Kind::Integer, false},
};
constexpr Member restorationUrlMembers[] = {{"GetOnlyActiveRequests", Kind::Boolean}, {"RequestIds", Kind::Texts}};

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

template <RequestKind kind>
std::vector<CollaborationRequest const*> selectedOf(Call const& call)
{
    auto requests = selected(call);
    std::erase_if(requests, [](CollaborationRequest const* request) { return request->kind != kind; });
    return requests;
}

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

template <RequestKind kind>
Answer detailsOf(Call const& call)
{
    return Answer::json(groupedByPartner(call.state, selectedOf<kind>(call)));
}

Answer restorationUrls(Call const& call)
{
    auto const groups = groupedByPartner(call.state, selectedOf<RequestKind::Restoration>(call));
    return Answer::json(QJsonObject{{"CollaborationSessionDetailInfos", groups}});
}

constexpr Member sessionMembers[] = {{"InstallationReference", Kind::Text}, {"UserReference", Kind::Text}};
constexpr Member userMembers[] = {{"UserReference", Kind::Text}};
constexpr Member statusMembers[] = {{"InstallationReference", Kind::Text}, {"Status", Kind::Integer}};
constexpr Member startConnectionMembers[] = {
    {"UserReference", Kind::Text},
    {"InstallationReference", Kind::Text},
    {"Note", Kind::Text},
    {"ConnectionToken", Kind::Text}};

} // namespace

// clang-format off
std::vector<Route> collaborationRoutes()
{
    using enum RequestKind;
    return {
        {"createCollaborationSession", "POST", "/Connections/{}/sessions", sessionMembers, openSessionWithPartner},
        {"createCollaborationSession", "POST", "/Installations/{}/sessions", Schema(), openSessionOfInstallation},
        {"createCollaborationSessionWithoutConnectionId", "POST", "/installations/{}/sessions", userMembers, openSessionOfInstallation},
        {"createRequest", "POST", "/Sessions/{}/request", createRequestMembers, createRequest},
        {"createRestorationCollaboration", "POST", "/Sessions/{}/request/restoration", createRestorationMembers, createRequestOf<Restoration>},
        {"createSurgeryPlanRequest", "POST", "/Sessions/{}/request/surgeryplan", createRequestMembers, createRequestOf<SurgeryPlan>},
        {"createReferralRequest", "POST", "/Sessions/{}/request/referral", createRequestMembers, createRequestOf<Referral>},
        {"updateRequest", "POST", "/Requests/{}/request", updateRequestMembers, updateRequest},
        {"updateSurgeryPlanRequest", "POST", "/Requests/surgeryplan/{}", updateSurgeryPlanMembers, updateSurgeryPlan},
        {"updateCollaborationRequestStatus", "POST", "/Requests/{}/status", statusMembers, updateStatus},
        {"getUnlockedStateForRequest", "POST", "/Requests/{}/unlocked-status", installationMembers, lockState},
        {"unlockTemplateRequest", "PUT", "/Requests/{}/unlock-file", installationMembers, unlock},
        {"markCollaborationFileAsSeen", "POST", "/CollaborationFiles/{}", installationMembers, markAsSeen},
        {"getRequests", "POST", "/Installations/{}/requests", listMembers, listRequests},
        {"getRequestId", "GET", "/Installations/{}/requests", {}, searchRequest},
        {"getCollaborationSessionRequestDetails", "POST", "/Installations/{}/requests/details", detailsMembers, detailsOfAllKinds},
        {"getDentalScanRequestDetails", "POST", "/Installations/{}/requests/dentalscan/details", detailsMembers, detailsOf<DentalScan>},
        {"getLabDesignRequestDetails", "POST", "/Installations/{}/requests/labdesign/details", detailsMembers, detailsOf<LabDesign>},
        {"getTempShellRequestDetails", "POST", "/Installations/{}/requests/tempshell/details", detailsMembers, detailsOf<TempShell>},
        {"getTemplateRequestDetails", "POST", "/Installations/{}/requests/template/details", detailsMembers, detailsOf<Template>},
        {"getRestorationURL", "POST", "/Installations/{}/requests/restoration/details", restorationUrlMembers, restorationUrls},
        {"getRestorationRequestDetails", "POST", "/Installations/{}/requests/restoration/details", detailsMembers, detailsOf<Restoration>},
        {"getSurgeryPlanRequestDetails", "POST", "/Installations/{}/requests/surgeryplan/details", detailsMembers, detailsOf<SurgeryPlan>},
        {"getCentralizedRestorationRequestDetails", "POST", "/Installations/{}/requests/centralizedrestoration/details", detailsMembers, detailsOf<CentralizedRestoration>},
        {"getReferralRequestDetails", "POST", "/Installations/{}/requests/referral/details", detailsMembers, detailsOf<Referral>},
        {"startConnection", "POST", "/Installations/{}/connections", startConnectionMembers, startConnection},
        {"updateConnectionStatus", "POST", "/Connections/{}", statusMembers, updateConnectionStatus},
        {"getConnectionsForLicense", "GET", "/Installations/{}/connections", {}, listConnections},
    };
}
// clang-format on

void touch(State& state, CollaborationRequest& request)
{
    state.tick();
    request.transactionId = state.newId("TX");
}

CollaborationRequest& addRequest(State& state, CollaborationRequest request)
{
    request.id = state.newId("REQ");
    request.key = QStringLiteral("KC-%1").arg(request.id.right(4));
    request.createdAt = state.tick();
    request.internalCaseIdentifier = state.newId("CASE");
    request.orderReference = state.newId("SO");
    request.transactionId = state.newId("TX");
    return state.collaboration.requests.add(std::move(request));
}

QString addFile(State& state, CollaborationRequest& request, CollaborationFile file)
{
    file.id = state.newId("FILE");
    request.fileIds << file.id;
    return state.collaboration.files.add(std::move(file)).id;
}

CollaborationRequest& requestById(State& state, QString const& id)
{
    return byId(state.collaboration.requests, id);
}

PartnerConnection& connectionById(State& state, QString const& id)
{
    return byId(state.collaboration.connections, id);
}

PartnerConnection partnerOf(State const& state, QString const& connectionId)
{
    if (connectionId.isEmpty())
    {
        return {.partnerId = "CENTRAL-1", .name = "Central Production"};
    }
    return byId(state.collaboration.connections, connectionId);
}

} // namespace simulator
