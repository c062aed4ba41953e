#pragma once

#include <KeloCommunicationLib/collaboration/ConnectionRecords.h>
#include <KeloCommunicationLib/collaboration/QueryRecords.h>
#include <KeloCommunicationLib/collaboration/internal/CollaborationFields.h>
#include <KeloCommunicationLib/connection/OperationRecords.h>
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
inline constexpr auto namesOf<ConnectionStatus> = connectionStatusTexts;

template <>
inline constexpr auto fieldsOf<CollaborationSessionId> = fields<CollaborationSessionId>({
    field<&CollaborationSessionId::getSessionId, &CollaborationSessionId::setSessionId>(u"SessionId"),
});

template <>
inline constexpr auto fieldsOf<CreateCollaborationSessionInfo> = fields<CreateCollaborationSessionInfo>({
    field<
        &CreateCollaborationSessionInfo::getInstallationReference,
        &CreateCollaborationSessionInfo::setInstallationReference>(u"InstallationReference"),
    field<&CreateCollaborationSessionInfo::getUserReference, &CreateCollaborationSessionInfo::setUserReference>(
        u"UserReference"),
});

template <>
inline constexpr auto fieldsOf<CreateCollaborationSessionWithoutConnectionIdInfo> =
    fields<CreateCollaborationSessionWithoutConnectionIdInfo>({
        field<
            &CreateCollaborationSessionWithoutConnectionIdInfo::getUserReference,
            &CreateCollaborationSessionWithoutConnectionIdInfo::setUserReference>(u"UserReference"),
    });

template <>
inline constexpr auto fieldsOf<RequestLockState> = fields<RequestLockState>({
    field<&RequestLockState::isUnlocked, &RequestLockState::setUnlocked>(u"Unlocked"),
});

template <>
inline constexpr auto fieldsOf<UpdateCollaborationRequestStatusInfo> = fields<UpdateCollaborationRequestStatusInfo>({
    field<
        &UpdateCollaborationRequestStatusInfo::getInstallationReference,
        &UpdateCollaborationRequestStatusInfo::setInstallationReference>(u"InstallationReference"),
    field<&UpdateCollaborationRequestStatusInfo::getStatus, &UpdateCollaborationRequestStatusInfo::setStatus>(
        u"Status"),
});

template <>
inline constexpr auto fieldsOf<StartConnectionRequest> = fields<StartConnectionRequest>({
    field<&StartConnectionRequest::getUserReference, &StartConnectionRequest::setUserReference>(u"UserReference"),
    field<&StartConnectionRequest::getInstallationReference, &StartConnectionRequest::setInstallationReference>(
        u"InstallationReference"),
    field<&StartConnectionRequest::getNote, &StartConnectionRequest::setNote>(u"Note"),
    field<&StartConnectionRequest::getConnectionToken, &StartConnectionRequest::setConnectionToken>(u"ConnectionToken"),
});

template <>
inline constexpr auto fieldsOf<StartConnectionResponse> = fields<StartConnectionResponse>({
    field<&StartConnectionResponse::getConnectionId, &StartConnectionResponse::setConnectionId>(u"ConnectionId"),
    field<&StartConnectionResponse::getConnectionStatus, &StartConnectionResponse::setConnectionStatus>(
        u"ConnectionStatus", alwaysZero),
});

// The status is sent as a number here and arrives as a text in the record below.
template <>
inline constexpr auto fieldsOf<UpdateConnectionStatusRequest> = fields<UpdateConnectionStatusRequest>({
    field<
        &UpdateConnectionStatusRequest::getInstallationReference,
        &UpdateConnectionStatusRequest::setInstallationReference>(u"InstallationReference"),
    field<&UpdateConnectionStatusRequest::getStatus, &UpdateConnectionStatusRequest::setStatus>(u"Status"),
});

template <>
inline constexpr auto fieldsOf<ConnectionInfo> = fields<ConnectionInfo>({
    field<&ConnectionInfo::getId, &ConnectionInfo::setId>(u"ConnectionId"),
    field<&ConnectionInfo::getName, &ConnectionInfo::setName>(u"Name"),
    field<&ConnectionInfo::isInitiator, &ConnectionInfo::setInitiator>(u"IsInitiator"),
    field<&ConnectionInfo::getZipCode, &ConnectionInfo::setZipCode>(u"ZipCode"),
    field<&ConnectionInfo::getState, &ConnectionInfo::setState>(u"Status", texts<connectionStatusTexts>),
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
    field<
        &CreateRestorationRequestInfo::getInstallationReference,
        &CreateRestorationRequestInfo::setInstallationReference>(u"InstallationReference"),
    field<&CreateRestorationRequestInfo::getUserReference, &CreateRestorationRequestInfo::setUserReference>(
        u"UserReference"),
    field<&CreateRestorationRequestInfo::getVersionNumber, &CreateRestorationRequestInfo::setVersionNumber>(
        u"VersionNumber"),
    field<&CreateRestorationRequestInfo::getNote, &CreateRestorationRequestInfo::setNote>(u"Note"),
    field<&CreateRestorationRequestInfo::getDueDate, &CreateRestorationRequestInfo::setDueDate>(u"DueDate"),
    field<&CreateRestorationRequestInfo::getNewFiles, &CreateRestorationRequestInfo::setNewFiles>(u"NewFiles"),
    field<&CreateRestorationRequestInfo::getExistingFiles, &CreateRestorationRequestInfo::setExistingFiles>(
        u"ExistingFiles"),
    field<&CreateRestorationRequestInfo::getTreatingClinician, &CreateRestorationRequestInfo::setTreatingClinician>(
        u"TreatingClinician"),
    field<&CreateRestorationRequestInfo::getPatientId, &CreateRestorationRequestInfo::setPatientId>(u"PatientId"),
    field<&CreateRestorationRequestInfo::getPatientFirstName, &CreateRestorationRequestInfo::setPatientFirstName>(
        u"PatientFirstName"),
    field<&CreateRestorationRequestInfo::getPatientLastName, &CreateRestorationRequestInfo::setPatientLastName>(
        u"PatientLastName"),
    field<&CreateRestorationRequestInfo::getPatientGender, &CreateRestorationRequestInfo::setPatientGender>(
        u"PatientGender", words<&conversions::toString, PatientGender::Other>),
    field<
        &CreateRestorationRequestInfo::getPatientBirthdayString,
        &CreateRestorationRequestInfo::setPatientBirthdayString>(u"PatientDateOfBirth"),
    field<&CreateRestorationRequestInfo::getImplantConnections, &CreateRestorationRequestInfo::setImplantConnections>(
        u"Connections"),
});

template <>
inline constexpr auto fieldsOf<CreateRestorationResponseInfo::FileInfo> =
    fields<CreateRestorationResponseInfo::FileInfo>({
        field<&CreateRestorationResponseInfo::FileInfo::id>(u"Id"),
        field<&CreateRestorationResponseInfo::FileInfo::name>(u"Name"),
    });

template <>
inline constexpr auto fieldsOf<CreateRestorationResponseInfo> = fields<CreateRestorationResponseInfo>({
    field<
        &CreateRestorationResponseInfo::getCollaborationRequestId,
        &CreateRestorationResponseInfo::setCollaborationRequestId>(u"CollaborationRequestId"),
    field<
        &CreateRestorationResponseInfo::getCollaborationRequestKey,
        &CreateRestorationResponseInfo::setCollaborationRequestKey>(u"CollaborationRequestKey"),
    field<&CreateRestorationResponseInfo::getFiles, &CreateRestorationResponseInfo::setFiles>(u"Files"),
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
    field<
        &RestorationDetailsInfo::getCollaborationSessionDetailInfos,
        &RestorationDetailsInfo::setCollaborationSessionDetailInfos>(u"CollaborationSessionDetailInfos"),
});

template <>
inline constexpr auto fieldsOf<GetRequestDetailsInfo> = fields<GetRequestDetailsInfo>({
    field<&GetRequestDetailsInfo::getOnlyActiveRequests, &GetRequestDetailsInfo::setOnlyActiveRequests>(
        u"GetOnlyActiveRequests"),
    field<&GetRequestDetailsInfo::getVersionNumber, &GetRequestDetailsInfo::setVersionNumber>(u"VersionNumber"),
    field<&GetRequestDetailsInfo::getRequestIds, &GetRequestDetailsInfo::setRequestIds>(u"RequestIds"),
    field<&GetRequestDetailsInfo::getType, &GetRequestDetailsInfo::setType>(u"Type", leftOutWhenUnset),
});

template <>
inline constexpr auto fieldsOf<GetRequestsInfo> = fields<GetRequestsInfo>({
    field<&GetRequestsInfo::getOnlyActiveRequests, &GetRequestsInfo::setOnlyActiveRequests>(u"GetOnlyActiveRequests"),
    field<&GetRequestsInfo::getVersionNumber, &GetRequestsInfo::setVersionNumber>(u"VersionNumber"),
    field<&GetRequestsInfo::getSelectedTypes, &GetRequestsInfo::setSelectedTypes>(u"SelectedTypes"),
});

template <>
inline constexpr auto fieldsOf<RequestRestorationDetailsInfo> = fields<RequestRestorationDetailsInfo>({
    field<&RequestRestorationDetailsInfo::getOnlyActiveRequests, &RequestRestorationDetailsInfo::setOnlyActiveRequests>(
        u"GetOnlyActiveRequests"),
    field<&RequestRestorationDetailsInfo::getRequestIds, &RequestRestorationDetailsInfo::setRequestIds>(u"RequestIds"),
});

// Bodies that the operations make

template <>
struct Value<operations::EmptyBody>
{
    static constexpr Type type() { return Type{.kind = ValueKind::Record}; }
};

template <>
inline constexpr auto fieldsOf<operations::InstallationBody> = fields<operations::InstallationBody>({
    field<&operations::InstallationBody::installationReference>(u"InstallationReference"),
});

} // namespace jsonSerializer::implementation
