#pragma once

#include <utility>

#include <QString>

#include <KeloCommunicationLib/Export.h>
#include <KeloCommunicationLib/collaboration/RequestTypes.h>

/// The session that was opened.
class KELO_EXPORT CollaborationSessionId
{
public:
    QString const& getSessionId() const { return sessionId_; }

    void setSessionId(QString sessionId) { sessionId_ = std::move(sessionId); }

private:
    QString sessionId_;
};

/// Opens a session over a partner connection, whose id fills the path only.
class KELO_EXPORT CreateCollaborationSessionInfo
{
public:
    CreateCollaborationSessionInfo() = default;

    CreateCollaborationSessionInfo(QString connectionId, QString installationReference, QString userReference)
        : connectionId_(std::move(connectionId)),
          installationReference_(std::move(installationReference)),
          userReference_(std::move(userReference))
    {
    }

    QString const& getConnectionId() const { return connectionId_; }

    void setConnectionId(QString connectionId) { connectionId_ = std::move(connectionId); }

    QString const& getInstallationReference() const { return installationReference_; }

    void setInstallationReference(QString installationReference)
    {
        installationReference_ = std::move(installationReference);
    }

    QString const& getUserReference() const { return userReference_; }

    void setUserReference(QString userReference) { userReference_ = std::move(userReference); }

private:
    QString connectionId_;
    QString installationReference_;
    QString userReference_;
};

/// Opens a session without a partner connection. The installation reference fills the path only.
class KELO_EXPORT CreateCollaborationSessionWithoutConnectionIdInfo
{
public:
    CreateCollaborationSessionWithoutConnectionIdInfo() = default;

    CreateCollaborationSessionWithoutConnectionIdInfo(QString installationReference, QString userReference)
        : installationReference_(std::move(installationReference)), userReference_(std::move(userReference))
    {
    }

    QString const& getInstallationReference() const { return installationReference_; }

    void setInstallationReference(QString installationReference)
    {
        installationReference_ = std::move(installationReference);
    }

    QString const& getUserReference() const { return userReference_; }

    void setUserReference(QString userReference) { userReference_ = std::move(userReference); }

private:
    QString installationReference_;
    QString userReference_;
};

/// Whether the file of a template request is unlocked.
class KELO_EXPORT RequestLockState
{
public:
    bool isUnlocked() const { return unlocked_; }

    void setUnlocked(bool unlocked) { unlocked_ = unlocked; }

private:
    bool unlocked_ = false;
};

/// The new status of a request, whose id fills the path only.
class KELO_EXPORT UpdateCollaborationRequestStatusInfo
{
public:
    UpdateCollaborationRequestStatusInfo() = default;

    UpdateCollaborationRequestStatusInfo(
        QString installationReference, QString requestId, collaboration::RequestStatus status)
        : installationReference_(std::move(installationReference)), requestId_(std::move(requestId)), status_(status)
    {
    }

    QString const& getInstallationReference() const { return installationReference_; }

    void setInstallationReference(QString installationReference)
    {
        installationReference_ = std::move(installationReference);
    }

    QString const& getRequestId() const { return requestId_; }

    void setRequestId(QString requestId) { requestId_ = std::move(requestId); }

    collaboration::RequestStatus getStatus() const { return status_; }

    void setStatus(collaboration::RequestStatus status) { status_ = status; }

private:
    QString installationReference_;
    QString requestId_;
    collaboration::RequestStatus status_ = collaboration::RequestStatus::Unset;
};
