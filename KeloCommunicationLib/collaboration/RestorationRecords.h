#pragma once

#include <utility>
#include <vector>

#include <QDate>
#include <QFileInfo>
#include <QString>
#include <QVersionNumber>

#include <KeloCommunicationLib/Export.h>
#include <platform/data/PatientGender.h>
#include <platform/utility/Optional.h>

/// A new restoration request. The session id fills the path only.
class KELO_EXPORT CreateRestorationRequestInfo
{
public:
    /// A file that is to be uploaded.
    struct KELO_EXPORT NewFileInfo
    {
        /// Describes a local file; nothing if it is missing, cannot be opened for reading and writing, or cannot be
        /// read to its end. `chunkSize` in bytes is passed on as it is.
        static utility::Optional<NewFileInfo> create(QFileInfo const& file, unsigned long long chunkSize);

        QString name;
        quint64 size = 0;      ///< bytes
        quint64 chunkSize = 0; ///< bytes
        QString checkSum;      ///< MD5, lower-case hexadecimal
        QString fileType;      ///< the file name's extension without the dot
    };

    /// A file that is on the server and is kept.
    struct KELO_EXPORT ExistingFileInfo
    {
        QString id;
    };

    /// How the implant of a tooth is connected.
    struct KELO_EXPORT ImplantConnection
    {
        QString implantConnectionId;
        int toothNumber = 0; ///< in FDI two-digit notation: quadrant, then position, as in 36
    };

    QString const& getSessionId() const { return sessionId_; }

    void setSessionId(QString sessionId) { sessionId_ = std::move(sessionId); }

    QString const& getInstallationReference() const { return installationReference_; }

    void setInstallationReference(QString installationReference)
    {
        installationReference_ = std::move(installationReference);
    }

    QString const& getUserReference() const { return userReference_; }

    void setUserReference(QString userReference) { userReference_ = std::move(userReference); }

    QVersionNumber const& getVersionNumber() const { return versionNumber_; }

    void setVersionNumber(QVersionNumber versionNumber) { versionNumber_ = std::move(versionNumber); }

    QString const& getNote() const { return note_; }

    void setNote(QString note) { note_ = std::move(note); }

    QDate getDueDate() const { return dueDate_; }

    void setDueDate(QDate dueDate) { dueDate_ = dueDate; }

    std::vector<NewFileInfo> const& getNewFiles() const { return newFiles_; }

    void setNewFiles(std::vector<NewFileInfo> newFiles) { newFiles_ = std::move(newFiles); }

    std::vector<ExistingFileInfo> const& getExistingFiles() const { return existingFiles_; }

    void setExistingFiles(std::vector<ExistingFileInfo> existingFiles) { existingFiles_ = std::move(existingFiles); }

    QString const& getTreatingClinician() const { return treatingClinician_; }

    void setTreatingClinician(QString treatingClinician) { treatingClinician_ = std::move(treatingClinician); }

    QString const& getPatientId() const { return patientId_; }

    void setPatientId(QString patientId) { patientId_ = std::move(patientId); }

    QString const& getPatientFirstName() const { return patientFirstName_; }

    void setPatientFirstName(QString patientFirstName) { patientFirstName_ = std::move(patientFirstName); }

    QString const& getPatientLastName() const { return patientLastName_; }

    void setPatientLastName(QString patientLastName) { patientLastName_ = std::move(patientLastName); }

    PatientGender::Gender getPatientGender() const { return patientGender_; }

    void setPatientGender(PatientGender::Gender patientGender) { patientGender_ = patientGender; }

    QString const& getPatientBirthdayString() const { return patientBirthdayString_; }

    void setPatientBirthdayString(QString patientBirthdayString)
    {
        patientBirthdayString_ = std::move(patientBirthdayString);
    }

    std::vector<ImplantConnection> const& getImplantConnections() const { return implantConnections_; }

    void setImplantConnections(std::vector<ImplantConnection> implantConnections)
    {
        implantConnections_ = std::move(implantConnections);
    }

private:
    QString sessionId_;
    QString installationReference_;
    QString userReference_;
    QVersionNumber versionNumber_;
    QString note_;
    QDate dueDate_;
    std::vector<NewFileInfo> newFiles_;
    std::vector<ExistingFileInfo> existingFiles_;
    QString treatingClinician_;
    QString patientId_;
    QString patientFirstName_;
    QString patientLastName_;
    PatientGender::Gender patientGender_ = PatientGender::NotSet;
    QString patientBirthdayString_;
    std::vector<ImplantConnection> implantConnections_;
};

/// A request that was created, with the slots of its files.
class KELO_EXPORT CreateRestorationResponseInfo
{
public:
    /// The slot that the service made for the upload of a file.
    struct KELO_EXPORT FileInfo
    {
        QString id;
        QString name;
    };

    QString const& getCollaborationRequestId() const { return collaborationRequestId_; }

    void setCollaborationRequestId(QString collaborationRequestId)
    {
        collaborationRequestId_ = std::move(collaborationRequestId);
    }

    QString const& getCollaborationRequestKey() const { return collaborationRequestKey_; }

    void setCollaborationRequestKey(QString collaborationRequestKey)
    {
        collaborationRequestKey_ = std::move(collaborationRequestKey);
    }

    std::vector<FileInfo> const& getFiles() const { return files_; }

    void setFiles(std::vector<FileInfo> files) { files_ = std::move(files); }

private:
    QString collaborationRequestId_;
    QString collaborationRequestKey_;
    std::vector<FileInfo> files_;
};

/// Where the restorations of a set of requests are viewed.
class KELO_EXPORT RestorationDetailsInfo
{
public:
    /// One request.
    struct KELO_EXPORT CollaborationRequestDetailInfos
    {
        QString id;
        QString restorationURL;
    };

    /// The requests of one session.
    struct KELO_EXPORT CollaborationSessionDetailInfos
    {
        using CollaborationRequestDetailInfos = RestorationDetailsInfo::CollaborationRequestDetailInfos;

        std::vector<CollaborationRequestDetailInfos> collaborationRequestDetailInfos;
    };

    std::vector<CollaborationSessionDetailInfos> const& getCollaborationSessionDetailInfos() const
    {
        return collaborationSessionDetailInfos_;
    }

    void setCollaborationSessionDetailInfos(
        std::vector<CollaborationSessionDetailInfos> collaborationSessionDetailInfos)
    {
        collaborationSessionDetailInfos_ = std::move(collaborationSessionDetailInfos);
    }

    void addCollaborationSessionDetail(CollaborationSessionDetailInfos detail)
    {
        collaborationSessionDetailInfos_.push_back(std::move(detail));
    }

    /// The address of the request with exactly this id; empty when there is none.
    QString getRestorationURL(QString const& requestId) const
    {
        for (CollaborationSessionDetailInfos const& session : collaborationSessionDetailInfos_)
        {
            for (CollaborationRequestDetailInfos const& request : session.collaborationRequestDetailInfos)
            {
                if (request.id == requestId)
                {
                    return request.restorationURL;
                }
            }
        }
        return QString();
    }

private:
    std::vector<CollaborationSessionDetailInfos> collaborationSessionDetailInfos_;
};
