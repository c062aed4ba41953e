#include "cli/commands/Commands.h"

#include <algorithm>

#include <QJsonArray>
#include <QJsonObject>

#include <platform/core/HostInfo.h>

#include "cli/Arguments.h"
#include "cli/Context.h"
#include "cli/Input.h"
#include "cli/Session.h"

namespace cli
{

namespace
{

using namespace Qt::Literals::StringLiterals;
using collaboration::CreateRequestRequest;
using collaboration::RequestType;

struct Created
{
    QString id;
    QString key;
    std::vector<collaboration::CreatedFileInfo> files;
};

Created created(collaboration::UploadFilesRequest const& reply)
{
    return {reply.collaborationRequestId, reply.collaborationRequestKey, reply.files};
}

Created created(CreateRestorationResponseInfo const& reply)
{
    Created result{reply.getCollaborationRequestId(), reply.getCollaborationRequestKey(), {}};
    for (auto const& file : reply.getFiles())
    {
        result.files.push_back({file.id, file.name});
    }
    return result;
}

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

Created create(Context const& context, Wish const& wish)
{
    auto& connection = context.connection();
    switch (wish.request.type)
    {
    case RequestType::Restoration:
        return created(context.valueOf(connection.createRestorationCollaboration(restorationOf(wish))));
    case RequestType::SurgeryPlan:
        return created(context.valueOf(connection.createSurgeryPlanRequest(wish.request)));
    case RequestType::Referral:
        return created(context.valueOf(connection.createReferralRequest(wish.request)));
    default:
        return created(context.valueOf(connection.createRequest(wish.request)));
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

void show(Context const& context, Created const& request)
{
    QJsonArray uploadSlots;
    std::vector<QStringList> rows;
    for (auto const& file : request.files)
    {
        uploadSlots.append(QJsonObject{{u"Id"_s, file.id}, {u"Name"_s, file.name}});
        rows.push_back({file.id, file.name});
    }
    QJsonObject const json{{u"RequestId"_s, request.id}, {u"Key"_s, request.key}, {u"Files"_s, uploadSlots}};
    QString const text = u"Created the request %1 (%2).\n"_s.arg(printable(request.id), printable(request.key));
    context.output().show(json, rows.empty() ? text : text + tableText({u"UPLOAD SLOT"_s, u"NAME"_s}, rows));
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
        .type = arguments.requiredText("--type", "The request's type, by name or number"),
        .note = arguments.text("--note", "A note to the partner"),
        .due = arguments.text("--due", "The day until which it is wanted, as 2026-12-31"),
        .files = arguments.paths("--file", "Files that will be uploaded; they are described, not sent"),
        .chunkSize =
            arguments.number("--chunk-size", "Bytes in which the files will be uploaded; 1 MiB unless given", 1 << 20),
        .clinician = arguments.text("--clinician", "The treating clinician"),
        .patientId = arguments.text("--patient-id", "The patient's id"),
        .firstName = arguments.text("--first-name", "The patient's first name"),
        .lastName = arguments.text("--last-name", "The patient's last name"),
        .gender = arguments.text("--gender", "The patient's gender: Male, Female or Other"),
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
