#pragma once

#include <KeloCommunicationLib/connection/TessalyConnectionInterface.h>

#include "cli/RecordReader.h"

/// The members of the records that operations take as JSON, by their keys on the wire. Ids that only fill a path are
/// members as well.
namespace cli
{

// clang-format off
inline void readMembers(MemberReader& reader, collaboration::NewFileInfo& record)
{
    using R = collaboration::NewFileInfo;
    reader(QStringLiteral("Name"), record, &R::name)
        (QStringLiteral("Size"), record, &R::size)
        (QStringLiteral("ChunkSize"), record, &R::chunkSize)
        (QStringLiteral("CheckSum"), record, &R::checkSum)
        (QStringLiteral("FileType"), record, &R::fileType);
}

inline void readMembers(MemberReader& reader, collaboration::ExistingFileInfo& record)
{
    using R = collaboration::ExistingFileInfo;
    reader(QStringLiteral("Id"), record, &R::id);
}

inline void readMembers(MemberReader& reader, collaboration::CreateRequestRequest& record)
{
    using R = collaboration::CreateRequestRequest;
    reader.id(QStringLiteral("SessionId"), record, &R::sessionId)
        (QStringLiteral("Type"), record, &R::type)
        (QStringLiteral("InstallationReference"), record, &R::installationReference)
        (QStringLiteral("UserReference"), record, &R::userReference)
        (QStringLiteral("VersionNumber"), record, &R::versionNumber)
        (QStringLiteral("Note"), record, &R::note)
        (QStringLiteral("DueDate"), record, &R::dueDate)
        (QStringLiteral("NewFiles"), record, &R::newFiles)
        (QStringLiteral("ExistingFiles"), record, &R::existingFiles)
        (QStringLiteral("Metadata"), record, &R::metadata)
        (QStringLiteral("TreatingClinician"), record, &R::treatingClinician)
        (QStringLiteral("PatientId"), record, &R::patientId)
        (QStringLiteral("PatientFirstName"), record, &R::patientFirstName)
        (QStringLiteral("PatientLastName"), record, &R::patientLastName)
        (QStringLiteral("PatientGender"), record, &R::patientGender)
        (QStringLiteral("PatientDateOfBirth"), record, &R::patientDateOfBirth)
        (QStringLiteral("RequesterPatientReference"), record, &R::requesterPatientReference);
}

inline void readMembers(MemberReader& reader, collaboration::UpdateRequestRequest& record)
{
    using R = collaboration::UpdateRequestRequest;
    reader.id(QStringLiteral("RequestId"), record, &R::requestId)
        (QStringLiteral("InstallationReference"), record, &R::installationReference)
        (QStringLiteral("UserReference"), record, &R::userReference)
        (QStringLiteral("Note"), record, &R::note)
        (QStringLiteral("DueDate"), record, &R::dueDate)
        (QStringLiteral("NewFiles"), record, &R::newFiles)
        (QStringLiteral("ExistingFiles"), record, &R::existingFiles)
        (QStringLiteral("Metadata"), record, &R::metadata);
}

inline void readMembers(MemberReader& reader, collaboration::UpdateSurgeryRequestRequest& record)
{
    using R = collaboration::UpdateSurgeryRequestRequest;
    reader.id(QStringLiteral("RequestId"), record, &R::requestId)
        (QStringLiteral("InstallationReference"), record, &R::installationReference)
        (QStringLiteral("UserReference"), record, &R::userReference)
        (QStringLiteral("NewFiles"), record, &R::newFiles)
        (QStringLiteral("ExistingFiles"), record, &R::existingFiles)
        (QStringLiteral("Note"), record, &R::note)
        (QStringLiteral("DueDate"), record, &R::dueDate)
        (QStringLiteral("Metadata"), record, &R::metadata)
        (QStringLiteral("TreatingClinician"), record, &R::treatingClinician)
        (QStringLiteral("PatientId"), record, &R::patientId)
        (QStringLiteral("PatientFirstName"), record, &R::patientFirstName)
        (QStringLiteral("PatientLastName"), record, &R::patientLastName);
}

inline void readMembers(MemberReader& reader, collaboration::MarkAsSeenInfo& record)
{
    using R = collaboration::MarkAsSeenInfo;
    reader(QStringLiteral("InstallationReference"), record, &R::installationReference);
}

inline void readMembers(MemberReader& reader, CreateRestorationRequestInfo::NewFileInfo& record)
{
    using R = CreateRestorationRequestInfo::NewFileInfo;
    reader(QStringLiteral("Name"), record, &R::name)
        (QStringLiteral("Size"), record, &R::size)
        (QStringLiteral("ChunkSize"), record, &R::chunkSize)
        (QStringLiteral("CheckSum"), record, &R::checkSum)
        (QStringLiteral("FileType"), record, &R::fileType);
}

inline void readMembers(MemberReader& reader, CreateRestorationRequestInfo::ExistingFileInfo& record)
{
    using R = CreateRestorationRequestInfo::ExistingFileInfo;
    reader(QStringLiteral("Id"), record, &R::id);
}

inline void readMembers(MemberReader& reader, CreateRestorationRequestInfo::ImplantConnection& record)
{
    using R = CreateRestorationRequestInfo::ImplantConnection;
    reader(QStringLiteral("ImplantConnectionId"), record, &R::implantConnectionId)
        (QStringLiteral("ToothNumber"), record, &R::toothNumber);
}

inline void readMembers(MemberReader& reader, CreateRestorationRequestInfo& record)
{
    using R = CreateRestorationRequestInfo;
    reader.id(QStringLiteral("SessionId"), record, &R::setSessionId)
        (QStringLiteral("InstallationReference"), record, &R::setInstallationReference)
        (QStringLiteral("UserReference"), record, &R::setUserReference)
        (QStringLiteral("VersionNumber"), record, &R::setVersionNumber)
        (QStringLiteral("Note"), record, &R::setNote)
        (QStringLiteral("DueDate"), record, &R::setDueDate)
        (QStringLiteral("NewFiles"), record, &R::setNewFiles)
        (QStringLiteral("ExistingFiles"), record, &R::setExistingFiles)
        (QStringLiteral("TreatingClinician"), record, &R::setTreatingClinician)
        (QStringLiteral("PatientId"), record, &R::setPatientId)
        (QStringLiteral("PatientFirstName"), record, &R::setPatientFirstName)
        (QStringLiteral("PatientLastName"), record, &R::setPatientLastName)
        (QStringLiteral("PatientGender"), record, &R::setPatientGender)
        (QStringLiteral("PatientDateOfBirth"), record, &R::setPatientBirthdayString)
        (QStringLiteral("Connections"), record, &R::setImplantConnections);
}

inline void readMembers(MemberReader& reader, CreateCollaborationSessionInfo& record)
{
    using R = CreateCollaborationSessionInfo;
    reader.id(QStringLiteral("ConnectionId"), record, &R::setConnectionId)
        (QStringLiteral("InstallationReference"), record, &R::setInstallationReference)
        (QStringLiteral("UserReference"), record, &R::setUserReference);
}

inline void readMembers(MemberReader& reader, CreateCollaborationSessionWithoutConnectionIdInfo& record)
{
    using R = CreateCollaborationSessionWithoutConnectionIdInfo;
    reader(QStringLiteral("InstallationReference"), record, &R::setInstallationReference)
        (QStringLiteral("UserReference"), record, &R::setUserReference);
}

inline void readMembers(MemberReader& reader, UpdateCollaborationRequestStatusInfo& record)
{
    using R = UpdateCollaborationRequestStatusInfo;
    reader.id(QStringLiteral("RequestId"), record, &R::setRequestId)
        (QStringLiteral("InstallationReference"), record, &R::setInstallationReference)
        (QStringLiteral("Status"), record, &R::setStatus);
}

inline void readMembers(MemberReader& reader, StartConnectionRequest& record)
{
    using R = StartConnectionRequest;
    reader(QStringLiteral("UserReference"), record, &R::setUserReference)
        (QStringLiteral("InstallationReference"), record, &R::setInstallationReference)
        (QStringLiteral("Note"), record, &R::setNote)
        (QStringLiteral("ConnectionToken"), record, &R::setConnectionToken);
}

inline void readMembers(MemberReader& reader, UpdateConnectionStatusRequest& record)
{
    using R = UpdateConnectionStatusRequest;
    reader.id(QStringLiteral("ConnectionId"), record, &R::setConnectionId)
        (QStringLiteral("InstallationReference"), record, &R::setInstallationReference)
        (QStringLiteral("Status"), record, &R::setStatus);
}

inline void readMembers(MemberReader& reader, GetRequestDetailsInfo& record)
{
    using R = GetRequestDetailsInfo;
    reader(QStringLiteral("GetOnlyActiveRequests"), record, &R::setOnlyActiveRequests)
        (QStringLiteral("VersionNumber"), record, &R::setVersionNumber)
        (QStringLiteral("RequestIds"), record, &R::setRequestIds)
        (QStringLiteral("Type"), record, &R::setType);
}

inline void readMembers(MemberReader& reader, GetRequestsInfo& record)
{
    using R = GetRequestsInfo;
    reader(QStringLiteral("GetOnlyActiveRequests"), record, &R::setOnlyActiveRequests)
        (QStringLiteral("VersionNumber"), record, &R::setVersionNumber)
        (QStringLiteral("SelectedTypes"), record, &R::setSelectedTypes);
}

inline void readMembers(MemberReader& reader, RequestRestorationDetailsInfo& record)
{
    using R = RequestRestorationDetailsInfo;
    reader(QStringLiteral("InstallationReference"), record, &R::setInstallationReference)
        (QStringLiteral("GetOnlyActiveRequests"), record, &R::setOnlyActiveRequests)
        (QStringLiteral("RequestIds"), record, &R::setRequestIds);
}

inline void readMembers(MemberReader& reader, OrderFileInfo& record)
{
    using R = OrderFileInfo;
    reader(QStringLiteral("Name"), record, &R::setName)
        (QStringLiteral("Size"), record, &R::setSize)
        (QStringLiteral("ChunkSize"), record, &R::setChunckSize)
        (QStringLiteral("CheckSum"), record, &R::setCheckSum);
}

inline void readMembers(MemberReader& reader, OrderItemInfo& record)
{
    using R = OrderItemInfo;
    reader(QStringLiteral("ArticleNumber"), record, &R::setArticleNumber)
        (QStringLiteral("Quantity"), record, &R::setQuantity)
        (QStringLiteral("ToothNumberStart"), record, &R::setToothNumberStart)
        (QStringLiteral("ToothNumberEnd"), record, &R::setToothNumberEnd)
        (QStringLiteral("RemakeCode"), record, &R::setRemakeCode)
        (QStringLiteral("VoucherCode"), record, &R::setVoucherCode)
        (QStringLiteral("CadStatus"), record, &R::setCadStatus)
        (QStringLiteral("Files"), record, &R::setFiles);
}

inline void readMembers(MemberReader& reader, OrderRequest& record)
{
    using R = OrderRequest;
    reader(QStringLiteral("InstallationReference"), record, &R::setInstallationReference)
        (QStringLiteral("CreationFrontendVersion"), record, &R::setCreationFrontendVersion)
        (QStringLiteral("FrontendVersion"), record, &R::setFrontendVersion)
        (QStringLiteral("AddressIdentifier"), record, &R::setAddressIdentifier)
        (QStringLiteral("ProductionNote"), record, &R::setProductionNote)
        (QStringLiteral("OriginalOrderNumber"), record, &R::setOriginalOrderNumber)
        (QStringLiteral("InvoiceReference"), record, &R::setInvoiceReference)
        (QStringLiteral("StudyId"), record, &R::setStudyId)
        (QStringLiteral("StudyParticipantId"), record, &R::setStudyParticipantId)
        (QStringLiteral("ClinicianZipCode"), record, &R::setClinicianZipCode)
        (QStringLiteral("ClinicianName"), record, &R::setClinicianName)
        (QStringLiteral("OrderItems"), record, &R::setOrderItems);
}

inline void readMembers(MemberReader& reader, OrderDetailsRequest& record)
{
    using R = OrderDetailsRequest;
    reader(QStringLiteral("References"), record, &R::setOrderReferences);
}

inline void readMembers(MemberReader& reader, IPSOrderItemInfo& record)
{
    using R = IPSOrderItemInfo;
    reader(QStringLiteral("ArticleNumber"), record, &R::setArticleNumber)
        (QStringLiteral("ManufacturerReference"), record, &R::setManufacturerReference)
        (QStringLiteral("Quantity"), record, &R::setQuantity);
}

inline void readMembers(MemberReader& reader, CreateIPSOrderInfo& record)
{
    using R = CreateIPSOrderInfo;
    reader(QStringLiteral("InstallationReference"), record, &R::setInstallationReference)
        (QStringLiteral("CreationFrontendVersion"), record, &R::setCreationFrontendVersion)
        (QStringLiteral("FrontendVersion"), record, &R::setFrontendVersion)
        (QStringLiteral("PatientId"), record, &R::setPatientId)
        (QStringLiteral("OrderItems"), record, &R::setOrderItemInfos);
}

inline void readMembers(MemberReader& reader, ServiceOrderItemInfo& record)
{
    using R = ServiceOrderItemInfo;
    reader(QStringLiteral("ArticleNumber"), record, &R::articleNumber)
        (QStringLiteral("ManufacturerReference"), record, &R::manufacturerReference)
        (QStringLiteral("Quantity"), record, &R::quantity)
        (QStringLiteral("ToothNumberStart"), record, &R::toothNumberStart)
        (QStringLiteral("ToothNumberEnd"), record, &R::toothNumberEnd)
        (QStringLiteral("Files"), record, &R::files);
}

inline void readMembers(MemberReader& reader, ServiceOrderRequest& record)
{
    using R = ServiceOrderRequest;
    reader(QStringLiteral("InstallationReference"), record, &R::installationReference)
        (QStringLiteral("CreationFrontendVersion"), record, &R::creationFrontendVersion)
        (QStringLiteral("FrontendVersion"), record, &R::frontendVersion)
        (QStringLiteral("ProductionNote"), record, &R::productionNote)
        (QStringLiteral("OrderItems"), record, &R::orderItems);
}

inline void readMembers(MemberReader& reader, PriceInfoRequest& record)
{
    using R = PriceInfoRequest;
    reader(QStringLiteral("ArticleNumber"), record, &R::articleNumber)
        (QStringLiteral("Quantity"), record, &R::quantity)
        (QStringLiteral("ToothNumberStart"), record, &R::toothNumberStart)
        (QStringLiteral("ToothNumberEnd"), record, &R::toothNumberEnd)
        (QStringLiteral("VoucherCode"), record, &R::voucherCode)
        (QStringLiteral("IsLocalProductionArticle"), record, &R::isLocalProductionArticle);
}

inline void readMembers(MemberReader& reader, ExtendedPriceInfoRequest& record)
{
    using R = ExtendedPriceInfoRequest;
    reader(QStringLiteral("InstallationReference"), record, &R::installationReference)
        (QStringLiteral("OrderItems"), record, &R::orderItems);
}

inline void readMembers(MemberReader& reader, mirashare::CaseFileInfo& record)
{
    using R = mirashare::CaseFileInfo;
    reader(QStringLiteral("Name"), record, &R::name)
        (QStringLiteral("Size"), record, &R::size)
        (QStringLiteral("ChunkSize"), record, &R::chunkSize)
        (QStringLiteral("Type"), record, &R::type)
        (QStringLiteral("SubType"), record, &R::subType)
        (QStringLiteral("ArchType"), record, &R::archType)
        (QStringLiteral("PaddingBytesAdded"), record, &R::paddingBytesAdded);
}

inline void readMembers(MemberReader& reader, mirashare::Prescription& record)
{
    using R = mirashare::Prescription;
    reader(QStringLiteral("Name"), record, &R::file)
        (QStringLiteral("AcquisitionTimestamp"), record, &R::acquisitionTimestamp)
        (QStringLiteral("Type"), record, &R::type);
}

inline void readMembers(MemberReader& reader, mirashare::CreateCaseRequest& record)
{
    using R = mirashare::CreateCaseRequest;
    reader(QStringLiteral("InstallationReference"), record, &R::installationReference)
        (QStringLiteral("UserReference"), record, &R::userReference)
        (QStringLiteral("PatientFirstName"), record, &R::patientFirstName)
        (QStringLiteral("PatientLastName"), record, &R::patientLastName)
        (QStringLiteral("PatientId"), record, &R::patientId)
        (QStringLiteral("PatientReference"), record, &R::patientReference)
        (QStringLiteral("PatientDateOfBirth"), record, &R::patientDateOfBirth)
        (QStringLiteral("PatientGender"), record, &R::patientGender)
        (QStringLiteral("LocatorInfoNote"), record, &R::locatorInfoNote)
        (QStringLiteral("CaseFiles"), record, &R::caseFiles)
        (QStringLiteral("PrescriptionTemplates"), record, &R::prescriptionTemplates);
}

inline void readMembers(MemberReader& reader, mirashare::AddDataRequest& record)
{
    using R = mirashare::AddDataRequest;
    reader.id(QStringLiteral("CaseId"), record, &R::caseId)
        (QStringLiteral("InstallationReference"), record, &R::installationReference)
        (QStringLiteral("UserReference"), record, &R::userReference)
        (QStringLiteral("CaseFiles"), record, &R::caseFiles);
}

inline void readMembers(MemberReader& reader, mirashare::SharePartnerCaseRequest& record)
{
    using R = mirashare::SharePartnerCaseRequest;
    reader(QStringLiteral("userReference"), record, &R::userReference)
        (QStringLiteral("caseId"), record, &R::caseId)
        (QStringLiteral("partnerConnectionId"), record, &R::partnerConnectionId);
}

// clang-format on

} // namespace cli
