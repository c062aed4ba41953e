#include "cli/requests/RequestView.h"

#include "cli/shell/Input.h"
#include "cli/shell/Listing.h"

namespace cli
{

namespace
{

using namespace Qt::Literals::StringLiterals;

QString shortTime(QDateTime const& time)
{
    return time.toString(u"yyyy-MM-dd HH:mm"_s);
}

QString author(QString const& name, bool isOwn)
{
    return isOwn ? name + " (own)"_L1 : name;
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

} // namespace

QString listText(std::vector<collaboration::RequestInfo> const& requests)
{
    return tableOf(
        {{u"REQUEST"_s, Cells::Copied}, u"TYPE"_s, {u"TRANSACTION"_s, Cells::Copied}}, requests,
        [](collaboration::RequestInfo const& request) {
            return QStringList{request.requestId, nameOf(request.requestType), request.transactionId};
        });
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
        text +=
            u'\n'
            + tableOf(
                {{u"FILE"_s, Cells::Copied}, u"NAME"_s, u"TYPE"_s, {u"BYTES"_s, Cells::Whole}, u"SEEN"_s, u"FROM"_s},
                details.files, fileRow);
    }
    return details.noteInfos.empty() ? text : text + u'\n' + notesText(details.noteInfos);
}

std::vector<Heading> summaryHeader()
{
    return {
        {u"REQUEST"_s, Cells::Copied},
        u"TYPE"_s,
        {u"KEY"_s, Cells::Copied},
        u"STATUS"_s,
        {u"DUE"_s, Cells::Whole},
        u"PARTNER"_s,
        u"PATIENT"_s,
        u"FILES"_s,
        u"NOTES"_s};
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

QString notesText(std::vector<collaboration::NoteInfo> const& notes)
{
    // Not in a table, which may be shortened: notes are there to be read.
    QString text;
    for (auto const& note : notes)
    {
        text += u"%1  %2\n    %3\n"_s.arg(
            shortTime(note.createdAt), printable(author(note.createdBy, note.isCreator)), printable(note.text));
    }
    return text;
}

} // namespace cli
