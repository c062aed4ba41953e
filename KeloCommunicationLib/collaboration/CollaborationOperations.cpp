#include <KeloCommunicationLib/collaboration/CollaborationOperations.h>

#include <utility>

#include <KeloCommunicationLib/connection/KeloErrors.h>
#include <KeloCommunicationLib/connection/internal/RequestPipeline.h>
#include <platform/core/HostInfo.h>

using KeloCommunicationLib::internal::call;
using KeloCommunicationLib::internal::requestOf;

namespace
{

template <class T>
using Reply = TessalyConnectionInterface::Reply<T>;

} // namespace

Reply<CollaborationSessionId> TessalyConnection::createCollaborationSession(CreateCollaborationSessionInfo const& info)
{
    return call(*this, operations::createCollaborationSessionOver, {info.getConnectionId()}, info);
}

Reply<CollaborationSessionId> TessalyConnection::createCollaborationSession(QString const& installationId)
{
    return call(*this, operations::createCollaborationSession, {installationId}, {});
}

Reply<CollaborationSessionId> TessalyConnection::createCollaborationSessionWithoutConnectionId(
    CreateCollaborationSessionWithoutConnectionIdInfo const& info) const
{
    return call(
        *this, operations::createCollaborationSessionWithoutConnectionId, {info.getInstallationReference()}, info);
}

Reply<CreateRestorationResponseInfo> TessalyConnection::createRequest(
    collaboration::CreateRequestRequest const& request) const
{
    return call(*this, operations::createRequest, {request.sessionId}, request);
}

Reply<CreateRestorationResponseInfo> TessalyConnection::createRestorationCollaboration(
    CreateRestorationRequestInfo const& request)
{
    return call(*this, operations::createRestorationCollaboration, {request.getSessionId()}, request);
}

Reply<collaboration::UploadFilesRequest> TessalyConnection::createSurgeryPlanRequest(
    collaboration::CreateRequestRequest const& request) const
{
    return call(*this, operations::createSurgeryPlanRequest, {request.sessionId}, request);
}

Reply<collaboration::UploadFilesRequest> TessalyConnection::createReferralRequest(
    collaboration::CreateRequestRequest const& request) const
{
    return call(*this, operations::createReferralRequest, {request.sessionId}, request);
}

Reply<std::vector<collaboration::CreatedFileInfo>> TessalyConnection::updateRequest(
    collaboration::UpdateRequestRequest const& request) const
{
    return call(*this, operations::updateRequest, {request.requestId}, request);
}

Reply<collaboration::UpdateSurgeryRequestResponse> TessalyConnection::updateSurgeryPlanRequest(
    collaboration::UpdateSurgeryRequestRequest const& request)
{
    return call(*this, operations::updateSurgeryPlanRequest, {request.requestId}, request);
}

Reply<void> TessalyConnection::updateCollaborationRequestStatus(UpdateCollaborationRequestStatusInfo const& request)
{
    return call(*this, operations::updateCollaborationRequestStatus, {request.getRequestId()}, request);
}

Reply<std::vector<collaboration::RequestInfo>> TessalyConnection::getRequests(
    QString const& installationId, GetRequestsInfo info) const
{
    return call(*this, operations::getRequests, {installationId}, info);
}

Reply<std::vector<collaboration::RequestInfo>> TessalyConnection::getRequests(
    QString const& installationId, bool onlyActive) const
{
    GetRequestsInfo info;
    info.setOnlyActiveRequests(onlyActive);
    info.setVersionNumber(CollaborationRequestVersion::getVersion());
    return call(*this, operations::getActiveRequests, {installationId}, info);
}

Reply<collaboration::RequestIdResponse> TessalyConnection::getRequestId(
    QString const& installationId, collaboration::RequestKeyRequest const& search) const
{
    return call(*this, operations::getRequestIdByKey, {installationId, search.requestKey});
}

Reply<collaboration::RequestIdResponse> TessalyConnection::getRequestId(
    QString const& installationId, collaboration::SalesOrderNumberRequest const& search) const
{
    return call(*this, operations::getRequestIdByOrder, {installationId, search.salesOrderNumber});
}

Reply<std::vector<collaboration::SessionDetails>> TessalyConnection::getCollaborationSessionRequestDetails(
    QString const& installationId, GetRequestDetailsInfo info) const
{
    return call(*this, operations::getCollaborationSessionRequestDetails, {installationId}, info);
}

Reply<std::vector<collaboration::SessionDetails>> TessalyConnection::getDentalScanRequestDetails(
    QString const& installationId, GetRequestDetailsInfo info) const
{
    return call(*this, operations::getDentalScanRequestDetails, {installationId}, info);
}

Reply<std::vector<collaboration::SessionDetails>> TessalyConnection::getLabDesignRequestDetails(
    QString const& installationId, GetRequestDetailsInfo info) const
{
    return call(*this, operations::getLabDesignRequestDetails, {installationId}, info);
}

Reply<std::vector<collaboration::SessionDetails>> TessalyConnection::getTempShellRequestDetails(
    QString const& installationId, GetRequestDetailsInfo info) const
{
    return call(*this, operations::getTempShellRequestDetails, {installationId}, info);
}

Reply<std::vector<collaboration::RestorationRequestDetail>> TessalyConnection::getRestorationRequestDetails(
    QString const& installationId, GetRequestDetailsInfo info) const
{
    return call(*this, operations::getRestorationRequestDetails, {installationId}, info);
}

Reply<std::vector<collaboration::RestorationRequestDetail>> TessalyConnection::getCentralizedRestorationRequestDetails(
    QString const& installationId, GetRequestDetailsInfo info) const
{
    return call(*this, operations::getCentralizedRestorationRequestDetails, {installationId}, info);
}

Reply<std::vector<collaboration::TemplateRequestDetail>> TessalyConnection::getTemplateRequestDetails(
    QString const& installationId, GetRequestDetailsInfo info) const
{
    return call(*this, operations::getTemplateRequestDetails, {installationId}, info);
}

Reply<std::vector<collaboration::UploadFilesRequestDetail>> TessalyConnection::getSurgeryPlanRequestDetails(
    QString const& installationId, GetRequestDetailsInfo info) const
{
    return call(*this, operations::getSurgeryPlanRequestDetails, {installationId}, info);
}

Reply<std::vector<collaboration::UploadFilesRequestDetail>> TessalyConnection::getReferralRequestDetails(
    QString const& installationId, GetRequestDetailsInfo info) const
{
    return call(*this, operations::getReferralRequestDetails, {installationId}, info);
}

threading::Future<std::pair<QString, KeloErrorCode>> TessalyConnection::getRestorationURL(
    RequestRestorationDetailsInfo const& info, QString const& requestId)
{
    using Url = std::pair<QString, KeloErrorCode>;
    return KeloCommunicationLib::internal::sendFor<RestorationDetailsInfo, Url>(
        *this, requestOf(operations::getRestorationURL, {info.getInstallationReference()}, info),
        [requestId](rest::RestReply<RestorationDetailsInfo> const& reply, threading::Promise<Url> promise) {
            std::move(promise).setValue({reply.value.getRestorationURL(requestId), kelo::errorCode(reply.status)});
        });
}

Reply<RequestLockState> TessalyConnection::getUnlockedStateForRequest(
    QString const& installationId, QString const& requestId)
{
    return call(*this, operations::getUnlockedStateForRequest, {requestId}, {installationId});
}

Reply<void> TessalyConnection::unlockTemplateRequest(QString const& installationId, QString const& requestId)
{
    return call(*this, operations::unlockTemplateRequest, {requestId}, {installationId});
}

Reply<void> TessalyConnection::markCollaborationFileAsSeen(
    QString const& fileId, collaboration::MarkAsSeenInfo const& info) const
{
    return call(*this, operations::markCollaborationFileAsSeen, {fileId}, info);
}

Reply<StartConnectionResponse> TessalyConnection::startConnection(StartConnectionRequest const& request) const
{
    return call(*this, operations::startConnection, {request.getInstallationReference()}, request);
}

Reply<void> TessalyConnection::updateConnectionStatus(UpdateConnectionStatusRequest const& request) const
{
    return call(*this, operations::updateConnectionStatus, {request.getConnectionId()}, request);
}

Reply<std::vector<ConnectionInfo>> TessalyConnection::getConnectionsForLicense(QString const& installationId)
{
    return call(*this, operations::getConnectionsForLicense, {installationId});
}
