#pragma once

#include <utility>

#include <QString>
#include <QVersionNumber>

#include <KeloCommunicationLib/Export.h>

/// The id of a document's current version. Reply of GET Installations/{id}/about/status, ifu/status and
/// uitranslation/status.
class KELO_EXPORT FileIdReference
{
public:
    QString const& getFileId() const { return fileId_; }

    void setFileId(QString const& fileId) { fileId_ = fileId; }

private:
    QString fileId_;
};

/// A document's current version. Reply of GET Installations/{id}/about, ifu, uitranslation and help/{language}.
class KELO_EXPORT FileLicenseInfo
{
public:
    /// The file's id; the same as `FileIdReference::getFileId` for the same version.
    QString const& getFileReference() const { return fileReference_; }

    void setFileReference(QString const& fileReference) { fileReference_ = fileReference; }

    QString const& getFileName() const { return fileName_; }

    void setFileName(QString const& fileName) { fileName_ = fileName; }

    /// In bytes.
    int getFileSize() const { return fileSize_; }

    void setFileSize(int fileSize) { fileSize_ = fileSize; }

private:
    QString fileReference_;
    QString fileName_;
    int fileSize_ = 0;
};

/// The latest help file in one language. Element of the reply of GET Installations/{id}/help/status.
class KELO_EXPORT HelpFileInfo
{
public:
    /// The language, as `getHelpFileInfo` takes it.
    QString const& getLanguageCode() const { return languageCode_; }

    void setLanguageCode(QString const& languageCode) { languageCode_ = languageCode; }

    /// The language's name for users.
    QString const& getDisplayName() const { return displayName_; }

    void setDisplayName(QString const& displayName) { displayName_ = displayName; }

    /// The file's id.
    QString const& getFileRef() const { return fileRef_; }

    void setFileRef(QString const& fileRef) { fileRef_ = fileRef; }

private:
    QString languageCode_;
    QString displayName_;
    QString fileRef_;
};

/// The latest release of the application. Reply of GET Installations/{id}/softwareupdate.
class KELO_EXPORT SoftwareUpdateInfo
{
public:
    QVersionNumber const& getUpdateVersion() const { return updateVersion_; }

    void setUpdateVersion(QVersionNumber updateVersion) { updateVersion_ = std::move(updateVersion); }

    /// Whether the user has to install it.
    bool hasMandatoryUpdate() const { return mandatoryUpdate_; }

    void setMandatoryUpdate(bool mandatoryUpdate) { mandatoryUpdate_ = mandatoryUpdate; }

    QString const& getReleaseImageUrl() const { return releaseImageUrl_; }

    void setReleaseImageUrl(QString const& url) { releaseImageUrl_ = url; }

    /// The release notes.
    QString const& getInformationUrl() const { return informationUrl_; }

    void setInformationUrl(QString const& url) { informationUrl_ = url; }

    /// The installer.
    QString const& getDownloadUrl() const { return downloadUrl_; }

    void setDownloadUrl(QString const& url) { downloadUrl_ = url; }

private:
    QVersionNumber updateVersion_;
    bool mandatoryUpdate_ = false;
    QString releaseImageUrl_;
    QString informationUrl_;
    QString downloadUrl_;
};
