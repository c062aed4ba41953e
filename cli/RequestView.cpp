#include "cli/RequestView.h"

#include "cli/Input.h"
#include "cli/Output.h"

namespace cli
{

namespace
{

using namespace Qt::Literals::StringLiterals;

template <class T, class Writer>
QJsonArray arrayOf(std::vector<T> const& list, Writer writer)
{
    QJsonArray array;
    for (T const& element : list)
    {
        array.append(writer(element));
    }
    return array;
}

template <class T, class Writer>
QString tableOf(QStringList const& header, std::vector<T> const& list, Writer writer)
{
    std::vector<QStringList> rows;
    for (T const& element : list)
    {
        rows.push_back(writer(element));
    }
    return tableText(header, rows);
}

QString isoTime(QDateTime const& time)
{
    return time.toString(Qt::ISODateWithMs);
}

QString shortTime(QDateTime const& time)
{
    return time.toString(u"yyyy-MM-dd HH:mm"_s);
}

QString author(QString const& name, bool isOwn)
{
    return isOwn ? name + " (own)"_L1 : name;
}

QJsonObject fileJson(collaboration::FileInfo const& file)
{
    return {
        {u"Id"_s, file.id},
        {u"State"_s, file.state},
        {u"Name"_s, file.name},
        {u"Size"_s, static_cast<qint64>(file.size)},
        {u"NumberOfChunks"_s, file.numberOfChunks},
        {u"ChunkSize"_s, file.chunkSize},
        {u"FileType"_s, file.fileType},
        {u"CreatedBy"_s, file.createdBy},
        {u"IsCreator"_s, file.isCreator},
        {u"IsMarkedAsSeen"_s, file.isMarkedAsSeen}};
}

QStringList fileRow(collaboration::FileInfo const& file)
{
    return {
        file.id,
        file.name,
        file.fileType,
        QString::number(file.size),
        file.isMarkedAsSeen ? u"yes"_s : u"no"_s,
        author(file.createdBy, file.isCreator)};
}

QJsonObject implantJson(collaboration::ImplantConnection const& implant)
{
    return {
        {u"ToothNumber"_s, implant.toothNumber},
        {u"ImplantConnectionId"_s, implant.implantConnectionId},
        {u"ManufacturerId"_s, implant.manufacturerId},
        {u"ImplantCategory"_s, implant.implantCategory},
        {u"Size"_s, implant.size}};
}

QJsonObject restorationJson(collaboration::Restoration const& restoration)
{
    return {
        {u"ImplantConnections"_s, arrayOf(restoration.implantConnections, implantJson)},
        {u"ToothNumberStart"_s, restoration.toothNumberStart},
        {u"ToothNumberEnd"_s, restoration.toothNumberEnd},
        {u"Type"_s, restoration.type},
        {u"Material"_s, restoration.material},
        {u"Color"_s, restoration.color},
        {u"Note"_s, restoration.note},
        {u"UseAuthenticProducts"_s, restoration.useAuthenticProducts},
        {u"BarType"_s, restoration.barType}};
}

QStringList restorationRow(collaboration::Restoration const& restoration)
{
    QStringList implants;
    for (auto const& implant : restoration.implantConnections)
    {
        implants << u"%1 at %2"_s.arg(implant.implantConnectionId).arg(implant.toothNumber);
    }
    QString const first = QString::number(restoration.toothNumberStart);
    QString const last = QString::number(restoration.toothNumberEnd);
    return {
        first == last ? first : first + u'-' + last,
        restoration.type,
        restoration.material,
        restoration.color,
        implants.join(", "_L1),
        restoration.note};
}

QJsonObject listEntryJson(collaboration::RequestInfo const& request)
{
    return {
        {u"RequestId"_s, request.requestId},
        {u"TransactionId"_s, request.transactionId},
        {u"RequestType"_s, static_cast<int>(request.requestType)},
        {u"Type"_s, nameOf(request.requestType)}};
}

QJsonObject noteJson(collaboration::NoteInfo const& note)
{
    return {
        {u"Text"_s, note.text},
        {u"CreatedAt"_s, isoTime(note.createdAt)},
        {u"CreatedBy"_s, note.createdBy},
        {u"IsCreator"_s, note.isCreator}};
}

QString patientName(collaboration::PatientInfo const& patient)
{
    return (patient.patientFirstName + u' ' + patient.patientLastName).trimmed();
}

QString patientText(collaboration::PatientInfo const& patient)
{
    QStringList parts{
        patientName(patient), patient.patientId, patient.patientDateOfBirth.toString(Qt::ISODate),
        patient.patientGender};
    parts.removeAll(QString());
    return parts.join(", "_L1);
}

QString statusText(collaboration::RequestStatus status)
{
    return status == collaboration::RequestStatus::Unset ? QString() : QString::number(static_cast<int>(status));
}

QJsonObject commonJson(collaboration::RequestDetails const& details)
{
    auto const& patient = details.patient;
    return {
        {u"RequestId"_s, details.id},
        {u"TransactionId"_s, details.transactionId},
        {u"Key"_s, details.key},
        {u"Status"_s, static_cast<int>(details.status)},
        {u"VersionNumber"_s, details.versionNumber.toString()},
        {u"Metadata"_s, details.metadata},
        {u"DueDate"_s, details.dueDate.toString(Qt::ISODate)},
        {u"CreationTimestamp"_s, isoTime(details.creationTimestamp)},
        {u"Files"_s, arrayOf(details.files, fileJson)},
        {u"NoteInfos"_s, notesJson(details.noteInfos)},
        {u"InternalCaseIdentifier"_s, details.internalCaseIdentifier},
        {u"OrderReference"_s, details.orderReference},
        {u"TreatingClinician"_s, details.treatingClinician},
        {u"PatientId"_s, patient.patientId},
        {u"PatientFirstName"_s, patient.patientFirstName},
        {u"PatientLastName"_s, patient.patientLastName},
        {u"PatientDateOfBirth"_s, patient.patientDateOfBirth.toString(Qt::ISODate)},
        {u"PatientGender"_s, patient.patientGender}};
}

} // namespace

QJsonArray listJson(std::vector<collaboration::RequestInfo> const& requests)
{
    return arrayOf(requests, listEntryJson);
}

QString listText(std::vector<collaboration::RequestInfo> const& requests)
{
    return tableOf(
        {u"REQUEST"_s, u"TYPE"_s, u"TRANSACTION"_s}, requests,
        [](collaboration::RequestInfo const& request) {
            return QStringList{request.requestId, nameOf(request.requestType), request.transactionId};
        });
}

QJsonObject detailsJson(collaboration::ExtendedRequestDetails const& request)
{
    QJsonObject json = commonJson(request.requestDetails);
    json.insert(u"RequestType"_s, static_cast<int>(request.requestType));
    json.insert(u"Type"_s, nameOf(request.requestType));
    json.insert(u"PartnershipId"_s, request.partnershipId);
    json.insert(u"PartnerId"_s, request.partnerId);
    json.insert(u"PartnerName"_s, request.partnerName);
    json.insert(u"Url"_s, request.url);
    json.insert(u"OrderId"_s, request.orderId);
    json.insert(u"RequesterPatientReference"_s, request.requesterPatientReference);
    json.insert(u"Restorations"_s, arrayOf(request.restorations, restorationJson));
    if (request.isZelkoPatient)
    {
        json.insert(u"IsZelkoPatient"_s, *request.isZelkoPatient);
    }
    return json;
}

QString detailsText(collaboration::ExtendedRequestDetails const& request)
{
    auto const& details = request.requestDetails;
    QString text = fieldsText(
        {{u"Request"_s, details.id},
         {u"Key"_s, details.key},
         {u"Type"_s, nameOf(request.requestType)},
         {u"Status"_s, statusText(details.status)},
         {u"Partner"_s, request.partnerName},
         {u"Patient"_s, patientText(details.patient)},
         {u"Clinician"_s, details.treatingClinician},
         {u"Due"_s, details.dueDate.toString(Qt::ISODate)},
         {u"Created"_s, shortTime(details.creationTimestamp)},
         {u"Order"_s, request.orderId.isEmpty() ? details.orderReference : request.orderId},
         {u"Case"_s, details.internalCaseIdentifier},
         {u"Patient reference"_s, request.requesterPatientReference},
         {u"URL"_s, request.url},
         {u"Metadata"_s, details.metadata},
         {u"Transaction"_s, details.transactionId}});
    if (!request.restorations.empty())
    {
        text += u'\n'
                + tableOf(
                    {u"TEETH"_s, u"RESTORATION"_s, u"MATERIAL"_s, u"COLOR"_s, u"IMPLANTS"_s, u"NOTE"_s},
                    request.restorations, restorationRow);
    }
    if (!details.files.empty())
    {
        text += u'\n'
                + tableOf({u"FILE"_s, u"NAME"_s, u"TYPE"_s, u"BYTES"_s, u"SEEN"_s, u"FROM"_s}, details.files, fileRow);
    }
    return details.noteInfos.empty() ? text : text + u'\n' + notesText(details.noteInfos);
}

QStringList const& summaryHeader()
{
    static QStringList const header{u"REQUEST"_s, u"TYPE"_s,    u"KEY"_s,   u"STATUS"_s, u"DUE"_s,
                                    u"PARTNER"_s, u"PATIENT"_s, u"FILES"_s, u"NOTES"_s};
    return header;
}

QStringList summaryRow(collaboration::ExtendedRequestDetails const& request)
{
    auto const& details = request.requestDetails;
    return {
        details.id,
        nameOf(request.requestType),
        details.key,
        statusText(details.status),
        details.dueDate.toString(Qt::ISODate),
        request.partnerName,
        patientName(details.patient),
        QString::number(details.files.size()),
        QString::number(details.noteInfos.size())};
}

QJsonArray notesJson(std::vector<collaboration::NoteInfo> const& notes)
{
    return arrayOf(notes, noteJson);
}

QString notesText(std::vector<collaboration::NoteInfo> const& notes)
{
    return tableOf(
        {u"TIME"_s, u"FROM"_s, u"NOTE"_s}, notes,
        [](collaboration::NoteInfo const& note) {
            return QStringList{shortTime(note.createdAt), author(note.createdBy, note.isCreator), note.text};
        });
}

} // namespace cli
