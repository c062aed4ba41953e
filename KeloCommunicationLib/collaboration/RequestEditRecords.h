#pragma once

#include <vector>

#include <QDate>
#include <QString>
#include <QVersionNumber>

#include <KeloCommunicationLib/Export.h>
#include <KeloCommunicationLib/collaboration/RequestTypes.h>
#include <platform/utility/Optional.h>

/// What is sent to create, change and find requests, and what the service answers.
namespace collaboration
{

/// A file that is to be uploaded.
struct KELO_EXPORT NewFileInfo
{
    QString name;
    quint64 size = 0;      ///< bytes
    quint64 chunkSize = 0; ///< bytes
    QString checkSum;      ///< MD5, hexadecimal
    QString fileType;
};

/// A file that is on the server and is kept.
struct KELO_EXPORT ExistingFileInfo
{
    QString id;
};

/// A new request of any kind. `sessionId` fills the path only; a type that is not set is left out.
struct KELO_EXPORT CreateRequestRequest
{
    QString sessionId;
    RequestType type = RequestType::Unset;
    QString installationReference;
    QString userReference;
    QVersionNumber versionNumber;
    QString note;
    QDate dueDate;
    std::vector<NewFileInfo> newFiles;
    std::vector<ExistingFileInfo> existingFiles;
    QString metadata;
    QString treatingClinician;
    QString patientId;
    QString patientFirstName;
    QString patientLastName;
    QString patientGender;
    QDate patientDateOfBirth;
    QString requesterPatientReference;
};

/// Changes to a request. `requestId` fills the path only.
struct KELO_EXPORT UpdateRequestRequest
{
    QString requestId;
    QString installationReference;
    QString userReference;
    QString note;
    QDate dueDate;
    std::vector<NewFileInfo> newFiles;
    std::vector<ExistingFileInfo> existingFiles;
    QString metadata;
};

/// Changes to a surgery-plan request; what is not set stays as it is. `requestId` fills the path only.
struct KELO_EXPORT UpdateSurgeryRequestRequest
{
    QString requestId;
    QString installationReference;
    QString userReference;
    std::vector<NewFileInfo> newFiles;
    std::vector<ExistingFileInfo> existingFiles;
    utility::Optional<QString> note;
    utility::Optional<QDate> dueDate;
    utility::Optional<QString> metadata;
    utility::Optional<QString> treatingClinician;
    utility::Optional<QString> patientId;
    utility::Optional<QString> patientFirstName;
    utility::Optional<QString> patientLastName;
};

/// Who marks a file as seen.
struct KELO_EXPORT MarkAsSeenInfo
{
    QString installationReference;
};

/// Finds a request by its human-readable key.
struct KELO_EXPORT RequestKeyRequest
{
    QString requestKey;
};

/// Finds the request that belongs to a sales order.
struct KELO_EXPORT SalesOrderNumberRequest
{
    QString salesOrderNumber;
};

/// The request that was found.
struct KELO_EXPORT RequestIdResponse
{
    QString requestId;
};

/// The slot that the service made for the upload of a file.
struct KELO_EXPORT CreatedFileInfo
{
    QString id;
    QString name;
};

/// A surgery-plan or referral request that was created, with the slots of its files.
struct KELO_EXPORT UploadFilesRequest
{
    QString collaborationRequestId;
    QString collaborationRequestKey;
    std::vector<CreatedFileInfo> files;
};

/// The slots of the files that were added to a surgery-plan request.
struct KELO_EXPORT UpdateSurgeryRequestResponse
{
    std::vector<CreatedFileInfo> files;
};

} // namespace collaboration
