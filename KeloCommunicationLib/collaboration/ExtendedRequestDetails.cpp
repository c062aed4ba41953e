#include <KeloCommunicationLib/collaboration/ExtendedRequestDetails.h>

#include <utility>

#include <KeloCommunicationLib/collaboration/internal/CollaborationFields.h>
#include <KeloCommunicationLib/json/internal/Converters.h>

using collaboration::ExtendedRequestDetails;

/// Not a record of the wire: only described.
template <>
inline constexpr auto jsonSerializer::implementation::fieldsOf<ExtendedRequestDetails> =
    fields<ExtendedRequestDetails>({
        field<&ExtendedRequestDetails::partnershipId>(u"PartnershipId"),
        field<&ExtendedRequestDetails::partnerId>(u"PartnerId"),
        field<&ExtendedRequestDetails::partnerName>(u"PartnerName"),
        flat<&ExtendedRequestDetails::requestDetails>(),
        field<&ExtendedRequestDetails::requestType>(u"RequestType"),
        field<&ExtendedRequestDetails::url>(u"Url"),
        field<&ExtendedRequestDetails::restorations>(u"Restorations"),
        field<&ExtendedRequestDetails::requesterPatientReference>(u"RequesterPatientReference"),
        field<&ExtendedRequestDetails::orderId>(u"OrderId"),
        field<&ExtendedRequestDetails::isZelkoPatient>(u"IsZelkoPatient"),
    });

KELO_DESCRIBED(ExtendedRequestDetails);

namespace collaboration
{

ExtendedRequestDetails extendedDetails(Partner const& partner, RequestDetails entry, RequestType type)
{
    ExtendedRequestDetails details;
    details.partnershipId = partner.partnershipId;
    details.partnerId = partner.id;
    details.partnerName = partner.partnerName;
    details.requestDetails = std::move(entry);
    details.requestType = type;
    return details;
}

ExtendedRequestDetails extendedDetails(Partner const& partner, TemplateRequestDetailInfo entry, RequestType type)
{
    ExtendedRequestDetails details = extendedDetails(partner, std::move(entry.requestDetails), type);
    details.orderId = std::move(entry.orderId);
    return details;
}

ExtendedRequestDetails extendedDetails(Partner const& partner, RestorationRequest entry, RequestType type)
{
    ExtendedRequestDetails details = extendedDetails(partner, std::move(entry.requestDetails), type);
    details.restorations = std::move(entry.restorations);
    details.url = std::move(entry.restorationURL);
    return details;
}

ExtendedRequestDetails extendedDetails(Partner const& partner, UploadFilesRequestDetailInfo entry, RequestType type)
{
    ExtendedRequestDetails details = extendedDetails(partner, std::move(entry.requestDetails), type);
    details.requesterPatientReference = std::move(entry.requesterPatientReference);
    bool const isReferral = type == RequestType::Referral;
    details.url = std::move(isReferral ? entry.referralURL : entry.surgeryPlanURL);
    if (isReferral)
    {
        std::vector<FileInfo> const& files = details.requestDetails.files;
        details.isZelkoPatient = files.size() == 1 && files.front().fileType == QLatin1String("ZelkoPatient");
    }
    return details;
}

} // namespace collaboration
