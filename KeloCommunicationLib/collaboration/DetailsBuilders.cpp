#include <KeloCommunicationLib/collaboration/internal/DetailsBuilders.h>

#include <algorithm>

namespace collaboration::details
{

bool hasFileOfPartner(RequestDetails const& request)
{
    return std::any_of(
        request.files.begin(), request.files.end(), [](FileInfo const& file) { return !file.isCreator; });
}

ExtendedRequestDetails build(Partner const& partner, RequestDetails const& entry, RequestType type)
{
    ExtendedRequestDetails details;
    details.partnershipId = partner.partnershipId;
    details.partnerId = partner.id;
    details.partnerName = partner.partnerName;
    details.requestDetails = entry;
    details.requestType = type;
    return details;
}

ExtendedRequestDetails build(Partner const& partner, TemplateRequestDetailInfo const& entry, RequestType type)
{
    ExtendedRequestDetails details = build(partner, entry.requestDetails, type);
    details.orderId = entry.orderId;
    return details;
}

ExtendedRequestDetails build(Partner const& partner, RestorationRequest const& entry, RequestType type)
{
    ExtendedRequestDetails details = build(partner, entry.requestDetails, type);
    details.restorations = entry.restorations;
    details.url = entry.restorationURL;
    return details;
}

ExtendedRequestDetails build(Partner const& partner, UploadFilesRequestDetailInfo const& entry, RequestType type)
{
    ExtendedRequestDetails details = build(partner, entry.requestDetails, type);
    details.requesterPatientReference = entry.requesterPatientReference;
    if (type == RequestType::Referral)
    {
        std::vector<FileInfo> const& files = entry.requestDetails.files;
        details.url = entry.referralURL;
        details.isZelkoPatient = files.size() == 1 && files.front().fileType == QLatin1String("ZelkoPatient");
    }
    else
    {
        details.url = entry.surgeryPlanURL;
    }
    return details;
}

} // namespace collaboration::details
