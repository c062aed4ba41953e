#include <KeloCommunicationLib/partners/PartnerRecords.h>

#include <QObject>

#include <KeloCommunicationLib/partners/internal/PartnerFields.h>

PartnerCaseInfo::Status PartnerCaseInfo::statusFromString(QString const& text)
{
    return jsonSerializer::implementation::partnerCaseStates.valueOf(text);
}

QString PartnerCaseInfo::stringFromStatus(Status status)
{
    switch (status)
    {
    case Status::Created:
        return QObject::tr("Created");
    case Status::Draft:
        return QObject::tr("Draft");
    case Status::Accepted:
        return QObject::tr("Accepted");
    case Status::Finished:
        return QObject::tr("Finished");
    case Status::UpdatingStatus:
        break;
    }
    // A number without a name is shown as a status that is still to come, although an unknown text reads as Draft.
    return QObject::tr("Updating Status");
}
