#pragma once

#include <vector>

#include <QString>

#include <KeloCommunicationLib/Export.h>
#include <KeloCommunicationLib/collaboration/RequestRecords.h>
#include <platform/utility/Optional.h>

namespace collaboration
{

/// A request of any kind with its partner. What its kind does not have stays empty.
struct KELO_EXPORT ExtendedRequestDetails
{
    QString partnershipId;
    QString partnerId;
    QString partnerName;
    RequestDetails requestDetails;
    RequestType requestType = RequestType::Unset;
    QString url;                           ///< of the restoration, the surgery plan or the referral
    std::vector<Restoration> restorations; ///< restoration and centralized-restoration requests
    QString requesterPatientReference;     ///< surgery-plan and referral requests
    QString orderId;                       ///< template requests
    utility::Optional<bool>
        isZelkoPatient; ///< referrals only: the one file is a patient of the application's own format
};

/// What an entry of a details reply becomes with its partner; one for each kind of entry. `type` tells those requests
/// apart that share one.
KELO_EXPORT ExtendedRequestDetails extendedDetails(Partner const& partner, RequestDetails entry, RequestType type);
KELO_EXPORT ExtendedRequestDetails
extendedDetails(Partner const& partner, TemplateRequestDetailInfo entry, RequestType type);
KELO_EXPORT ExtendedRequestDetails extendedDetails(Partner const& partner, RestorationRequest entry, RequestType type);
KELO_EXPORT ExtendedRequestDetails
extendedDetails(Partner const& partner, UploadFilesRequestDetailInfo entry, RequestType type);

} // namespace collaboration
