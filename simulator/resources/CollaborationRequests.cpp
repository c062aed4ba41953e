#include "simulator/resources/CollaborationHandlers.h"

#include "simulator/Lookup.h"
#include "simulator/State.h"

namespace simulator::collaboration
{

namespace
{

// ---- what the bodies hold ----------------------------------------------------------------------------------------

constexpr Member newFileMembers[] = {
    {"Name", Kind::Text},     {"Size", Kind::Integer},  {"ChunkSize", Kind::Integer},
    {"CheckSum", Kind::Text}, {"FileType", Kind::Text},
};
constexpr Member existingFileMembers[] = {{"Id", Kind::Text}};
constexpr Member connectionMembers[] = {{"ImplantConnectionId", Kind::Text}, {"ToothNumber", Kind::Integer}};

constexpr Member createRequestRow[] = {
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

constexpr Member createRestorationRow[] = {
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

constexpr Member updateRequestRow[] = {
    {"InstallationReference", Kind::Text},
    {"UserReference", Kind::Text},
    {"Note", Kind::Text},
    {"DueDate", Kind::Date},
    {"NewFiles", Kind::Objects, true, newFileMembers},
    {"ExistingFiles", Kind::Objects, true, existingFileMembers},
    {"Metadata", Kind::Text},
};

constexpr Member updateSurgeryPlanRow[] = {
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

constexpr Member installationRow[] = {{"InstallationReference", Kind::Text}};
constexpr Member statusRow[] = {{"InstallationReference", Kind::Text}, {"Status", Kind::Integer}};

// ---- what is done with them --------------------------------------------------------------------------------------

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

QJsonArray updated(Call const& call, CollaborationRequest& request)
{
    checkFiles(call);
    takeMembers(call, request);
    auto created = takeFiles(call, request);
    touch(call.state, request);
    return created;
}

} // namespace

Schema const createRequestMembers = createRequestRow;
Schema const createRestorationMembers = createRestorationRow;
Schema const updateRequestMembers = updateRequestRow;
Schema const updateSurgeryPlanMembers = updateSurgeryPlanRow;
Schema const statusMembers = statusRow;
Schema const installationMembers = installationRow;

// ---- creating and changing requests ------------------------------------------------------------------------------

Handler createRequestOf(RequestKind kind)
{
    return [kind](Call const& call) { return createRequestOfKind(call, kind); };
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

// ---- locks and seen marks ----------------------------------------------------------------------------------------

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

} // namespace simulator::collaboration
