#include "RequestRow.h"

#include <QCoreApplication>

namespace board
{

namespace
{

using collaboration::RequestType;

QString wordFor(RequestType kind)
{
    struct Word
    {
        RequestType kind;
        char const* text;
    };
    static constexpr Word words[] = {
        {RequestType::DentalScan, QT_TRANSLATE_NOOP("RequestKind", "Dental scan")},
        {RequestType::LabDesign, QT_TRANSLATE_NOOP("RequestKind", "Lab design")},
        {RequestType::TempShell, QT_TRANSLATE_NOOP("RequestKind", "Temporary shell")},
        {RequestType::Template, QT_TRANSLATE_NOOP("RequestKind", "Template")},
        {RequestType::Restoration, QT_TRANSLATE_NOOP("RequestKind", "Restoration")},
        {RequestType::SurgeryPlan, QT_TRANSLATE_NOOP("RequestKind", "Surgery plan")},
        {RequestType::CentralizedRestoration, QT_TRANSLATE_NOOP("RequestKind", "Central restoration")},
        {RequestType::Referral, QT_TRANSLATE_NOOP("RequestKind", "Referral")},
    };
    for (auto const& word : words)
    {
        if (word.kind == kind)
        {
            return QCoreApplication::translate("RequestKind", word.text);
        }
    }
    // A later version of the service may have kinds that have no word yet.
    return QString::number(static_cast<int>(kind));
}

} // namespace

RequestRow rowOf(collaboration::ExtendedRequestDetails const& request)
{
    auto const& details = request.requestDetails;
    return {
        .id = details.id,
        .key = details.key,
        .kind = wordFor(request.requestType),
        .partnerId = request.partnerId,
        .partner = request.partnerName,
        .patient = (details.patient.patientFirstName + u' ' + details.patient.patientLastName).trimmed(),
        .status = static_cast<int>(details.status),
        .due = details.dueDate,
        .files = details.files,
        .notes = details.noteInfos};
}

} // namespace board
