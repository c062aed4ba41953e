#pragma once

#include <KeloCommunicationLib/collaboration/ConnectionRecords.h>
#include <KeloCommunicationLib/collaboration/QueryRecords.h>
#include <KeloCommunicationLib/json/internal/Fields.h>

/// The keys of the global records: sessions, connections, restorations and queries.
namespace jsonSerializer::implementation
{

inline constexpr TextTable<ConnectionStatus, 7> connectionStatusTexts{
    {{
        {latin1("Created"), ConnectionStatus::Created},
        {latin1("InvitationSent"), ConnectionStatus::InvitationSent},
        {latin1("Accepted"), ConnectionStatus::Accepted},
        {latin1("Connected"), ConnectionStatus::Connected},
        {latin1("Rejected"), ConnectionStatus::Rejected},
        {latin1("RejectionNotified"), ConnectionStatus::RejectionNotified},
        {latin1("Stopped"), ConnectionStatus::Stopped},
    }},
    ConnectionStatus::Unknown};

template <>
inline constexpr auto fieldsOf<CollaborationSessionId> = fields<CollaborationSessionId>({
    readField<&CollaborationSessionId::setSessionId>(u"SessionId"),
});

template <>
inline constexpr auto fieldsOf<CreateCollaborationSessionInfo> = fields<CreateCollaborationSessionInfo>({
    field<&CreateCollaborationSessionInfo::getInstallationReference>(u"InstallationReference"),
    field<&CreateCollaborationSessionInfo::getUserReference>(u"UserReference"),
});

template <>
inline constexpr auto fieldsOf<CreateCollaborationSessionWithoutConnectionIdInfo> =
    fields<CreateCollaborationSessionWithoutConnectionIdInfo>({
        field<&CreateCollaborationSessionWithoutConnectionIdInfo::getUserReference>(u"UserReference"),
    });

template <>
inline constexpr auto fieldsOf<RequestLockState> = fields<RequestLockState>({
    readField<&RequestLockState::setUnlocked>(u"Unlocked"),
});

template <>
inline constexpr auto fieldsOf<UpdateCollaborationRequestStatusInfo> = fields<UpdateCollaborationRequestStatusInfo>({
    field<&UpdateCollaborationRequestStatusInfo::getInstallationReference>(u"InstallationReference"),
    field<&UpdateCollaborationRequestStatusInfo::getStatus>(u"Status"),
});

template <>
inline constexpr auto fieldsOf<StartConnectionRequest> = fields<StartConnectionRequest>({
    field<&StartConnectionRequest::getUserReference>(u"UserReference"),
    field<&StartConnectionRequest::getInstallationReference>(u"InstallationReference"),
    field<&StartConnectionRequest::getNote>(u"Note"),
    field<&StartConnectionRequest::getConnectionToken>(u"ConnectionToken"),
});

template <>
inline constexpr auto fieldsOf<StartConnectionResponse> = fields<StartConnectionResponse>({
    readField<&StartConnectionResponse::setConnectionId>(u"ConnectionId"),
    readField<&StartConnectionResponse::setConnectionStatus>(u"ConnectionStatus", alwaysZero),
});

// The status is sent as a number here and arrives as a text in the record below.
template <>
inline constexpr auto fieldsOf<UpdateConnectionStatusRequest> = fields<UpdateConnectionStatusRequest>({
    field<&UpdateConnectionStatusRequest::getInstallationReference>(u"InstallationReference"),
    field<&UpdateConnectionStatusRequest::getStatus>(u"Status"),
});

template <>
inline constexpr auto fieldsOf<ConnectionInfo> = fields<ConnectionInfo>({
    readField<&ConnectionInfo::setId>(u"ConnectionId"),
    readField<&ConnectionInfo::setName>(u"Name"),
    readField<&ConnectionInfo::setInitiator>(u"IsInitiator"),
    readField<&ConnectionInfo::setZipCode>(u"ZipCode"),
    readField<&ConnectionInfo::setState>(u"Status", texts<connectionStatusTexts>),
});

template <>
inline constexpr auto fieldsOf<CreateRestorationRequestInfo::NewFileInfo> =
    fields<CreateRestorationRequestInfo::NewFileInfo>({
        field<&CreateRestorationRequestInfo::NewFileInfo::name>(u"Name"),
        field<&CreateRestorationRequestInfo::NewFileInfo::size>(u"Size"),
        field<&CreateRestorationRequestInfo::NewFileInfo::chunkSize>(u"ChunkSize"),
        field<&CreateRestorationRequestInfo::NewFileInfo::checkSum>(u"CheckSum"),
        field<&CreateRestorationRequestInfo::NewFileInfo::fileType>(u"FileType"),
    });

template <>
inline constexpr auto fieldsOf<CreateRestorationRequestInfo::ExistingFileInfo> =
    fields<CreateRestorationRequestInfo::ExistingFileInfo>({
        field<&CreateRestorationRequestInfo::ExistingFileInfo::id>(u"Id"),
    });

template <>
inline constexpr auto fieldsOf<CreateRestorationRequestInfo::ImplantConnection> =
    fields<CreateRestorationRequestInfo::ImplantConnection>({
        field<&CreateRestorationRequestInfo::ImplantConnection::implantConnectionId>(u"ImplantConnectionId"),
        field<&CreateRestorationRequestInfo::ImplantConnection::toothNumber>(u"ToothNumber"),
    });

template <>
inline constexpr auto fieldsOf<CreateRestorationRequestInfo> = fields<CreateRestorationRequestInfo>({
    field<&CreateRestorationRequestInfo::getInstallationReference>(u"InstallationReference"),
    field<&CreateRestorationRequestInfo::getUserReference>(u"UserReference"),
    field<&CreateRestorationRequestInfo::getVersionNumber>(u"VersionNumber"),
    field<&CreateRestorationRequestInfo::getNote>(u"Note"),
    field<&CreateRestorationRequestInfo::getDueDate>(u"DueDate"),
    field<&CreateRestorationRequestInfo::getNewFiles>(u"NewFiles"),
    field<&CreateRestorationRequestInfo::getExistingFiles>(u"ExistingFiles"),
    field<&CreateRestorationRequestInfo::getTreatingClinician>(u"TreatingClinician"),
    field<&CreateRestorationRequestInfo::getPatientId>(u"PatientId"),
    field<&CreateRestorationRequestInfo::getPatientFirstName>(u"PatientFirstName"),
    field<&CreateRestorationRequestInfo::getPatientLastName>(u"PatientLastName"),
    field<&CreateRestorationRequestInfo::getPatientGender>(u"PatientGender", writtenBy<&conversions::toString>),
    field<&CreateRestorationRequestInfo::getPatientBirthdayString>(u"PatientDateOfBirth"),
    field<&CreateRestorationRequestInfo::getImplantConnections>(u"Connections"),
});

template <>
inline constexpr auto fieldsOf<CreateRestorationResponseInfo::FileInfo> =
    fields<CreateRestorationResponseInfo::FileInfo>({
        field<&CreateRestorationResponseInfo::FileInfo::id>(u"Id"),
        field<&CreateRestorationResponseInfo::FileInfo::name>(u"Name"),
    });

template <>
inline constexpr auto fieldsOf<CreateRestorationResponseInfo> = fields<CreateRestorationResponseInfo>({
    readField<&CreateRestorationResponseInfo::setCollaborationRequestId>(u"CollaborationRequestId"),
    readField<&CreateRestorationResponseInfo::setCollaborationRequestKey>(u"CollaborationRequestKey"),
    readField<&CreateRestorationResponseInfo::setFiles>(u"Files"),
});

template <>
inline constexpr auto fieldsOf<RestorationDetailsInfo::CollaborationRequestDetailInfos> =
    fields<RestorationDetailsInfo::CollaborationRequestDetailInfos>({
        field<&RestorationDetailsInfo::CollaborationRequestDetailInfos::id>(u"Id"),
        field<&RestorationDetailsInfo::CollaborationRequestDetailInfos::restorationURL>(u"RestorationURL"),
    });

template <>
inline constexpr auto fieldsOf<RestorationDetailsInfo::CollaborationSessionDetailInfos> =
    fields<RestorationDetailsInfo::CollaborationSessionDetailInfos>({
        field<&RestorationDetailsInfo::CollaborationSessionDetailInfos::collaborationRequestDetailInfos>(
            u"CollaborationRequestDetailInfos"),
    });

template <>
inline constexpr auto fieldsOf<RestorationDetailsInfo> = fields<RestorationDetailsInfo>({
    readField<&RestorationDetailsInfo::setCollaborationSessionDetailInfos>(u"CollaborationSessionDetailInfos"),
});

template <>
inline constexpr auto fieldsOf<GetRequestDetailsInfo> = fields<GetRequestDetailsInfo>({
    field<&GetRequestDetailsInfo::getOnlyActiveRequests>(u"GetOnlyActiveRequests"),
    field<&GetRequestDetailsInfo::getVersionNumber>(u"VersionNumber"),
    field<&GetRequestDetailsInfo::getRequestIds>(u"RequestIds"),
    field<&GetRequestDetailsInfo::getType>(u"Type", leftOutWhenUnset),
});

template <>
inline constexpr auto fieldsOf<GetRequestsInfo> = fields<GetRequestsInfo>({
    field<&GetRequestsInfo::getOnlyActiveRequests>(u"GetOnlyActiveRequests"),
    field<&GetRequestsInfo::getVersionNumber>(u"VersionNumber"),
    field<&GetRequestsInfo::getSelectedTypes>(u"SelectedTypes"),
});

template <>
inline constexpr auto fieldsOf<RequestRestorationDetailsInfo> = fields<RequestRestorationDetailsInfo>({
    field<&RequestRestorationDetailsInfo::getOnlyActiveRequests>(u"GetOnlyActiveRequests"),
    field<&RequestRestorationDetailsInfo::getRequestIds>(u"RequestIds"),
});

} // namespace jsonSerializer::implementation
