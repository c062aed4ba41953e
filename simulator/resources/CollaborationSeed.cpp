#include "simulator/State.h"

#include <array>
#include <span>

namespace simulator
{

namespace
{

// ---- what the seeded data is made of; the state's random numbers choose ------------------------------------------

struct PersonRow
{
    char const* firstName;
    char const* lastName;
    char const* gender;
};

constexpr std::array<PersonRow, 12> people = {{
    {"Amelia", "Brandt", "Female"},
    {"Mateo", "Ferreira", "Male"},
    {"Ingrid", "Sørensen", "Female"},
    {"Yusuf", "Demir", "Male"},
    {"Chiara", "Galli", "Female"},
    {"Robin", "van Dijk", "Other"},
    {"Tomasz", "Zieliński", "Male"},
    {"Hannah", "Okonkwo", "Female"},
    {"Luc", "Marchand", "Male"},
    {"Keiko", "Tanaka", "Female"},
    {"Samir", "Rahman", "Male"},
    {"Elif", "Aydın", "Female"},
}};

constexpr std::array<char const*, 4> clinicians = {
    "Dr. Sofia Lindqvist", "Dr. Paul Mercier", "Dr. Anita Rao", "Dr. Jonas Weber"};
constexpr std::array<char const*, 4> materials = {"Zirconia", "LithiumDisilicate", "Titanium", "PMMA"};
constexpr std::array<char const*, 5> colors = {"A1", "A2", "A3", "B1", "C2"};
constexpr std::array<char const*, 3> implantSizes = {"3.5", "4.3", "5.0"};
constexpr std::array<char const*, 3> implantCategories = {"Conical", "InternalHex", "ExternalHex"};
constexpr std::array<int, 8> teeth = {11, 14, 21, 24, 36, 37, 45, 46};

template <typename List>
auto pick(State& state, List const& list)
{
    return list.at(state.random() % list.size());
}

// ---- who works with whom -----------------------------------------------------------------------------------------

struct PartnerRow
{
    char const* connectionId;
    char const* installation;
    char const* partnerId;
    char const* name;
    char const* zipCode;
    bool isInitiator;
    int status;
};

constexpr std::array<PartnerRow, 6> partners = {{
    {"CON-101", "INST-1001", "LAB-301", "Alpine Dental Laboratory", "6020", true, 3},
    {"CON-102", "INST-1001", "CLIN-412", "Northshore Oral Surgery", "24103", false, 3},
    {"CON-103", "INST-1001", "LAB-318", "Lakeview Milling Center", "8001", true, 3},
    {"CON-104", "INST-1001", "CLIN-427", "Orthodontics Okafor", "50667", true, 1},
    {"CON-105", "INST-1001", "LAB-322", "Old Town Ceramics", "1010", true, 6},
    {"CON-201", "INST-2002", "LAB-301", "Alpine Dental Laboratory", "6020", true, 3},
}};

// ---- the requests ------------------------------------------------------------------------------------------------

struct FileRow
{
    char const* name = "";
    char const* fileType = "";
    qint64 size = 0;
    bool isOwn = false;
    bool isSeen = false;
};

struct RequestRow
{
    RequestKind kind = RequestKind::DentalScan;
    RequestStatus status = RequestStatus::Created;
    char const* installation = "";
    char const* connectionId = ""; // empty: central production
    char const* note = "";
    char const* reply = ""; // the partner's note; empty: none yet
    std::span<FileRow const> files = {};
    int crowns = 0;
    int bars = 0;
};

constexpr FileRow scans[] = {
    {"upper-jaw.stl", "stl", 18'734'112, true, true}, {"lower-jaw.stl", "stl", 16'201'884, true, true}};
constexpr FileRow design[] = {{"scan.ply", "ply", 24'118'020, true, true}, {"design.stl", "stl", 6'310'484, false}};
constexpr FileRow surgery[] = {{"volume.dcm", "dcm", 5'368'709'120, true, true}, {"plan.pdf", "pdf", 482'113, false}};
constexpr FileRow patientFile[] = {{"patient.zpx", "ZelkoPatient", 41'943'040, false}};
constexpr FileRow mixed[] = {
    {"patient.zpx", "ZelkoPatient", 39'004'160, false},
    {"photo.jpg", "jpg", 2'204'551, false},
    {"answer.pdf", "pdf", 120'334, true, true}};
constexpr FileRow ownOnly[] = {{"referral-letter.pdf", "pdf", 98'230, true, true}};

constexpr RequestRow requests[] = {
    {RequestKind::DentalScan,
     RequestStatus::Created,
     "INST-1001",
     "CON-102",
     "Please scan both jaws with bite.",
     "",
     {}},
    {RequestKind::DentalScan, RequestStatus::Completed, "INST-1001", "CON-102", "Control scan after healing.",
     "Scan attached.", scans},
    {RequestKind::LabDesign, RequestStatus::InProgress, "INST-1001", "CON-101", "Crown 21, match the neighbour.",
     "Started today.", scans},
    {RequestKind::LabDesign, RequestStatus::Answered, "INST-1001", "CON-103", "Bridge 35 to 37.",
     "Proposal attached, please check the contacts.", design},
    {RequestKind::LabDesign, RequestStatus::Rejected, "INST-1001", "CON-105", "Veneers 13 to 23.",
     "The margin cannot be seen in the scan.", scans},
    {RequestKind::TempShell, RequestStatus::Created, "INST-1001", "CON-101", "Shell for immediate loading.", "", scans},
    {RequestKind::TempShell, RequestStatus::Completed, "INST-1001", "CON-101", "Shell, region 11.", "Shipped.", design},
    {RequestKind::Template, RequestStatus::InProgress, "INST-1001", "CON-103", "Surgical template, lower jaw.",
     "File is being prepared.", surgery},
    {RequestKind::Template, RequestStatus::Completed, "INST-1001", "CON-103", "Surgical template with sleeves.",
     "Shipped.", surgery},
    {RequestKind::Restoration, RequestStatus::Answered, "INST-1001", "CON-101", "Screw-retained crowns.",
     "Design is ready for approval.", design, 2},
    {RequestKind::Restoration, RequestStatus::InProgress, "INST-1001", "CON-103", "Single crown on implant.", "", scans,
     1},
    {RequestKind::Restoration, RequestStatus::Completed, "INST-1001", "CON-101", "Bar, upper jaw.", "Shipped.", design,
     0, 1},
    {RequestKind::SurgeryPlan, RequestStatus::Created, "INST-1001", "CON-102", "Plan two implants, region 36 and 37.",
     "", surgery},
    {RequestKind::SurgeryPlan, RequestStatus::Completed, "INST-1001", "CON-102", "Sinus lift, please advise.",
     "Plan attached.", surgery},
    {RequestKind::CentralizedRestoration, RequestStatus::InProgress, "INST-1001", "", "Titanium bar.", "In milling.",
     design, 0, 1},
    {RequestKind::CentralizedRestoration, RequestStatus::Completed, "INST-1001", "", "Two abutments.", "Shipped.",
     design, 2},
    {RequestKind::Referral, RequestStatus::Created, "INST-1001", "CON-102", "", "Please take over this patient.",
     patientFile},
    {RequestKind::Referral, RequestStatus::InProgress, "INST-1001", "CON-102", "We will see the patient on Monday.",
     "Images attached.", mixed},
    {RequestKind::Referral, RequestStatus::Completed, "INST-1001", "CON-102", "Referral for surgery.", "", ownOnly},
    {RequestKind::LabDesign, RequestStatus::InProgress, "INST-2002", "CON-201", "Inlay 46.", "", scans},
    {RequestKind::Referral, RequestStatus::Created, "INST-2002", "CON-201", "", "Second opinion, please.", patientFile},
};

// ---- putting them together -----------------------------------------------------------------------------------------

Patient makePatient(State& state)
{
    auto const person = pick(state, people);
    auto const year = static_cast<int>(1940 + state.random() % 70);
    auto const dayOfYear = static_cast<int>(state.random() % 365);
    return {
        .id = state.newId("PAT"),
        .firstName = QString::fromUtf8(person.firstName),
        .lastName = QString::fromUtf8(person.lastName),
        .dateOfBirth = QDate(year, 1, 1).addDays(dayOfYear),
        .gender = QString::fromUtf8(person.gender)};
}

Restoration makeCrown(State& state)
{
    auto const tooth = pick(state, teeth);
    return {
        .firstTooth = tooth,
        .lastTooth = tooth,
        .type = "Crown",
        .material = pick(state, materials),
        .color = pick(state, colors),
        .note = "Screw channel angulated",
        .useAuthenticProducts = state.random() % 2 == 0,
        .implants = {
            {.id = state.newId("IC"),
             .tooth = tooth,
             .manufacturerId = QStringLiteral("MF-%1").arg(100 + state.random() % 5),
             .category = pick(state, implantCategories),
             .size = pick(state, implantSizes)}}};
}

Restoration makeBar(State& state)
{
    auto bar = makeCrown(state);
    bar.firstTooth = 14;
    bar.lastTooth = 24;
    bar.type = "Bar";
    bar.material = "Titanium";
    bar.color.clear();
    bar.barType = "Dolder";
    bar.implants.front().tooth = bar.firstTooth;
    auto second = makeCrown(state).implants.front();
    second.tooth = bar.lastTooth;
    bar.implants.push_back(second);
    return bar;
}

void addNote(State& state, CollaborationRequest& request, char const* text, QString const& author, bool isOwn)
{
    if (*text != '\0')
    {
        request.notes.push_back({.text = text, .createdAt = state.tick(), .createdBy = author, .isOwn = isOwn});
    }
}

void addContent(State& state, CollaborationRequest& request, RequestRow const& row)
{
    auto const partner = partnerOf(state, request.connectionId).name;
    addNote(state, request, row.note, request.treatingClinician, true);
    addNote(state, request, row.reply, partner, false);
    for (auto const& file : row.files)
    {
        addFile(
            state, request,
            {.name = file.name,
             .fileType = file.fileType,
             .size = file.size,
             .chunkSize = 1'048'576,
             .createdBy = file.isOwn ? request.treatingClinician : partner,
             .isOwn = file.isOwn,
             .isUploaded = true,
             .isSeen = file.isSeen});
    }
    for (int count = 0; count < row.crowns; ++count)
    {
        request.restorations.push_back(makeCrown(state));
    }
    for (int count = 0; count < row.bars; ++count)
    {
        request.restorations.push_back(makeBar(state));
    }
}

void addSeededRequest(State& state, RequestRow const& row)
{
    auto const patient = makePatient(state);
    auto& request = addRequest(
        state, {.installation = row.installation,
                .connectionId = row.connectionId,
                .kind = row.kind,
                .status = static_cast<int>(row.status),
                .version = "1.0",
                .metadata = QStringLiteral("{\"caseColor\":\"%1\"}").arg(QLatin1String(pick(state, colors))),
                .dueDate = state.now.date().addDays(static_cast<int>(5 + state.random() % 20)),
                .treatingClinician = pick(state, clinicians),
                .requesterPatientReference = QStringLiteral("REF-%1").arg(patient.id),
                .patient = patient,
                .isFileLocked = row.kind == RequestKind::Template && row.status < RequestStatus::Completed});
    addContent(state, request, row);
    state.now = state.now.addSecs(3600);
}

} // namespace

void seedCollaboration(State& state)
{
    for (auto const& row : partners)
    {
        state.collaboration.connections.add(
            {.id = row.connectionId,
             .installation = row.installation,
             .partnerId = row.partnerId,
             .name = row.name,
             .zipCode = row.zipCode,
             .isInitiator = row.isInitiator,
             .status = row.status});
    }
    for (auto const& row : requests)
    {
        addSeededRequest(state, row);
    }
}

} // namespace simulator
