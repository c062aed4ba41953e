#pragma once

#include <vector>

#include <QDateTime>
#include <QFileInfo>
#include <QList>
#include <QString>
#include <QStringList>
#include <QUrl>

#include <KeloCommunicationLib/Export.h>
#include <platform/data/PatientGender.h>

/// Cases on the web portal and their sharing.
namespace mirashare
{

/// A case on the portal. Element of the reply of GET Patients/{id}/cases.
class KELO_EXPORT MiraShareItemData
{
public:
    enum class Status : int
    {
        Created,
        Open, ///< also any text of the service that names no status
        UnderReview,
        InProgress,
        Finished,
        NeedsMoreInput,
        Rejected,
        Closed
    };

    QString const& getCaseName() const { return caseName_; }

    void setCaseName(QString const& caseName) { caseName_ = caseName; }

    Status getStatus() const { return status_; }

    void setStatus(Status status) { status_ = status; }

    QString const& getCreatedBy() const { return createdBy_; }

    void setCreatedBy(QString const& createdBy) { createdBy_ = createdBy; }

    /// The case's page on the portal.
    QUrl const& getMiraLink() const { return miraLink_; }

    void setMiraLink(QUrl const& miraLink) { miraLink_ = miraLink; }

    QDateTime const& getCreationDate() const { return creationDate_; }

    void setCreationDate(QDateTime const& creationDate) { creationDate_ = creationDate; }

    /// Takes ISO 8601 text: with "Z" or an offset it is that instant, without one it is local time. Milliseconds are
    /// optional; unreadable text is an invalid time.
    void setCreationDateString(QString const& text) { creationDate_ = QDateTime::fromString(text, Qt::ISODate); }

    bool isCreatedByThisUser() const { return createdByThisUser_; }

    void setCreatedByThisUser(bool createdByThisUser) { createdByThisUser_ = createdByThisUser; }

    /// The names of the sites with which the case is shared, in the service's order.
    QList<QString> const& getSharedWith() const { return sharedWith_; }

    void setSharedWith(QList<QString> const& sharedWith) { sharedWith_ = sharedWith; }

private:
    QString caseName_;
    Status status_ = Status::Open;
    QString createdBy_;
    QUrl miraLink_;
    QDateTime creationDate_;
    bool createdByThisUser_ = false;
    QList<QString> sharedWith_;
};

/// A file announced to the portal.
struct KELO_EXPORT CaseFileInfo
{
    QString name;
    int size = 0;      ///< in bytes
    int chunkSize = 0; ///< in bytes
    QString type;
    QString subType;
    QString archType;
    int paddingBytesAdded = 0;
};

/// A prescription template file of a new case.
struct KELO_EXPORT Prescription
{
    Prescription() = default;

    Prescription(QFileInfo const& prescriptionFile, QDateTime const& acquisition)
        : file(prescriptionFile), acquisitionTimestamp(acquisition)
    {
    }

    QFileInfo file; ///< sent as its name without the directory
    /// Sent as ISO 8601 text with milliseconds and, unless it is a local time, with "Z" or its offset; as null when
    /// null.
    QDateTime acquisitionTimestamp;
    QString type = QStringLiteral("Full");
};

/// A case to be created on the portal. Body of POST Cases.
struct KELO_EXPORT CreateCaseRequest
{
    QString installationReference;
    QString userReference;
    QString patientFirstName;
    QString patientLastName;
    QString patientId;
    QString patientReference;
    QString patientDateOfBirth; ///< sent as held; the caller formats it
    PatientGender::Gender patientGender = PatientGender::NotSet;
    QString locatorInfoNote;
    std::vector<CaseFileInfo> caseFiles;
    std::vector<Prescription> prescriptionTemplates;
};

/// The upload identity of an announced file. Element of the reply of POST Cases/{id}/files.
struct KELO_EXPORT CaseFileId
{
    QString id;
    QString name;
};

/// A case that was created. Reply of POST Cases.
struct KELO_EXPORT CreateCaseResponse
{
    QString caseId;
    QString caseUrl;
    std::vector<CaseFileId> caseFiles;
};

/// Further files for a case on the portal. Body of POST Cases/{id}/files.
struct KELO_EXPORT AddDataRequest
{
    QString caseId; ///< names the case; not part of the body
    QString installationReference;
    QString userReference;
    std::vector<CaseFileInfo> caseFiles;
};

/// The cases whose status is to be refreshed. Body of POST Installations/{id}/partnercases/refresh-status: the ids as a
/// bare array.
struct KELO_EXPORT Cases
{
    QStringList caseIds;
};

/// The status of a case with its partner, in the service's words. Element of the reply of
/// POST Installations/{id}/partnercases/refresh-status.
struct KELO_EXPORT CaseStatusResponse
{
    QString caseId;
    QString status;
};

/// A case to be shared with a partner. Body of POST Cases/share.
struct KELO_EXPORT SharePartnerCaseRequest
{
    QString userReference;
    QString caseId;
    QString partnerConnectionId;
};

/// Whether a partner connection works. Reply of GET Installations/{id}/test-connection.
struct KELO_EXPORT TestAccountConnectionResponse
{
    bool isConnected = false;
    QString managePartnerConnectionUrl; ///< the page on which the connection is managed
};

} // namespace mirashare
