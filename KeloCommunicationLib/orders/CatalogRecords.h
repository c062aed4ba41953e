#pragma once

#include <utility>

#include <QString>
#include <QVersionNumber>

#include <KeloCommunicationLib/Export.h>

namespace KeloCommunicationLib
{

/// Whether the application's article catalogue has to be replaced.
enum class CatalogUpdateState : int
{
    NoUpdate,
    Optional,
    Mandatory
};

} // namespace KeloCommunicationLib

/// The catalogue file on offer for a catalogue version. Reply of GET Installations/{id}/catalog/{version}.
class KELO_EXPORT CatalogUpdateInfo
{
public:
    /// What the file is downloaded by.
    QString const& getFileReference() const { return fileReference_; }

    void setFileReference(QString const& fileReference) { fileReference_ = fileReference; }

    QString const& getFileName() const { return fileName_; }

    void setFileName(QString const& fileName) { fileName_ = fileName; }

    /// Bytes.
    int getFileSize() const { return fileSize_; }

    void setFileSize(int fileSize) { fileSize_ = fileSize; }

    /// Version of the catalogue in the file.
    QVersionNumber const& getCatalogVersion() const { return catalogVersion_; }

    void setCatalogVersion(QVersionNumber catalogVersion) { catalogVersion_ = std::move(catalogVersion); }

    /// The service's text.
    QString const& getUpdateStatusString() const { return updateStatus_; }

    void setUpdateStatusString(QString const& updateStatus) { updateStatus_ = updateStatus; }

    /// What the status text says; `NoUpdate` for every text but "Optional" and "Mandatory".
    KeloCommunicationLib::CatalogUpdateState getUpdateStatus() const;

private:
    QString fileReference_;
    QString fileName_;
    int fileSize_ = 0;
    QVersionNumber catalogVersion_;
    QString updateStatus_;
};
