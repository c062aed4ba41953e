#pragma once

#include <cstddef>

#include <KeloCommunicationLib/connection/TessalyConnectionInterface.h>

/// The members that only fill a path: a record's body on the wire does not have them.
namespace cli
{

/// A member's key, and the data member or setter that takes it.
template <class Target>
struct PathMember
{
    char const* key;
    Target target;
};

template <class Target>
PathMember(char const*, Target) -> PathMember<Target>;

template <class Record>
inline constexpr std::nullptr_t pathMember = nullptr;

// clang-format off
template <> inline constexpr auto pathMember<collaboration::CreateRequestRequest> = PathMember{"SessionId", &collaboration::CreateRequestRequest::sessionId};
template <> inline constexpr auto pathMember<CreateRestorationRequestInfo> = PathMember{"SessionId", &CreateRestorationRequestInfo::setSessionId};
template <> inline constexpr auto pathMember<collaboration::UpdateRequestRequest> = PathMember{"RequestId", &collaboration::UpdateRequestRequest::requestId};
template <> inline constexpr auto pathMember<collaboration::UpdateSurgeryRequestRequest> = PathMember{"RequestId", &collaboration::UpdateSurgeryRequestRequest::requestId};
template <> inline constexpr auto pathMember<UpdateCollaborationRequestStatusInfo> = PathMember{"RequestId", &UpdateCollaborationRequestStatusInfo::setRequestId};
template <> inline constexpr auto pathMember<CreateCollaborationSessionInfo> = PathMember{"ConnectionId", &CreateCollaborationSessionInfo::setConnectionId};
template <> inline constexpr auto pathMember<UpdateConnectionStatusRequest> = PathMember{"ConnectionId", &UpdateConnectionStatusRequest::setConnectionId};
template <> inline constexpr auto pathMember<mirashare::AddDataRequest> = PathMember{"CaseId", &mirashare::AddDataRequest::caseId};
template <> inline constexpr auto pathMember<CreateCollaborationSessionWithoutConnectionIdInfo> = PathMember{"InstallationReference", &CreateCollaborationSessionWithoutConnectionIdInfo::setInstallationReference};
template <> inline constexpr auto pathMember<RequestRestorationDetailsInfo> = PathMember{"InstallationReference", &RequestRestorationDetailsInfo::setInstallationReference};
// clang-format on

} // namespace cli
