#include <KeloCommunicationLib/collaboration/CollaborationOperations.h>

#include "cli/call/OperationCall.h"

namespace cli
{

using I = TessalyConnectionInterface;

// clang-format off
static constexpr Row collaborationTable[] = {
    row<operations::getConnectionsForLicense, &I::getConnectionsForLicense>({"INSTALLATION"}),
    row<operations::startConnection, &I::startConnection>({"REQUEST"}),
    row<operations::updateConnectionStatus, &I::updateConnectionStatus>({"REQUEST"}),
    row<operations::createCollaborationSession, static_cast<I::Reply<CollaborationSessionId> (I::*)(QString const&)>(&I::createCollaborationSession)>({"INSTALLATION"}),
    row<operations::createCollaborationSessionOver, static_cast<I::Reply<CollaborationSessionId> (I::*)(CreateCollaborationSessionInfo const&)>(&I::createCollaborationSession)>({"INFO"}),
    row<operations::createRestorationCollaboration, &I::createRestorationCollaboration>({"REQUEST"}),
    row<operations::updateCollaborationRequestStatus, &I::updateCollaborationRequestStatus>({"REQUEST"}),
    row<operations::getRestorationURL, &I::getRestorationURL>({"INFO", "REQUEST_ID"}),
    row<operations::createCollaborationSessionWithoutConnectionId, &I::createCollaborationSessionWithoutConnectionId>({"INFO"}),
    row<operations::createSurgeryPlanRequest, &I::createSurgeryPlanRequest>({"REQUEST"}),
    row<operations::updateSurgeryPlanRequest, &I::updateSurgeryPlanRequest>({"REQUEST"}),
    row<operations::createReferralRequest, &I::createReferralRequest>({"REQUEST"}),
    row<operations::getRequestIdByOrder, static_cast<I::Reply<collaboration::RequestIdResponse> (I::*)(QString const&, collaboration::SalesOrderNumberRequest const&) const>(&I::getRequestId)>({"INSTALLATION", "ORDER_NUMBER"}),
    row<operations::getRequestIdByKey, static_cast<I::Reply<collaboration::RequestIdResponse> (I::*)(QString const&, collaboration::RequestKeyRequest const&) const>(&I::getRequestId)>({"INSTALLATION", "KEY"}),
    row<operations::getUnlockedStateForRequest, &I::getUnlockedStateForRequest>({"INSTALLATION", "REQUEST_ID"}),
    row<operations::unlockTemplateRequest, &I::unlockTemplateRequest>({"INSTALLATION", "REQUEST_ID"}),
    row<operations::updateRequest, &I::updateRequest>({"REQUEST"}),
    row<operations::createRequest, &I::createRequest>({"REQUEST"}),
    row<operations::getRequests, static_cast<I::Reply<std::vector<collaboration::RequestInfo>> (I::*)(QString const&, GetRequestsInfo) const>(&I::getRequests)>({"INSTALLATION", "INFO"}),
    row<operations::getActiveRequests, static_cast<I::Reply<std::vector<collaboration::RequestInfo>> (I::*)(QString const&, bool) const>(&I::getRequests)>({"INSTALLATION", "ONLY_ACTIVE"}),
    row<operations::getCollaborationSessionRequestDetails, &I::getCollaborationSessionRequestDetails>({"INSTALLATION", "INFO"}),
    row<operations::getDentalScanRequestDetails, &I::getDentalScanRequestDetails>({"INSTALLATION", "INFO"}),
    row<operations::getLabDesignRequestDetails, &I::getLabDesignRequestDetails>({"INSTALLATION", "INFO"}),
    row<operations::getTempShellRequestDetails, &I::getTempShellRequestDetails>({"INSTALLATION", "INFO"}),
    row<operations::getRestorationRequestDetails, &I::getRestorationRequestDetails>({"INSTALLATION", "INFO"}),
    row<operations::getCentralizedRestorationRequestDetails, &I::getCentralizedRestorationRequestDetails>({"INSTALLATION", "INFO"}),
    row<operations::getTemplateRequestDetails, &I::getTemplateRequestDetails>({"INSTALLATION", "INFO"}),
    row<operations::getSurgeryPlanRequestDetails, &I::getSurgeryPlanRequestDetails>({"INSTALLATION", "INFO"}),
    row<operations::getReferralRequestDetails, &I::getReferralRequestDetails>({"INSTALLATION", "INFO"}),
    row<operations::markCollaborationFileAsSeen, &I::markCollaborationFileAsSeen>({"FILE_ID", "INFO"}),
};
// clang-format on

std::span<Row const> const collaborationRows(collaborationTable);

} // namespace cli
