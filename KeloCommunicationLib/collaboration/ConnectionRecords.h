#pragma once

#include <utility>

#include <QString>

#include <KeloCommunicationLib/Export.h>
#include <KeloCommunicationLib/collaboration/RestorationRecords.h>
#include <KeloCommunicationLib/collaboration/SessionRecords.h>

/// The state of a connection with a partner.
enum class ConnectionStatus : int
{
    Unknown = -1,
    Created,
    InvitationSent,
    Accepted,
    Connected,
    Rejected,
    RejectionNotified,
    Stopped
};

/// Starts a connection with the partner that gave out the token.
class KELO_EXPORT StartConnectionRequest
{
public:
    QString const& getUserReference() const { return userReference_; }

    void setUserReference(QString userReference) { userReference_ = std::move(userReference); }

    QString const& getInstallationReference() const { return installationReference_; }

    void setInstallationReference(QString installationReference)
    {
        installationReference_ = std::move(installationReference);
    }

    QString const& getNote() const { return note_; }

    void setNote(QString note) { note_ = std::move(note); }

    QString const& getConnectionToken() const { return connectionToken_; }

    void setConnectionToken(QString connectionToken) { connectionToken_ = std::move(connectionToken); }

private:
    QString userReference_;
    QString installationReference_;
    QString note_;
    QString connectionToken_;
};

/// The connection that was started. The service does not tell its status: a reply always leaves `Created`.
class KELO_EXPORT StartConnectionResponse
{
public:
    QString const& getConnectionId() const { return connectionId_; }

    void setConnectionId(QString connectionId) { connectionId_ = std::move(connectionId); }

    ConnectionStatus getConnectionStatus() const { return connectionStatus_; }

    void setConnectionStatus(ConnectionStatus connectionStatus) { connectionStatus_ = connectionStatus; }

private:
    QString connectionId_;
    ConnectionStatus connectionStatus_ = ConnectionStatus::Created;
};

/// The new status of a partner connection, whose id fills the path only.
class KELO_EXPORT UpdateConnectionStatusRequest
{
public:
    QString const& getConnectionId() const { return connectionId_; }

    void setConnectionId(QString connectionId) { connectionId_ = std::move(connectionId); }

    QString const& getInstallationReference() const { return installationReference_; }

    void setInstallationReference(QString installationReference)
    {
        installationReference_ = std::move(installationReference);
    }

    ConnectionStatus getStatus() const { return status_; }

    void setStatus(ConnectionStatus status) { status_ = status; }

private:
    QString connectionId_;
    QString installationReference_;
    ConnectionStatus status_ = ConnectionStatus::Unknown;
};

/// A connection with a partner.
class KELO_EXPORT ConnectionInfo
{
public:
    QString const& getId() const { return id_; }

    void setId(QString id) { id_ = std::move(id); }

    QString const& getName() const { return name_; }

    void setName(QString name) { name_ = std::move(name); }

    bool isInitiator() const { return initiator_; }

    void setInitiator(bool initiator) { initiator_ = initiator; }

    QString const& getZipCode() const { return zipCode_; }

    void setZipCode(QString zipCode) { zipCode_ = std::move(zipCode); }

    ConnectionStatus getState() const { return state_; }

    void setState(ConnectionStatus state) { state_ = state; }

private:
    QString id_;
    QString name_;
    bool initiator_ = false;
    QString zipCode_;
    ConnectionStatus state_ = ConnectionStatus::Unknown;
};
