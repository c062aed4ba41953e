#include "cli/Commands.h"

#include <platform/core/HostInfo.h>

#include "cli/requests/Session.h"
#include "cli/shell/Arguments.h"
#include "cli/shell/Context.h"
#include "cli/shell/Input.h"
#include "cli/shell/Listing.h"

namespace cli
{

namespace
{

using namespace Qt::Literals::StringLiterals;
using collaboration::CreateRequestRequest;
using collaboration::RequestType;

/// The request as the arguments tell it. A restoration request holds less, and implants in addition.
struct Wish
{
    CreateRequestRequest request;
    PatientGender::Gender gender = PatientGender::NotSet;
    std::vector<FileDescription> files;
    std::vector<CreateRestorationRequestInfo::ImplantConnection> implants;
};

CreateRestorationRequestInfo restorationOf(Wish const& wish)
{
    auto const& request = wish.request;
    CreateRestorationRequestInfo info;
    info.setSessionId(request.sessionId);
    info.setInstallationReference(request.installationReference);
    info.setUserReference(request.userReference);
    info.setVersionNumber(request.versionNumber);
    info.setNote(request.note);
    info.setDueDate(request.dueDate);
    info.setNewFiles(wish.files);
    info.setTreatingClinician(request.treatingClinician);
    info.setPatientId(request.patientId);
    info.setPatientFirstName(request.patientFirstName);
    info.setPatientLastName(request.patientLastName);
    info.setPatientGender(wish.gender);
    info.setPatientBirthdayString(request.patientDateOfBirth.toString(Qt::ISODate));
    info.setImplantConnections(wish.implants);
    return info;
}

/// The service's reply; its members are the same for all kinds.
QJsonObject create(Context const& context, Wish const& wish)
{
    using jsonSerializer::describe;
    auto& connection = context.connection();
    switch (wish.request.type)
    {
    case RequestType::Restoration:
        return describe(context.valueOf(connection.createRestorationCollaboration(restorationOf(wish))));
    case RequestType::SurgeryPlan:
        return describe(context.valueOf(connection.createSurgeryPlanRequest(wish.request)));
    case RequestType::Referral:
        return describe(context.valueOf(connection.createReferralRequest(wish.request)));
    default:
        return describe(context.valueOf(connection.createRequest(wish.request)));
    }
}

/// A restoration request has no place for some members, the others none for implants; nothing given may get lost
/// silently.
void checkKind(Wish const& wish)
{
    bool const isRestoration = wish.request.type == RequestType::Restoration;
    if (isRestoration && !(wish.request.metadata.isEmpty() && wish.request.requesterPatientReference.isEmpty()))
    {
        throw badInput(u"A restoration request takes neither --metadata nor --patient-reference."_s);
    }
    if (!isRestoration && !wish.implants.empty())
    {
        throw badInput(u"Only a restoration request takes --implant."_s);
    }
}

void show(Context const& context, QJsonObject const& created)
{
    auto const files = created[u"Files"].toArray();
    QString const text = u"Created the request %1 (%2).\n"_s.arg(
        printable(created[u"CollaborationRequestId"].toString()),
        printable(created[u"CollaborationRequestKey"].toString()));
    auto const rowOf = [](QJsonValue const& file) {
        return QStringList{file[u"Id"].toString(), file[u"Name"].toString()};
    };
    context.output().showDone(
        created, files.isEmpty() ? text : text + tableOf({{u"UPLOAD SLOT"_s, Cells::Copied}, u"NAME"_s}, files, rowOf));
}

struct WishArguments
{
    Value<QString> type, note, due;
    Value<QStringList> files;
    Value<int> chunkSize;
    Value<QString> clinician, patientId, firstName, lastName, gender, birthDate, patientReference, metadata;
    Value<QStringList> implants;
};

WishArguments declareWish(Arguments& arguments)
{
    return {
        .type = arguments.requiredText("--type", "The request's type, by name or number", requestTypeNames),
        .note = arguments.text("--note", "A note to the partner"),
        .due = arguments.text("--due", "The day until which it is wanted, as 2026-12-31"),
        .files = arguments.paths("--file", "Files that will be uploaded; they are described, not sent"),
        .chunkSize =
            arguments.number("--chunk-size", "Bytes in which the files will be uploaded; 1 MiB unless given", 1 << 20),
        .clinician = arguments.text("--clinician", "The treating clinician"),
        .patientId = arguments.text("--patient-id", "The patient's id"),
        .firstName = arguments.text("--first-name", "The patient's first name"),
        .lastName = arguments.text("--last-name", "The patient's last name"),
        .gender = arguments.text("--gender", "The patient's gender", genderNames),
        .birthDate = arguments.text("--birth-date", "The patient's day of birth, as 1980-12-31"),
        .patientReference = arguments.text("--patient-reference", "Your own reference for the patient"),
        .metadata = arguments.text("--metadata", "Text of the application that goes with the request"),
        .implants = arguments.texts("--implant", "Implant connections of a restoration, as ID:TOOTH")};
}

/// Everything but the session. Throws a Failure for the first mistake.
Wish readWish(WishArguments const& given, Context const& context)
{
    Wish wish;
    CreateRequestRequest& request = wish.request;
    request.type = requestType(*given.type);
    request.installationReference = context.installation();
    request.userReference = context.user();
    request.versionNumber = CollaborationRequestVersion::getVersion();
    request.note = *given.note;
    request.dueDate = day("due date", *given.due);
    request.metadata = *given.metadata;
    request.treatingClinician = *given.clinician;
    request.patientId = *given.patientId;
    request.patientFirstName = *given.firstName;
    request.patientLastName = *given.lastName;
    request.patientDateOfBirth = day("birth date", *given.birthDate);
    request.requesterPatientReference = *given.patientReference;
    wish.gender = gender(*given.gender);
    request.patientGender = conversions::toString(wish.gender);
    wish.implants = implants(*given.implants);
    checkKind(wish);
    wish.files = describeFiles(*given.files, *given.chunkSize);
    for (auto const& file : wish.files)
    {
        request.newFiles.push_back({file.name, file.size, file.chunkSize, file.checkSum, file.fileType});
    }
    return wish;
}

} // namespace

Action requestsCreate(Arguments& arguments)
{
    auto const connection =
        arguments.text("--connection,--partner", "The partner connection's id; none without a partner");
    auto const given = declareWish(arguments);
    return [=](Context const& context)
    {
        QString const connectionId = checkedConnection(*connection);
        Wish wish = readWish(given, context);
        wish.request.sessionId = openSession(context, connectionId);
        show(context, create(context, wish));
    };
}

} // namespace cli
