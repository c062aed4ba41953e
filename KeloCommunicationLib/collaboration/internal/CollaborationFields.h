#pragma once

#include <KeloCommunicationLib/collaboration/CollaborationRecords.h>
#include <KeloCommunicationLib/json/internal/Fields.h>

/// The keys of the records of the namespace `collaboration`.
namespace jsonSerializer::implementation
{

template <>
inline constexpr TextTable<collaboration::RequestType, 8> namesOf<collaboration::RequestType>{
    {{
        {latin1("DentalScan"), collaboration::RequestType::DentalScan},
        {latin1("LabDesign"), collaboration::RequestType::LabDesign},
        {latin1("TempShell"), collaboration::RequestType::TempShell},
        {latin1("Template"), collaboration::RequestType::Template},
        {latin1("Restoration"), collaboration::RequestType::Restoration},
        {latin1("SurgeryPlan"), collaboration::RequestType::SurgeryPlan},
        {latin1("CentralizedRestoration"), collaboration::RequestType::CentralizedRestoration},
        {latin1("Referral"), collaboration::RequestType::Referral},
    }},
    collaboration::RequestType::Unset};

template <>
inline constexpr auto fieldsOf<collaboration::FileInfo> = fields<collaboration::FileInfo>({
    field<&collaboration::FileInfo::id>(u"Id"),
    field<&collaboration::FileInfo::state>(u"State"),
    field<&collaboration::FileInfo::name>(u"Name"),
    field<&collaboration::FileInfo::size>(u"Size"),
    field<&collaboration::FileInfo::numberOfChunks>(u"NumberOfChunks"),
    field<&collaboration::FileInfo::chunkSize>(u"ChunkSize", truncatedNumber),
    field<&collaboration::FileInfo::fileType>(u"FileType"),
    field<&collaboration::FileInfo::createdBy>(u"CreatedBy"),
    field<&collaboration::FileInfo::isCreator>(u"IsCreator"),
    field<&collaboration::FileInfo::isMarkedAsSeen>(u"IsMarkedAsSeen"),
});

template <>
inline constexpr auto fieldsOf<collaboration::NoteInfo> = fields<collaboration::NoteInfo>({
    field<&collaboration::NoteInfo::text>(u"Text"),
    field<&collaboration::NoteInfo::createdAt>(u"CreatedAt"),
    field<&collaboration::NoteInfo::createdBy>(u"CreatedBy"),
    field<&collaboration::NoteInfo::isCreator>(u"IsCreator"),
});

template <>
inline constexpr auto fieldsOf<collaboration::PatientInfo> = fields<collaboration::PatientInfo>({
    field<&collaboration::PatientInfo::patientId>(u"PatientId"),
    field<&collaboration::PatientInfo::patientFirstName>(u"PatientFirstName"),
    field<&collaboration::PatientInfo::patientLastName>(u"PatientLastName"),
    field<&collaboration::PatientInfo::patientDateOfBirth>(u"PatientDateOfBirth"),
    field<&collaboration::PatientInfo::patientGender>(u"PatientGender"),
});

template <>
inline constexpr auto fieldsOf<collaboration::Partner> = fields<collaboration::Partner>({
    field<&collaboration::Partner::partnershipId>(u"PartnershipId"),
    field<&collaboration::Partner::id>(u"Id"),
    field<&collaboration::Partner::partnerName>(u"PartnerName"),
});

template <>
inline constexpr auto fieldsOf<collaboration::RequestDetails> = fields<collaboration::RequestDetails>({
    field<&collaboration::RequestDetails::id>(u"Id"),
    field<&collaboration::RequestDetails::transactionId>(u"TransactionId"),
    field<&collaboration::RequestDetails::key>(u"Key"),
    field<&collaboration::RequestDetails::status>(u"Status"),
    field<&collaboration::RequestDetails::versionNumber>(u"VersionNumber"),
    field<&collaboration::RequestDetails::metadata>(u"Metadata"),
    field<&collaboration::RequestDetails::dueDate>(u"DueDate"),
    field<&collaboration::RequestDetails::creationTimestamp>(u"CreationTimestamp"),
    field<&collaboration::RequestDetails::files>(u"Files"),
    field<&collaboration::RequestDetails::noteInfos>(u"NoteInfos"),
    field<&collaboration::RequestDetails::internalCaseIdentifier>(u"InternalCaseIdentifier"),
    field<&collaboration::RequestDetails::orderReference>(u"OrderReference"),
    field<&collaboration::RequestDetails::treatingClinician>(u"TreatingClinician"),
    flat<&collaboration::RequestDetails::patient>(),
});

template <>
inline constexpr auto fieldsOf<collaboration::RequestInfo> = fields<collaboration::RequestInfo>({
    field<&collaboration::RequestInfo::requestId>(u"RequestId"),
    field<&collaboration::RequestInfo::transactionId>(u"TransactionId"),
    field<&collaboration::RequestInfo::requestType>(u"RequestType"),
});

template <>
inline constexpr auto fieldsOf<collaboration::ImplantConnection> = fields<collaboration::ImplantConnection>({
    field<&collaboration::ImplantConnection::toothNumber>(u"ToothNumber"),
    field<&collaboration::ImplantConnection::implantConnectionId>(u"ImplantConnectionId"),
    field<&collaboration::ImplantConnection::manufacturerId>(u"ManufacturerId"),
    field<&collaboration::ImplantConnection::implantCategory>(u"ImplantCategory"),
    field<&collaboration::ImplantConnection::size>(u"Size"),
});

template <>
inline constexpr auto fieldsOf<collaboration::Restoration> = fields<collaboration::Restoration>({
    field<&collaboration::Restoration::implantConnections>(u"ImplantConnections"),
    field<&collaboration::Restoration::toothNumberStart>(u"ToothNumberStart"),
    field<&collaboration::Restoration::toothNumberEnd>(u"ToothNumberEnd"),
    field<&collaboration::Restoration::type>(u"Type"),
    field<&collaboration::Restoration::material>(u"Material"),
    field<&collaboration::Restoration::color>(u"Color"),
    field<&collaboration::Restoration::note>(u"Note"),
    field<&collaboration::Restoration::useAuthenticProducts>(u"UseAuthenticProducts"),
    field<&collaboration::Restoration::barType>(u"BarType"),
});

template <>
inline constexpr auto fieldsOf<collaboration::RestorationRequest> = fields<collaboration::RestorationRequest>({
    field<&collaboration::RestorationRequest::restorations>(u"Restorations"),
    flat<&collaboration::RestorationRequest::requestDetails>(),
    field<&collaboration::RestorationRequest::restorationURL>(u"RestorationURL"),
});

template <>
inline constexpr auto fieldsOf<collaboration::TemplateRequestDetailInfo> =
    fields<collaboration::TemplateRequestDetailInfo>({
        field<&collaboration::TemplateRequestDetailInfo::orderId>(u"OrderId"),
        flat<&collaboration::TemplateRequestDetailInfo::requestDetails>(),
    });

template <>
inline constexpr auto fieldsOf<collaboration::UploadFilesRequestDetailInfo> =
    fields<collaboration::UploadFilesRequestDetailInfo>({
        flat<&collaboration::UploadFilesRequestDetailInfo::requestDetails>(),
        field<&collaboration::UploadFilesRequestDetailInfo::surgeryPlanURL>(u"SurgeryPlanURL"),
        field<&collaboration::UploadFilesRequestDetailInfo::referralURL>(u"ReferralURL"),
        field<&collaboration::UploadFilesRequestDetailInfo::requesterPatientReference>(u"RequesterPatientReference"),
    });

/// A partner and that partner's requests.
template <class Group>
inline constexpr auto groupFields = fields<Group>({
    field<&Group::collaborationRequestDetailInfos>(u"CollaborationRequestDetailInfos"),
    flat<&Group::partner>(),
});

template <>
inline constexpr auto fieldsOf<collaboration::SessionDetails> = groupFields<collaboration::SessionDetails>;
template <>
inline constexpr auto fieldsOf<collaboration::RestorationRequestDetail> =
    groupFields<collaboration::RestorationRequestDetail>;
template <>
inline constexpr auto fieldsOf<collaboration::TemplateRequestDetail> =
    groupFields<collaboration::TemplateRequestDetail>;
template <>
inline constexpr auto fieldsOf<collaboration::UploadFilesRequestDetail> =
    groupFields<collaboration::UploadFilesRequestDetail>;

template <>
inline constexpr auto fieldsOf<collaboration::NewFileInfo> = fields<collaboration::NewFileInfo>({
    field<&collaboration::NewFileInfo::name>(u"Name"),
    field<&collaboration::NewFileInfo::size>(u"Size"),
    field<&collaboration::NewFileInfo::chunkSize>(u"ChunkSize"),
    field<&collaboration::NewFileInfo::checkSum>(u"CheckSum"),
    field<&collaboration::NewFileInfo::fileType>(u"FileType"),
});

template <>
inline constexpr auto fieldsOf<collaboration::ExistingFileInfo> = fields<collaboration::ExistingFileInfo>({
    field<&collaboration::ExistingFileInfo::id>(u"Id"),
});

template <>
inline constexpr auto fieldsOf<collaboration::CreateRequestRequest> = fields<collaboration::CreateRequestRequest>({
    field<&collaboration::CreateRequestRequest::type>(u"Type", leftOutWhenUnset),
    field<&collaboration::CreateRequestRequest::installationReference>(u"InstallationReference"),
    field<&collaboration::CreateRequestRequest::userReference>(u"UserReference"),
    field<&collaboration::CreateRequestRequest::versionNumber>(u"VersionNumber"),
    field<&collaboration::CreateRequestRequest::note>(u"Note"),
    field<&collaboration::CreateRequestRequest::dueDate>(u"DueDate"),
    field<&collaboration::CreateRequestRequest::newFiles>(u"NewFiles"),
    field<&collaboration::CreateRequestRequest::existingFiles>(u"ExistingFiles"),
    field<&collaboration::CreateRequestRequest::metadata>(u"Metadata"),
    field<&collaboration::CreateRequestRequest::treatingClinician>(u"TreatingClinician"),
    field<&collaboration::CreateRequestRequest::patientId>(u"PatientId"),
    field<&collaboration::CreateRequestRequest::patientFirstName>(u"PatientFirstName"),
    field<&collaboration::CreateRequestRequest::patientLastName>(u"PatientLastName"),
    field<&collaboration::CreateRequestRequest::patientGender>(u"PatientGender"),
    field<&collaboration::CreateRequestRequest::patientDateOfBirth>(u"PatientDateOfBirth"),
    field<&collaboration::CreateRequestRequest::requesterPatientReference>(u"RequesterPatientReference"),
});

template <>
inline constexpr auto fieldsOf<collaboration::UpdateRequestRequest> = fields<collaboration::UpdateRequestRequest>({
    field<&collaboration::UpdateRequestRequest::installationReference>(u"InstallationReference"),
    field<&collaboration::UpdateRequestRequest::userReference>(u"UserReference"),
    field<&collaboration::UpdateRequestRequest::note>(u"Note"),
    field<&collaboration::UpdateRequestRequest::dueDate>(u"DueDate"),
    field<&collaboration::UpdateRequestRequest::newFiles>(u"NewFiles"),
    field<&collaboration::UpdateRequestRequest::existingFiles>(u"ExistingFiles"),
    field<&collaboration::UpdateRequestRequest::metadata>(u"Metadata"),
});

template <>
inline constexpr auto fieldsOf<collaboration::UpdateSurgeryRequestRequest> =
    fields<collaboration::UpdateSurgeryRequestRequest>({
        field<&collaboration::UpdateSurgeryRequestRequest::installationReference>(u"InstallationReference"),
        field<&collaboration::UpdateSurgeryRequestRequest::userReference>(u"UserReference"),
        field<&collaboration::UpdateSurgeryRequestRequest::newFiles>(u"NewFiles"),
        field<&collaboration::UpdateSurgeryRequestRequest::existingFiles>(u"ExistingFiles"),
        field<&collaboration::UpdateSurgeryRequestRequest::note>(u"Note"),
        field<&collaboration::UpdateSurgeryRequestRequest::dueDate>(u"DueDate"),
        field<&collaboration::UpdateSurgeryRequestRequest::metadata>(u"Metadata"),
        field<&collaboration::UpdateSurgeryRequestRequest::treatingClinician>(u"TreatingClinician"),
        field<&collaboration::UpdateSurgeryRequestRequest::patientId>(u"PatientId"),
        field<&collaboration::UpdateSurgeryRequestRequest::patientFirstName>(u"PatientFirstName"),
        field<&collaboration::UpdateSurgeryRequestRequest::patientLastName>(u"PatientLastName"),
    });

template <>
inline constexpr auto fieldsOf<collaboration::MarkAsSeenInfo> = fields<collaboration::MarkAsSeenInfo>({
    field<&collaboration::MarkAsSeenInfo::installationReference>(u"InstallationReference"),
});

template <>
inline constexpr auto fieldsOf<collaboration::RequestIdResponse> = fields<collaboration::RequestIdResponse>({
    field<&collaboration::RequestIdResponse::requestId>(u"RequestId"),
});

template <>
inline constexpr auto fieldsOf<collaboration::CreatedFileInfo> = fields<collaboration::CreatedFileInfo>({
    field<&collaboration::CreatedFileInfo::id>(u"Id"),
    field<&collaboration::CreatedFileInfo::name>(u"Name"),
});

template <>
inline constexpr auto fieldsOf<collaboration::UploadFilesRequest> = fields<collaboration::UploadFilesRequest>({
    field<&collaboration::UploadFilesRequest::collaborationRequestId>(u"CollaborationRequestId"),
    field<&collaboration::UploadFilesRequest::collaborationRequestKey>(u"CollaborationRequestKey"),
    field<&collaboration::UploadFilesRequest::files>(u"Files"),
});

template <>
inline constexpr auto fieldsOf<collaboration::UpdateSurgeryRequestResponse> =
    fields<collaboration::UpdateSurgeryRequestResponse>({
        field<&collaboration::UpdateSurgeryRequestResponse::files>(u"Files"),
    });

} // namespace jsonSerializer::implementation
