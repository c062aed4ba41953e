#pragma once

#include <vector>

#include <QDate>
#include <QDateTime>
#include <QString>
#include <QVersionNumber>

#include <KeloCommunicationLib/Export.h>
#include <KeloCommunicationLib/collaboration/RequestTypes.h>

/// What the service tells about requests.
namespace collaboration
{

/// A file of a request.
struct KELO_EXPORT FileInfo
{
    QString id;
    int state = -1;
    QString name;
    quint64 size = 0; ///< bytes
    int numberOfChunks = 0;
    int chunkSize = 0; ///< bytes
    QString fileType;
    QString createdBy;
    bool isCreator = false; ///< this user created the file
    bool isMarkedAsSeen = false;
};

/// A note on a request.
struct KELO_EXPORT NoteInfo
{
    QString text;
    /// From ISO 8601 text: with "Z" or an offset it is that instant, without one it is local time. Milliseconds are
    /// optional.
    QDateTime createdAt;
    QString createdBy;
    bool isCreator = false; ///< this user wrote the note
};

/// The patient of a request.
struct KELO_EXPORT PatientInfo
{
    QString patientId;
    QString patientFirstName;
    QString patientLastName;
    QDate patientDateOfBirth;
    QString patientGender; ///< in the service's words
};

/// The partner of a group of requests.
struct KELO_EXPORT Partner
{
    QString partnershipId;
    QString id;
    QString partnerName;
};

/// What requests of every kind have in common.
struct KELO_EXPORT RequestDetails
{
    QString id;
    QString transactionId; ///< changes whenever the request changes
    QString key;           ///< for people to read
    RequestStatus status = RequestStatus::Unset;
    QVersionNumber versionNumber;
    QString metadata; ///< the application's own, opaque text
    QDate dueDate;
    QDateTime creationTimestamp; ///< read as `NoteInfo::createdAt` is
    std::vector<FileInfo> files;
    std::vector<NoteInfo> noteInfos;
    QString internalCaseIdentifier;
    QString orderReference;
    QString treatingClinician;
    PatientInfo patient;
};

/// An entry of the list of requests.
struct KELO_EXPORT RequestInfo
{
    QString requestId;
    QString transactionId; ///< changes whenever the request changes
    RequestType requestType = RequestType::DentalScan;
};

/// How an implant is connected to a restoration.
struct KELO_EXPORT ImplantConnection
{
    int toothNumber = 0; ///< in FDI two-digit notation: quadrant, then position, as in 36
    QString implantConnectionId;
    QString manufacturerId;
    QString implantCategory;
    QString size;
};

/// A restoration on one tooth or on several.
struct KELO_EXPORT Restoration
{
    std::vector<ImplantConnection> implantConnections;
    int toothNumberStart = 0; ///< first tooth, numbered as `ImplantConnection::toothNumber`
    int toothNumberEnd = 0;   ///< last tooth
    QString type;
    QString material;
    QString color;
    QString note;
    bool useAuthenticProducts = false;
    QString barType;
};

/// A restoration request, centralized or not.
struct KELO_EXPORT RestorationRequest
{
    std::vector<Restoration> restorations;
    RequestDetails requestDetails;
    QString restorationURL; ///< where the restoration is viewed
};

/// A template request.
struct KELO_EXPORT TemplateRequestDetailInfo
{
    QString orderId;
    RequestDetails requestDetails;
};

/// A surgery-plan or a referral request; only the address of its own kind is filled.
struct KELO_EXPORT UploadFilesRequestDetailInfo
{
    RequestDetails requestDetails;
    QString surgeryPlanURL;
    QString referralURL;
    QString requesterPatientReference;
};

/// The dental-scan, lab-design and temporary-shell requests of one partner; those of all kinds in an untyped query.
struct KELO_EXPORT SessionDetails
{
    std::vector<RequestDetails> collaborationRequestDetailInfos;
    Partner partner;
};

/// The restoration requests of one partner.
struct KELO_EXPORT RestorationRequestDetail
{
    std::vector<RestorationRequest> collaborationRequestDetailInfos;
    Partner partner;
};

/// The template requests of one partner.
struct KELO_EXPORT TemplateRequestDetail
{
    std::vector<TemplateRequestDetailInfo> collaborationRequestDetailInfos;
    Partner partner;
};

/// The surgery-plan or the referral requests of one partner.
struct KELO_EXPORT UploadFilesRequestDetail
{
    std::vector<UploadFilesRequestDetailInfo> collaborationRequestDetailInfos;
    Partner partner;
};

} // namespace collaboration
