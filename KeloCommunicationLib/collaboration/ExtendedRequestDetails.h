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

} // namespace collaboration
