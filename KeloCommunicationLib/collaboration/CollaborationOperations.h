#pragma once

#include <vector>

#include <KeloCommunicationLib/collaboration/CollaborationRecords.h>
#include <KeloCommunicationLib/collaboration/ConnectionRecords.h>
#include <KeloCommunicationLib/collaboration/QueryRecords.h>
#include <KeloCommunicationLib/connection/Operation.h>
#include <KeloCommunicationLib/connection/OperationRecords.h>

/// Sessions, connections and requests. What each does and gives is told at the interface's member of its name.
namespace operations
{

using rest::HttpMethod;

// clang-format off
inline constexpr Operation<EmptyBody, CollaborationSessionId> createCollaborationSession{{"createCollaborationSession", HttpMethod::Post, "/Installations/%1/sessions", {"installationId"}}};
inline constexpr Operation<CreateCollaborationSessionInfo, CollaborationSessionId> createCollaborationSessionOver{{"createCollaborationSession:connection", HttpMethod::Post, "/Connections/%1/sessions", {"connectionId"}}};
inline constexpr Operation<CreateCollaborationSessionWithoutConnectionIdInfo, CollaborationSessionId> createCollaborationSessionWithoutConnectionId{{"createCollaborationSessionWithoutConnectionId", HttpMethod::Post, "/installations/%1/sessions", {"installationId"}}};

inline constexpr Operation<collaboration::CreateRequestRequest, CreateRestorationResponseInfo> createRequest{{"createRequest", HttpMethod::Post, "Sessions/%1/request", {"sessionId"}}};
inline constexpr Operation<CreateRestorationRequestInfo, CreateRestorationResponseInfo> createRestorationCollaboration{{"createRestorationCollaboration", HttpMethod::Post, "/Sessions/%1/request/restoration", {"sessionId"}}};
inline constexpr Operation<collaboration::CreateRequestRequest, collaboration::UploadFilesRequest> createSurgeryPlanRequest{{"createSurgeryPlanRequest", HttpMethod::Post, "/Sessions/%1/request/surgeryplan", {"sessionId"}}};
inline constexpr Operation<collaboration::CreateRequestRequest, collaboration::UploadFilesRequest> createReferralRequest{{"createReferralRequest", HttpMethod::Post, "/Sessions/%1/request/referral", {"sessionId"}}};
inline constexpr Operation<collaboration::UpdateRequestRequest, std::vector<collaboration::CreatedFileInfo>> updateRequest{{"updateRequest", HttpMethod::Post, "Requests/%1/request", {"requestId"}}};
inline constexpr Operation<collaboration::UpdateSurgeryRequestRequest, collaboration::UpdateSurgeryRequestResponse> updateSurgeryPlanRequest{{"updateSurgeryPlanRequest", HttpMethod::Post, "/Requests/surgeryplan/%1", {"requestId"}}};
inline constexpr Operation<UpdateCollaborationRequestStatusInfo, void> updateCollaborationRequestStatus{{"updateCollaborationRequestStatus", HttpMethod::Post, "/Requests/%1/status", {"requestId"}}};

inline constexpr Operation<GetRequestsInfo, std::vector<collaboration::RequestInfo>> getRequests{{.name = "getRequests:filter", .method = HttpMethod::Post, .path = "/Installations/%1/requests", .values = {"installationId"}, .isQuery = true}};
inline constexpr Operation<GetRequestsInfo, std::vector<collaboration::RequestInfo>> getActiveRequests{{.name = "getRequests:active", .method = HttpMethod::Post, .path = "/Installations/%1/requests", .values = {"installationId"}, .isQuery = true}};
inline constexpr Operation<void, collaboration::RequestIdResponse> getRequestIdByKey{{"getRequestId:key", HttpMethod::Get, "/Installations/%1/requests?Search.Key=%2&api-version=0.0", {"installationId", "requestKey"}}};
inline constexpr Operation<void, collaboration::RequestIdResponse> getRequestIdByOrder{{"getRequestId:order", HttpMethod::Get, "/Installations/%1/requests?Search.SalesOrderNumber=%2&api-version=0.0", {"installationId", "salesOrderNumber"}}};

inline constexpr Operation<GetRequestDetailsInfo, std::vector<collaboration::SessionDetails>> getCollaborationSessionRequestDetails{{.name = "getCollaborationSessionRequestDetails", .method = HttpMethod::Post, .path = "/Installations/%1/requests/details", .values = {"installationId"}, .isQuery = true}};
inline constexpr Operation<GetRequestDetailsInfo, std::vector<collaboration::SessionDetails>> getDentalScanRequestDetails{{.name = "getDentalScanRequestDetails", .method = HttpMethod::Post, .path = "/Installations/%1/requests/dentalscan/details", .values = {"installationId"}, .isQuery = true}};
inline constexpr Operation<GetRequestDetailsInfo, std::vector<collaboration::SessionDetails>> getLabDesignRequestDetails{{.name = "getLabDesignRequestDetails", .method = HttpMethod::Post, .path = "/Installations/%1/requests/labdesign/details", .values = {"installationId"}, .isQuery = true}};
inline constexpr Operation<GetRequestDetailsInfo, std::vector<collaboration::SessionDetails>> getTempShellRequestDetails{{.name = "getTempShellRequestDetails", .method = HttpMethod::Post, .path = "/Installations/%1/requests/tempshell/details", .values = {"installationId"}, .isQuery = true}};
inline constexpr Operation<GetRequestDetailsInfo, std::vector<collaboration::RestorationRequestDetail>> getRestorationRequestDetails{{.name = "getRestorationRequestDetails", .method = HttpMethod::Post, .path = "/Installations/%1/requests/restoration/details", .values = {"installationId"}, .isQuery = true}};
inline constexpr Operation<GetRequestDetailsInfo, std::vector<collaboration::RestorationRequestDetail>> getCentralizedRestorationRequestDetails{{.name = "getCentralizedRestorationRequestDetails", .method = HttpMethod::Post, .path = "/Installations/%1/requests/centralizedrestoration/details", .values = {"installationId"}, .isQuery = true}};
inline constexpr Operation<GetRequestDetailsInfo, std::vector<collaboration::TemplateRequestDetail>> getTemplateRequestDetails{{.name = "getTemplateRequestDetails", .method = HttpMethod::Post, .path = "/Installations/%1/requests/template/details", .values = {"installationId"}, .isQuery = true}};
inline constexpr Operation<GetRequestDetailsInfo, std::vector<collaboration::UploadFilesRequestDetail>> getSurgeryPlanRequestDetails{{.name = "getSurgeryPlanRequestDetails", .method = HttpMethod::Post, .path = "/Installations/%1/requests/surgeryplan/details", .values = {"installationId"}, .isQuery = true}};
inline constexpr Operation<GetRequestDetailsInfo, std::vector<collaboration::UploadFilesRequestDetail>> getReferralRequestDetails{{.name = "getReferralRequestDetails", .method = HttpMethod::Post, .path = "/Installations/%1/requests/referral/details", .values = {"installationId"}, .isQuery = true}};
inline constexpr Operation<RequestRestorationDetailsInfo, RestorationDetailsInfo> getRestorationURL{{.name = "getRestorationURL", .method = HttpMethod::Post, .path = "/Installations/%1/requests/restoration/details", .values = {"installationId"}, .isQuery = true}};

inline constexpr Operation<InstallationBody, RequestLockState> getUnlockedStateForRequest{{.name = "getUnlockedStateForRequest", .method = HttpMethod::Post, .path = "Requests/%1/unlocked-status", .values = {"requestId"}, .isQuery = true}};
inline constexpr Operation<InstallationBody, void> unlockTemplateRequest{{"unlockTemplateRequest", HttpMethod::Put, "Requests/%1/unlock-file", {"requestId"}}};
inline constexpr Operation<collaboration::MarkAsSeenInfo, void> markCollaborationFileAsSeen{{"markCollaborationFileAsSeen", HttpMethod::Post, "CollaborationFiles/%1", {"fileId"}}};

inline constexpr Operation<StartConnectionRequest, StartConnectionResponse> startConnection{{"startConnection", HttpMethod::Post, "Installations/%1/connections", {"installationId"}}};
inline constexpr Operation<UpdateConnectionStatusRequest, void> updateConnectionStatus{{"updateConnectionStatus", HttpMethod::Post, "Connections/%1", {"connectionId"}}};
inline constexpr Operation<void, std::vector<ConnectionInfo>> getConnectionsForLicense{{"getConnectionsForLicense", HttpMethod::Get, "/Installations/%1/connections", {"installationId"}}};
// clang-format on

} // namespace operations
