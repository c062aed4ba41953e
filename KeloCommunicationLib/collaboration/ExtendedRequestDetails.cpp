#include <KeloCommunicationLib/collaboration/ExtendedRequestDetails.h>

#include <utility>

#include <KeloCommunicationLib/collaboration/internal/CollaborationFields.h>
#include <KeloCommunicationLib/json/internal/Converters.h>

namespace jsonSerializer::implementation
{

// Not a record of the wire: only described.
template <>
inline constexpr auto fieldsOf<collaboration::ExtendedRequestDetails> = fields<collaboration::ExtendedRequestDetails>({
    field<&collaboration::ExtendedRequestDetails::partnershipId>(u"PartnershipId"),
    field<&collaboration::ExtendedRequestDetails::partnerId>(u"PartnerId"),
    field<&collaboration::ExtendedRequestDetails::partnerName>(u"PartnerName"),
    flat<&collaboration::ExtendedRequestDetails::requestDetails>(),
    field<&collaboration::ExtendedRequestDetails::requestType>(u"RequestType"),
    field<&collaboration::ExtendedRequestDetails::url>(u"Url"),
    field<&collaboration::ExtendedRequestDetails::restorations>(u"Restorations"),
    field<&collaboration::ExtendedRequestDetails::requesterPatientReference>(u"RequesterPatientReference"),
    field<&collaboration::ExtendedRequestDetails::orderId>(u"OrderId"),
    field<&collaboration::ExtendedRequestDetails::isZelkoPatient>(u"IsZelkoPatient"),
});

} // namespace jsonSerializer::implementation

KELO_DESCRIBED(collaboration::ExtendedRequestDetails);

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
