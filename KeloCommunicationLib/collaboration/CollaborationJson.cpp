#include <KeloCommunicationLib/collaboration/internal/CollaborationFields.h>
#include <KeloCommunicationLib/collaboration/internal/ConnectionFields.h>
#include <KeloCommunicationLib/json/internal/Converters.h>

template KELO_EXPORT collaboration::RequestStatus jsonSerializer::fromJson<collaboration::RequestStatus, QJsonValue>(
    QJsonValue const&);

KELO_READABLE(collaboration::FileInfo);
KELO_READABLE(collaboration::NoteInfo);
KELO_READABLE(collaboration::PatientInfo);
KELO_READABLE(collaboration::Partner);
KELO_READABLE(collaboration::RequestDetails);
KELO_READABLE(collaboration::RequestInfo);
KELO_READABLE(collaboration::ImplantConnection);
KELO_READABLE(collaboration::Restoration);
KELO_READABLE(collaboration::RestorationRequest);
KELO_READABLE(collaboration::TemplateRequestDetailInfo);
KELO_READABLE(collaboration::UploadFilesRequestDetailInfo);
KELO_READABLE(collaboration::SessionDetails);
KELO_READABLE(collaboration::RestorationRequestDetail);
KELO_READABLE(collaboration::TemplateRequestDetail);
KELO_READABLE(collaboration::UploadFilesRequestDetail);
KELO_READABLE(collaboration::CreatedFileInfo);
KELO_READABLE(collaboration::UploadFilesRequest);
KELO_READABLE(collaboration::UpdateSurgeryRequestResponse);
KELO_READABLE(collaboration::RequestIdResponse);
KELO_READABLE(CollaborationSessionId);
KELO_READABLE(CreateRestorationResponseInfo);
KELO_READABLE(CreateRestorationResponseInfo::FileInfo);
KELO_READABLE(RequestLockState);
KELO_READABLE(StartConnectionResponse);
KELO_READABLE(ConnectionInfo);
KELO_READABLE(RestorationDetailsInfo);
KELO_READABLE(RestorationDetailsInfo::CollaborationSessionDetailInfos);
KELO_READABLE(RestorationDetailsInfo::CollaborationRequestDetailInfos);

KELO_WRITABLE(collaboration::CreateRequestRequest);
KELO_WRITABLE(collaboration::UpdateRequestRequest);
KELO_WRITABLE(collaboration::UpdateSurgeryRequestRequest);
KELO_WRITABLE(collaboration::NewFileInfo);
KELO_WRITABLE(collaboration::ExistingFileInfo);
KELO_WRITABLE(collaboration::MarkAsSeenInfo);
KELO_WRITABLE(CreateRestorationRequestInfo);
KELO_WRITABLE(CreateRestorationRequestInfo::NewFileInfo);
KELO_WRITABLE(CreateRestorationRequestInfo::ExistingFileInfo);
KELO_WRITABLE(CreateRestorationRequestInfo::ImplantConnection);
KELO_WRITABLE(GetRequestDetailsInfo);
KELO_WRITABLE(GetRequestsInfo);
KELO_WRITABLE(RequestRestorationDetailsInfo);
KELO_WRITABLE(UpdateCollaborationRequestStatusInfo);
KELO_WRITABLE(CreateCollaborationSessionInfo);
KELO_WRITABLE(CreateCollaborationSessionWithoutConnectionIdInfo);
KELO_WRITABLE(StartConnectionRequest);
KELO_WRITABLE(UpdateConnectionStatusRequest);

KELO_WRITABLE(operations::EmptyBody);
KELO_WRITABLE(operations::InstallationBody);
