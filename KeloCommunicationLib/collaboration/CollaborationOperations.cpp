#include <utility>

#include <KeloCommunicationLib/connection/KeloErrors.h>
#include <KeloCommunicationLib/connection/internal/RequestPipeline.h>
#include <platform/core/HostInfo.h>

namespace
{

constexpr char const* restorationDetails = "/Installations/%1/requests/restoration/details";

QJsonValue installationBody(QString const& installationId)
{
    return QJsonObject{{QStringLiteral("InstallationReference"), installationId}};
}

} // namespace

TessalyConnectionInterface::Reply<CollaborationSessionId> TessalyConnection::createCollaborationSession(
    CreateCollaborationSessionInfo const& info)
{
    return post<CollaborationSessionId>(
        pipeline::path("/Connections/%1/sessions", info.getConnectionId()), jsonSerializer::toJson(info));
}

TessalyConnectionInterface::Reply<CollaborationSessionId> TessalyConnection::createCollaborationSession(
    QString const& installationId)
{
    return post<CollaborationSessionId>(pipeline::path("/Installations/%1/sessions", installationId), QJsonObject());
}

TessalyConnectionInterface::Reply<CollaborationSessionId>
TessalyConnection::createCollaborationSessionWithoutConnectionId(
    CreateCollaborationSessionWithoutConnectionIdInfo const& info) const
{
    return post<CollaborationSessionId>(
        pipeline::path("/installations/%1/sessions", info.getInstallationReference()), jsonSerializer::toJson(info));
}

TessalyConnectionInterface::Reply<CreateRestorationResponseInfo> TessalyConnection::createRequest(
    collaboration::CreateRequestRequest const& request) const
{
    return post<CreateRestorationResponseInfo>(
        pipeline::path("Sessions/%1/request", request.sessionId), jsonSerializer::toJson(request));
}

TessalyConnectionInterface::Reply<CreateRestorationResponseInfo> TessalyConnection::createRestorationCollaboration(
    CreateRestorationRequestInfo const& request)
{
    return post<CreateRestorationResponseInfo>(
        pipeline::path("/Sessions/%1/request/restoration", request.getSessionId()), jsonSerializer::toJson(request));
}

TessalyConnectionInterface::Reply<collaboration::UploadFilesRequest> TessalyConnection::createSurgeryPlanRequest(
    collaboration::CreateRequestRequest const& request) const
{
    return post<collaboration::UploadFilesRequest>(
        pipeline::path("/Sessions/%1/request/surgeryplan", request.sessionId), jsonSerializer::toJson(request));
}

TessalyConnectionInterface::Reply<collaboration::UploadFilesRequest> TessalyConnection::createReferralRequest(
    collaboration::CreateRequestRequest const& request) const
{
    return post<collaboration::UploadFilesRequest>(
        pipeline::path("/Sessions/%1/request/referral", request.sessionId), jsonSerializer::toJson(request));
}

TessalyConnectionInterface::Reply<std::vector<collaboration::CreatedFileInfo>> TessalyConnection::updateRequest(
    collaboration::UpdateRequestRequest const& request) const
{
    return post<std::vector<collaboration::CreatedFileInfo>>(
        pipeline::path("Requests/%1/request", request.requestId), jsonSerializer::toJson(request));
}

TessalyConnectionInterface::Reply<collaboration::UpdateSurgeryRequestResponse>
TessalyConnection::updateSurgeryPlanRequest(collaboration::UpdateSurgeryRequestRequest const& request)
{
    return post<collaboration::UpdateSurgeryRequestResponse>(
        pipeline::path("/Requests/surgeryplan/%1", request.requestId), jsonSerializer::toJson(request));
}

TessalyConnectionInterface::Reply<void> TessalyConnection::updateCollaborationRequestStatus(
    UpdateCollaborationRequestStatusInfo const& request)
{
    return post<void>(pipeline::path("/Requests/%1/status", request.getRequestId()), jsonSerializer::toJson(request));
}

TessalyConnectionInterface::Reply<std::vector<collaboration::RequestInfo>> TessalyConnection::getRequests(
    QString const& installationId, GetRequestsInfo info) const
{
    return post<std::vector<collaboration::RequestInfo>>(
        pipeline::path("/Installations/%1/requests", installationId), jsonSerializer::toJson(info));
}

TessalyConnectionInterface::Reply<std::vector<collaboration::RequestInfo>> TessalyConnection::getRequests(
    QString const& installationId, bool onlyActive) const
{
    GetRequestsInfo info;
    info.setOnlyActiveRequests(onlyActive);
    info.setVersionNumber(CollaborationRequestVersion::getVersion());
    return getRequests(installationId, std::move(info));
}

TessalyConnectionInterface::Reply<collaboration::RequestIdResponse> TessalyConnection::getRequestId(
    QString const& installationId, collaboration::RequestKeyRequest const& search) const
{
    return get<collaboration::RequestIdResponse>(
        pipeline::path("/Installations/%1/requests?Search.Key=%2&api-version=0.0", installationId, search.requestKey));
}

TessalyConnectionInterface::Reply<collaboration::RequestIdResponse> TessalyConnection::getRequestId(
    QString const& installationId, collaboration::SalesOrderNumberRequest const& search) const
{
    return get<collaboration::RequestIdResponse>(pipeline::path(
        "/Installations/%1/requests?Search.SalesOrderNumber=%2&api-version=0.0", installationId,
        search.salesOrderNumber));
}

TessalyConnectionInterface::Reply<std::vector<collaboration::SessionDetails>>
TessalyConnection::getCollaborationSessionRequestDetails(
    QString const& installationId, GetRequestDetailsInfo info) const
{
    return post<std::vector<collaboration::SessionDetails>>(
        pipeline::path("/Installations/%1/requests/details", installationId), jsonSerializer::toJson(info));
}

TessalyConnectionInterface::Reply<std::vector<collaboration::SessionDetails>>
TessalyConnection::getDentalScanRequestDetails(QString const& installationId, GetRequestDetailsInfo info) const
{
    return post<std::vector<collaboration::SessionDetails>>(
        pipeline::path("/Installations/%1/requests/dentalscan/details", installationId), jsonSerializer::toJson(info));
}

TessalyConnectionInterface::Reply<std::vector<collaboration::SessionDetails>>
TessalyConnection::getLabDesignRequestDetails(QString const& installationId, GetRequestDetailsInfo info) const
{
    return post<std::vector<collaboration::SessionDetails>>(
        pipeline::path("/Installations/%1/requests/labdesign/details", installationId), jsonSerializer::toJson(info));
}

TessalyConnectionInterface::Reply<std::vector<collaboration::SessionDetails>>
TessalyConnection::getTempShellRequestDetails(QString const& installationId, GetRequestDetailsInfo info) const
{
    return post<std::vector<collaboration::SessionDetails>>(
        pipeline::path("/Installations/%1/requests/tempshell/details", installationId), jsonSerializer::toJson(info));
}

TessalyConnectionInterface::Reply<std::vector<collaboration::RestorationRequestDetail>>
TessalyConnection::getRestorationRequestDetails(QString const& installationId, GetRequestDetailsInfo info) const
{
    return post<std::vector<collaboration::RestorationRequestDetail>>(
        pipeline::path(restorationDetails, installationId), jsonSerializer::toJson(info));
}

TessalyConnectionInterface::Reply<std::vector<collaboration::RestorationRequestDetail>>
TessalyConnection::getCentralizedRestorationRequestDetails(
    QString const& installationId, GetRequestDetailsInfo info) const
{
    return post<std::vector<collaboration::RestorationRequestDetail>>(
        pipeline::path("/Installations/%1/requests/centralizedrestoration/details", installationId),
        jsonSerializer::toJson(info));
}

TessalyConnectionInterface::Reply<std::vector<collaboration::TemplateRequestDetail>>
TessalyConnection::getTemplateRequestDetails(QString const& installationId, GetRequestDetailsInfo info) const
{
    return post<std::vector<collaboration::TemplateRequestDetail>>(
        pipeline::path("/Installations/%1/requests/template/details", installationId), jsonSerializer::toJson(info));
}

TessalyConnectionInterface::Reply<std::vector<collaboration::UploadFilesRequestDetail>>
TessalyConnection::getSurgeryPlanRequestDetails(QString const& installationId, GetRequestDetailsInfo info) const
{
    return post<std::vector<collaboration::UploadFilesRequestDetail>>(
        pipeline::path("/Installations/%1/requests/surgeryplan/details", installationId), jsonSerializer::toJson(info));
}

TessalyConnectionInterface::Reply<std::vector<collaboration::UploadFilesRequestDetail>>
TessalyConnection::getReferralRequestDetails(QString const& installationId, GetRequestDetailsInfo info) const
{
    return post<std::vector<collaboration::UploadFilesRequestDetail>>(
        pipeline::path("/Installations/%1/requests/referral/details", installationId), jsonSerializer::toJson(info));
}

threading::Future<std::pair<QString, KeloErrorCode>> TessalyConnection::getRestorationURL(
    RequestRestorationDetailsInfo const& info, QString const& requestId)
{
    auto const exchange = post<RestorationDetailsInfo>(
        pipeline::path(restorationDetails, info.getInstallationReference()), jsonSerializer::toJson(info));
    threading::Promise<std::pair<QString, KeloErrorCode>> promise;
    auto const result = promise.future();
    promise.onCancel([exchange] { exchange.cancel(); });
    // An exchange that is cancelled drops the promise, which cancels the result.
    exchange.then(
        [requestId, promise = std::move(promise)](rest::RestReply<RestorationDetailsInfo> const& reply) mutable {
            promise.setValue({reply.value.getRestorationURL(requestId), kelo::errorCode(reply.status)});
        });
    return result;
}

TessalyConnectionInterface::Reply<RequestLockState> TessalyConnection::getUnlockedStateForRequest(
    QString const& installationId, QString const& requestId)
{
    return post<RequestLockState>(
        pipeline::path("Requests/%1/unlocked-status", requestId), installationBody(installationId));
}

TessalyConnectionInterface::Reply<void> TessalyConnection::unlockTemplateRequest(
    QString const& installationId, QString const& requestId)
{
    return put<void>(pipeline::path("Requests/%1/unlock-file", requestId), installationBody(installationId));
}

TessalyConnectionInterface::Reply<void> TessalyConnection::markCollaborationFileAsSeen(
    QString const& fileId, collaboration::MarkAsSeenInfo const& info) const
{
    return post<void>(pipeline::path("CollaborationFiles/%1", fileId), jsonSerializer::toJson(info));
}

TessalyConnectionInterface::Reply<StartConnectionResponse> TessalyConnection::startConnection(
    StartConnectionRequest const& request) const
{
    return post<StartConnectionResponse>(
        pipeline::path("Installations/%1/connections", request.getInstallationReference()),
        jsonSerializer::toJson(request));
}

TessalyConnectionInterface::Reply<void> TessalyConnection::updateConnectionStatus(
    UpdateConnectionStatusRequest const& request) const
{
    return post<void>(pipeline::path("Connections/%1", request.getConnectionId()), jsonSerializer::toJson(request));
}

TessalyConnectionInterface::Reply<std::vector<ConnectionInfo>> TessalyConnection::getConnectionsForLicense(
    QString const& installationId)
{
    return get<std::vector<ConnectionInfo>>(pipeline::path("/Installations/%1/connections", installationId));
}
