#pragma once

#include <utility>

#include <QDateTime>
#include <QImage>
#include <QString>

#include <KeloCommunicationLib/Export.h>
#include <platform/utility/Optional.h>

/// A partner platform that the account can connect to. Element of the reply of GET Installations/{id}/partners.
class KELO_EXPORT PartnerInfo
{
public:
    PartnerInfo() = default;

    PartnerInfo(
        QString id, QString name, bool shouldCreatePartnerConnection, bool anonymizeRequired,
        QString createPartnerConnectionUrl)
        : id_(std::move(id)),
          name_(std::move(name)),
          shouldCreatePartnerConnection_(shouldCreatePartnerConnection),
          anonymizeRequired_(anonymizeRequired),
          createPartnerConnectionUrl_(std::move(createPartnerConnectionUrl))
    {
    }

    QString const& getId() const { return id_; }

    void setId(QString const& id) { id_ = id; }

    QString const& getName() const { return name_; }

    void setName(QString const& name) { name_ = name; }

    /// Whether the account has to be connected before a case can be sent.
    bool getShouldCreatePartnerConnection() const { return shouldCreatePartnerConnection_; }

    void setShouldCreatePartnerConnection(bool should) { shouldCreatePartnerConnection_ = should; }

    /// Whether cases must be anonymized for this partner.
    bool isAnonymizeRequired() const { return anonymizeRequired_; }

    void setIsAnonymizeRequired(bool required) { anonymizeRequired_ = required; }

    /// The page on which the account is connected.
    QString const& getCreatePartnerConnectionUrl() const { return createPartnerConnectionUrl_; }

    void setCreatePartnerConnectionUrl(QString const& url) { createPartnerConnectionUrl_ = url; }

    /// Empty unless logos were asked for and this one could be fetched and decoded.
    utility::Optional<QImage> const& getLogo() const { return logo_; }

    void setLogo(QImage const& logo) { logo_ = logo; }

private:
    QString id_;
    QString name_;
    bool shouldCreatePartnerConnection_ = false;
    bool anonymizeRequired_ = false;
    QString createPartnerConnectionUrl_;
    utility::Optional<QImage> logo_;
};

/// A partner connection of the account. Element of the reply of GET Installations/{id}/PartnerConnections.
class KELO_EXPORT PartnerAccountInfo
{
public:
    PartnerAccountInfo() = default;

    PartnerAccountInfo(
        QString userName, QString givenName, QString id, QString partnerId, QString partnerName, bool connected,
        QString managePartnerConnectionUrl)
        : userName_(std::move(userName)),
          givenName_(std::move(givenName)),
          id_(std::move(id)),
          partnerId_(std::move(partnerId)),
          partnerName_(std::move(partnerName)),
          connected_(connected),
          managePartnerConnectionUrl_(std::move(managePartnerConnectionUrl))
    {
    }

    /// The account's user name on the partner's platform.
    QString const& getUserName() const { return userName_; }

    void setUserName(QString const& userName) { userName_ = userName; }

    /// The name that the user gave the connection; may be empty.
    QString const& getGivenName() const { return givenName_; }

    void setGivenName(QString const& givenName) { givenName_ = givenName; }

    /// The given name, or the user name when there is none. Valid as long as the record is unchanged.
    QString const& getDisplayName() const { return givenName_.isEmpty() ? userName_ : givenName_; }

    /// The id of the connection, not of the partner.
    QString const& getId() const { return id_; }

    void setId(QString const& id) { id_ = id; }

    QString const& getPartnerId() const { return partnerId_; }

    void setPartnerId(QString const& partnerId) { partnerId_ = partnerId; }

    QString const& getPartnerName() const { return partnerName_; }

    void setPartnerName(QString const& partnerName) { partnerName_ = partnerName; }

    /// Whether the connection works.
    bool getConnectedStatus() const { return connected_; }

    void setConnected(bool connected) { connected_ = connected; }

    /// The page on which the connection is managed.
    QString const& getManagePartnerConnectionUrl() const { return managePartnerConnectionUrl_; }

    void setManagePartnerConnectionUrl(QString const& url) { managePartnerConnectionUrl_ = url; }

private:
    QString userName_;
    QString givenName_;
    QString id_;
    QString partnerId_;
    QString partnerName_;
    bool connected_ = false;
    QString managePartnerConnectionUrl_;
};

/// A case of a patient that was sent to a partner. Element of the reply of
/// GET Installations/{id}/PartnerCases/patients/{patient}.
class KELO_EXPORT PartnerCaseInfo
{
public:
    enum class Status : int
    {
        Created,
        Draft,
        Accepted,
        Finished,
        UpdatingStatus
    };

    /// The status that the service's text names; exact and case-sensitive, `Draft` for any other text.
    static Status statusFromString(QString const& text);
    /// The text for users, translated if the application has a translation; that of `UpdatingStatus` for a value
    /// without a name.
    static QString stringFromStatus(Status status);

    QString const& getId() const { return id_; }

    void setId(QString const& id) { id_ = id; }

    Status getStatus() const { return status_; }

    void setStatus(Status status) { status_ = status; }

    void setStatusString(QString const& text) { status_ = statusFromString(text); }

    QDateTime const& getCreationTime() const { return creationTime_; }

    void setCreationTime(QDateTime const& creationTime) { creationTime_ = creationTime; }

    /// Takes ISO 8601 text: with "Z" or an offset it is that instant, without one it is local time. Milliseconds are
    /// optional; unreadable text is an invalid time.
    void setCreationTimeString(QString const& text) { creationTime_ = QDateTime::fromString(text, Qt::ISODate); }

    QString const& getPartnerId() const { return partnerId_; }

    void setPartnerId(QString const& partnerId) { partnerId_ = partnerId; }

    QString const& getPartnerName() const { return partnerName_; }

    void setPartnerName(QString const& partnerName) { partnerName_ = partnerName; }

    /// The id of the partner connection over which the case was sent.
    QString const& getConnectionId() const { return connectionId_; }

    void setConnectionId(QString const& connectionId) { connectionId_ = connectionId; }

    /// The user name of that connection.
    QString const& getConnectionUserName() const { return connectionUserName_; }

    void setConnectionUserName(QString const& connectionUserName) { connectionUserName_ = connectionUserName; }

    /// Whether the case may still be changed.
    bool areCaseUpdatesAllowed() const { return caseUpdatesAllowed_; }

    void setCaseUpdatesAllowed(bool allowed) { caseUpdatesAllowed_ = allowed; }

    /// The id of the case on the partner's platform.
    QString const& getPlatformCaseId() const { return platformCaseId_; }

    void setPlatformCaseId(QString const& platformCaseId) { platformCaseId_ = platformCaseId; }

    /// The partner's logo; empty unless it could be fetched and decoded.
    utility::Optional<QImage> const& getLogo() const { return logo_; }

    void setLogo(QImage const& logo) { logo_ = logo; }

private:
    QString id_;
    Status status_ = Status::Draft;
    QDateTime creationTime_;
    QString partnerId_;
    QString partnerName_;
    QString connectionId_;
    QString connectionUserName_;
    bool caseUpdatesAllowed_ = false;
    QString platformCaseId_;
    utility::Optional<QImage> logo_;
};
