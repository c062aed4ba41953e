#include "simulator/resources/Cases.h"

#include "simulator/Lookup.h"
#include "simulator/Routing.h"
#include "simulator/State.h"

#include <array>

namespace simulator
{

namespace
{

// ---- what it starts with; the patients are those of the collaboration requests -----------------------------------

struct CaseRow
{
    char const* installation;
    char const* patientId;
    char const* name;
    char const* status;
    char const* createdBy;
    char const* sharedWith; // a site; empty: none yet
};

constexpr std::array<CaseRow, 10> seededCases = {{
    {"INST-1001", "PAT-000001", "Implant planning, region 36", "Open", "Dr. Sofia Lindqvist", ""},
    {"INST-1001", "PAT-000001", "Second opinion", "UnderReview", "Dr. Anita Rao", "Dr. Lindqvist Dental Surgery"},
    {"INST-1001", "PAT-000001", "Follow-up scan", "Archived", "Dr. Sofia Lindqvist", ""},
    {"INST-1001", "PAT-000002", "Crown 21", "Created", "Dr. Paul Mercier", ""},
    {"INST-1001", "PAT-000002", "Aligner simulation", "InProgress", "Dr. Paul Mercier", ""},
    {"INST-1001", "PAT-000003", "Bridge 35 to 37", "Finished", "Dr. Jonas Weber", ""},
    {"INST-1001", "PAT-000003", "Sinus lift", "NeedsMoreInput", "Dr. Jonas Weber", "Dr. Lindqvist Dental Surgery"},
    {"INST-1001", "PAT-000004", "Veneers 13 to 23", "Rejected", "Dr. Anita Rao", ""},
    {"INST-1001", "PAT-000004", "Night guard", "Closed", "Dr. Anita Rao", ""},
    {"INST-2002", "PAT-000020", "Inlay 46", "Open", "Dr. Maja Lindqvist", "Harbour Street Dental Practice"},
}};

// ---- files and prescriptions -------------------------------------------------------------------------------------

constexpr Member fileMembers[] = {
    {"Name", Kind::Text},
    {"Size", Kind::DecimalText},
    {"ChunkSize", Kind::DecimalText},
    {"Type", Kind::Text},
    {"SubType", Kind::Text},
    {"ArchType", Kind::Text},
    {"PaddingBytesAdded", Kind::DecimalText},
};

constexpr Member prescriptionMembers[] = {
    {"Name", Kind::Text}, {"AcquisitionTimestamp", Kind::TimeOrNull}, {"Type", Kind::Text}};

constexpr Member createMembers[] = {
    {"InstallationReference", Kind::Text},
    {"UserReference", Kind::Text},
    {"PatientFirstName", Kind::Text},
    {"PatientLastName", Kind::Text},
    {"PatientId", Kind::Text},
    {"PatientReference", Kind::Text},
    {"PatientDateOfBirth", Kind::Text},
    {"PatientGender", Kind::Text},
    {"LocatorInfoNote", Kind::Text},
    {"CaseFiles", Kind::Objects, true, fileMembers},
    {"PrescriptionTemplates", Kind::Objects, true, prescriptionMembers},
};

constexpr Member addFilesMembers[] = {
    {"InstallationReference", Kind::Text},
    {"UserReference", Kind::Text},
    {"CaseFiles", Kind::Objects, true, fileMembers},
};

/// Keeps what the body announces; returns the identities under which the files are to be uploaded.
QJsonArray takeFiles(Call const& call, PortalCase& portalCase)
{
    QJsonArray identities;
    auto const announced = call["CaseFiles"].toArray();
    for (auto const& value : announced)
    {
        auto file = value.toObject();
        file["Id"] = call.state.newId("CASEFILE");
        identities.append(QJsonObject{{"Id", file["Id"]}, {"Name", file["Name"]}});
        portalCase.files.append(file);
    }
    return identities;
}

void checkTexts(Call const& call)
{
    QStringList const genders = {"", "Female", "Male", "Other"};
    if (!genders.contains(call.text("PatientGender")))
    {
        throw Refusal(Reason::BadValue, "PatientGender");
    }
    auto const prescriptions = call["PrescriptionTemplates"].toArray();
    for (auto const& prescription : prescriptions)
    {
        if (prescription.toObject()["Type"] != "Full")
        {
            throw Refusal(Reason::BadValue, "Type");
        }
    }
}

// ---- the resources -----------------------------------------------------------------------------------------------

QString urlOf(PortalCase const& portalCase)
{
    return "https://portal.kelo.example/cases/" + portalCase.id;
}

bool isVisible(State const& state, PortalCase const& portalCase, QString const& installation)
{
    return portalCase.installation == installation
           || portalCase.sharedWith.contains(state.installations.value(installation));
}

Answer createCase(Call const& call)
{
    auto const installation = knownInstallation(call.state, call.text("InstallationReference"));
    checkTexts(call);
    auto& portalCase = call.state.cases.add(
        {.id = call.state.newId("PORTAL"),
         .installation = installation,
         .patientId = call.text("PatientId"),
         .name = call.text("PatientFirstName") + ' ' + call.text("PatientLastName"),
         .status = "Created",
         .createdBy = call.text("UserReference"),
         .createdAt = call.state.tick()});
    auto const files = takeFiles(call, portalCase);
    return Answer::json(QJsonObject{{"CaseId", portalCase.id}, {"CaseUrl", urlOf(portalCase)}, {"CaseFiles", files}});
}

Answer addFiles(Call const& call)
{
    auto const installation = knownInstallation(call.state, call.text("InstallationReference"));
    return Answer::json(takeFiles(call, caseVisibleTo(call.state, installation, call.id())));
}

QJsonObject toJson(PortalCase const& portalCase, QString const& reader)
{
    QJsonArray sites;
    for (auto const& name : portalCase.sharedWith)
    {
        sites.append(QJsonObject{{"Name", name}});
    }
    return {
        {"Name", portalCase.name},
        {"Status", portalCase.status},
        {"CreatedBy", portalCase.createdBy},
        {"CaseUrl", urlOf(portalCase)},
        {"CreationTimestamp", portalCase.createdAt.toString(Qt::ISODate)},
        {"IsCreator", portalCase.installation == reader},
        {"SharedWithSites", sites}};
}

/// A patient of whom the portal knows nothing has no cases; hosts ask for all their patients.
Answer casesOfPatient(Call const& call)
{
    auto const installation = knownInstallation(call.state, call.query.value("InstallationReference"));
    QJsonArray list;
    for (auto const& portalCase : call.state.cases)
    {
        if (portalCase.patientId == call.id() && isVisible(call.state, portalCase, installation))
        {
            list.append(toJson(portalCase, installation));
        }
    }
    return Answer::json(QJsonObject{{"Cases", list}});
}

} // namespace

// clang-format off
std::vector<Route> caseRoutes()
{
    return {
        {"createCaseRequest", "POST", "/Cases", createMembers, createCase},
        {"addNewDataRequest", "POST", "/Cases/{}/files?api-version=1.0", addFilesMembers, addFiles},
        {"getMiraShareCases", "GET", "/Patients/{}/cases?InstallationReference={}&api-version=0.0", {}, casesOfPatient},
    };
}
// clang-format on

void seedCases(State& state)
{
    for (auto const& row : seededCases)
    {
        auto& portalCase = state.cases.add(
            {.id = state.newId("PORTAL"),
             .installation = row.installation,
             .patientId = row.patientId,
             .name = row.name,
             .status = row.status,
             .createdBy = row.createdBy,
             .createdAt = state.tick()});
        if (*row.sharedWith != '\0')
        {
            portalCase.sharedWith << row.sharedWith;
        }
    }
}

PortalCase& caseVisibleTo(State& state, QString const& installation, QString const& caseId)
{
    auto& portalCase = byId(state.cases, caseId);
    if (!isVisible(state, portalCase, installation))
    {
        throw Refusal(Reason::UnknownId, caseId);
    }
    return portalCase;
}

Answer storedCases(Call const& call)
{
    QJsonArray list;
    for (auto const& portalCase : call.state.cases)
    {
        list.append(QJsonObject{
            {"CaseId", portalCase.id},
            {"InstallationReference", portalCase.installation},
            {"PatientId", portalCase.patientId},
            {"Files", portalCase.files}});
    }
    return Answer::json(list);
}

} // namespace simulator
