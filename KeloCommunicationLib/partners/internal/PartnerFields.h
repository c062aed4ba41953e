#pragma once

#include <QLatin1String>

#include <KeloCommunicationLib/connection/OperationRecords.h>
#include <KeloCommunicationLib/json/internal/Fields.h>
#include <KeloCommunicationLib/partners/MiraShareRecords.h>
#include <KeloCommunicationLib/partners/PartnerRecords.h>

/// The keys of the partner and case-sharing records.
namespace jsonSerializer::implementation
{

// Partners

template <>
inline constexpr auto fieldsOf<PartnerInfo> = fields<PartnerInfo>({
    field<&PartnerInfo::getId, &PartnerInfo::setId>(u"PartnerId"),
    field<&PartnerInfo::getName, &PartnerInfo::setName>(u"PartnerName"),
    field<&PartnerInfo::getShouldCreatePartnerConnection, &PartnerInfo::setShouldCreatePartnerConnection>(
        u"ShouldCreatePartnerConnection"),
    field<&PartnerInfo::isAnonymizeRequired, &PartnerInfo::setIsAnonymizeRequired>(u"ShouldAnonymizeCaseData"),
    field<&PartnerInfo::getCreatePartnerConnectionUrl, &PartnerInfo::setCreatePartnerConnectionUrl>(
        u"CreatePartnerConnectionUrl"),
});

template <>
inline constexpr auto fieldsOf<PartnerAccountInfo> = fields<PartnerAccountInfo>({
    field<&PartnerAccountInfo::getUserName, &PartnerAccountInfo::setUserName>(u"UserName"),
    field<&PartnerAccountInfo::getGivenName, &PartnerAccountInfo::setGivenName>(u"GivenName"),
    field<&PartnerAccountInfo::getId, &PartnerAccountInfo::setId>(u"PartnerConnectionId"),
    field<&PartnerAccountInfo::getPartnerId, &PartnerAccountInfo::setPartnerId>(u"PartnerId"),
    field<&PartnerAccountInfo::getPartnerName, &PartnerAccountInfo::setPartnerName>(u"PartnerName"),
    field<&PartnerAccountInfo::getConnectedStatus, &PartnerAccountInfo::setConnected>(u"IsConnected"),
    field<&PartnerAccountInfo::getManagePartnerConnectionUrl, &PartnerAccountInfo::setManagePartnerConnectionUrl>(
        u"ManagePartnerConnectionUrl"),
});

inline constexpr TextTable<PartnerCaseInfo::Status, 5> partnerCaseStates{
    {{
        {QLatin1String("Created"), PartnerCaseInfo::Status::Created},
        {QLatin1String("Draft"), PartnerCaseInfo::Status::Draft},
        {QLatin1String("Accepted"), PartnerCaseInfo::Status::Accepted},
        {QLatin1String("Finished"), PartnerCaseInfo::Status::Finished},
        {QLatin1String("Updating Status"), PartnerCaseInfo::Status::UpdatingStatus},
    }},
    PartnerCaseInfo::Status::Draft};

template <>
inline constexpr auto fieldsOf<PartnerCaseInfo> = fields<PartnerCaseInfo>({
    field<&PartnerCaseInfo::getId, &PartnerCaseInfo::setId>(u"CaseId"),
    field<&PartnerCaseInfo::getStatus, &PartnerCaseInfo::setStatus>(u"CaseStatus", texts<partnerCaseStates>),
    field<&PartnerCaseInfo::getCreationTime, &PartnerCaseInfo::setCreationTime>(u"CreatedAt"),
    field<&PartnerCaseInfo::getPartnerId, &PartnerCaseInfo::setPartnerId>(u"PartnerId"),
    field<&PartnerCaseInfo::getPartnerName, &PartnerCaseInfo::setPartnerName>(u"PartnerName"),
    field<&PartnerCaseInfo::getConnectionId, &PartnerCaseInfo::setConnectionId>(u"PartnerConnectionId"),
    field<&PartnerCaseInfo::getConnectionUserName, &PartnerCaseInfo::setConnectionUserName>(
        u"PartnerConnectionUserName"),
    field<&PartnerCaseInfo::areCaseUpdatesAllowed, &PartnerCaseInfo::setCaseUpdatesAllowed>(u"AllowCaseUpdates"),
    field<&PartnerCaseInfo::getPlatformCaseId, &PartnerCaseInfo::setPlatformCaseId>(u"PartnerPlatformCaseId"),
});

// Cases on the portal

inline constexpr TextTable<mirashare::MiraShareItemData::Status, 8> miraShareStates{
    {{
        {QLatin1String("Created"), mirashare::MiraShareItemData::Status::Created},
        {QLatin1String("Open"), mirashare::MiraShareItemData::Status::Open},
        {QLatin1String("UnderReview"), mirashare::MiraShareItemData::Status::UnderReview},
        {QLatin1String("InProgress"), mirashare::MiraShareItemData::Status::InProgress},
        {QLatin1String("Finished"), mirashare::MiraShareItemData::Status::Finished},
        {QLatin1String("NeedsMoreInput"), mirashare::MiraShareItemData::Status::NeedsMoreInput},
        {QLatin1String("Rejected"), mirashare::MiraShareItemData::Status::Rejected},
        {QLatin1String("Closed"), mirashare::MiraShareItemData::Status::Closed},
    }},
    mirashare::MiraShareItemData::Status::Open};

// Of the sites that share a case only the names are kept.
inline constexpr auto siteFields = fields<QString>({itself<QString>(u"Name", typeOf<QString>)});

template <>
inline constexpr auto fieldsOf<mirashare::MiraShareItemData> = fields<mirashare::MiraShareItemData>({
    field<&mirashare::MiraShareItemData::getCaseName, &mirashare::MiraShareItemData::setCaseName>(u"Name"),
    field<&mirashare::MiraShareItemData::getStatus, &mirashare::MiraShareItemData::setStatus>(
        u"Status", texts<miraShareStates>),
    field<&mirashare::MiraShareItemData::getCreatedBy, &mirashare::MiraShareItemData::setCreatedBy>(u"CreatedBy"),
    field<&mirashare::MiraShareItemData::getMiraLink, &mirashare::MiraShareItemData::setMiraLink>(u"CaseUrl"),
    field<&mirashare::MiraShareItemData::getCreationDate, &mirashare::MiraShareItemData::setCreationDate>(
        u"CreationTimestamp"),
    field<&mirashare::MiraShareItemData::isCreatedByThisUser, &mirashare::MiraShareItemData::setCreatedByThisUser>(
        u"IsCreator"),
    field<&mirashare::MiraShareItemData::getSharedWith, &mirashare::MiraShareItemData::setSharedWith>(
        u"SharedWithSites", objectsOf<siteFields>),
});

template <>
inline constexpr auto fieldsOf<mirashare::CaseFileInfo> = fields<mirashare::CaseFileInfo>({
    field<&mirashare::CaseFileInfo::name>(u"Name"),
    field<&mirashare::CaseFileInfo::size>(u"Size", decimalText),
    field<&mirashare::CaseFileInfo::chunkSize>(u"ChunkSize", decimalText),
    field<&mirashare::CaseFileInfo::type>(u"Type"),
    field<&mirashare::CaseFileInfo::subType>(u"SubType"),
    field<&mirashare::CaseFileInfo::archType>(u"ArchType"),
    field<&mirashare::CaseFileInfo::paddingBytesAdded>(u"PaddingBytesAdded", decimalText),
});

template <>
inline constexpr auto fieldsOf<mirashare::Prescription> = fields<mirashare::Prescription>({
    field<&mirashare::Prescription::file>(u"Name", fileName),
    field<&mirashare::Prescription::acquisitionTimestamp>(u"AcquisitionTimestamp", nullWhenNull),
    field<&mirashare::Prescription::type>(u"Type"),
});

/// The gender's word with only its first letter in upper case; empty when it is not set.
inline QString capitalizedGender(PatientGender::Gender gender)
{
    if (gender == PatientGender::NotSet)
    {
        return QString();
    }
    QString word = conversions::toString(gender).toLower();
    return word.replace(0, 1, word.left(1).toUpper());
}

template <>
inline constexpr auto fieldsOf<mirashare::CreateCaseRequest> = fields<mirashare::CreateCaseRequest>({
    field<&mirashare::CreateCaseRequest::installationReference>(u"InstallationReference"),
    field<&mirashare::CreateCaseRequest::userReference>(u"UserReference"),
    field<&mirashare::CreateCaseRequest::patientFirstName>(u"PatientFirstName"),
    field<&mirashare::CreateCaseRequest::patientLastName>(u"PatientLastName"),
    field<&mirashare::CreateCaseRequest::patientId>(u"PatientId"),
    field<&mirashare::CreateCaseRequest::patientReference>(u"PatientReference"),
    field<&mirashare::CreateCaseRequest::patientDateOfBirth>(u"PatientDateOfBirth"),
    field<&mirashare::CreateCaseRequest::patientGender>(
        u"PatientGender", words<&capitalizedGender, PatientGender::Other>),
    field<&mirashare::CreateCaseRequest::locatorInfoNote>(u"LocatorInfoNote"),
    field<&mirashare::CreateCaseRequest::caseFiles>(u"CaseFiles"),
    field<&mirashare::CreateCaseRequest::prescriptionTemplates>(u"PrescriptionTemplates"),
});

template <>
inline constexpr auto fieldsOf<mirashare::CaseFileId> = fields<mirashare::CaseFileId>({
    field<&mirashare::CaseFileId::id>(u"Id"),
    field<&mirashare::CaseFileId::name>(u"Name"),
});

template <>
inline constexpr auto fieldsOf<mirashare::CreateCaseResponse> = fields<mirashare::CreateCaseResponse>({
    field<&mirashare::CreateCaseResponse::caseId>(u"CaseId"),
    field<&mirashare::CreateCaseResponse::caseUrl>(u"CaseUrl"),
    field<&mirashare::CreateCaseResponse::caseFiles>(u"CaseFiles"),
});

template <>
struct Value<mirashare::Cases>
{
    static constexpr Type type() { return bareList<&mirashare::Cases::caseIds>(); }
};

template <>
inline constexpr auto fieldsOf<mirashare::AddDataRequest> = fields<mirashare::AddDataRequest>({
    field<&mirashare::AddDataRequest::installationReference>(u"InstallationReference"),
    field<&mirashare::AddDataRequest::userReference>(u"UserReference"),
    field<&mirashare::AddDataRequest::caseFiles>(u"CaseFiles"),
});

template <>
inline constexpr auto fieldsOf<mirashare::CaseStatusResponse> = fields<mirashare::CaseStatusResponse>({
    field<&mirashare::CaseStatusResponse::caseId>(u"CaseId"),
    field<&mirashare::CaseStatusResponse::status>(u"Status"),
});

// The only record whose keys begin with a lower-case letter.
template <>
inline constexpr auto fieldsOf<mirashare::SharePartnerCaseRequest> = fields<mirashare::SharePartnerCaseRequest>({
    field<&mirashare::SharePartnerCaseRequest::userReference>(u"userReference"),
    field<&mirashare::SharePartnerCaseRequest::caseId>(u"caseId"),
    field<&mirashare::SharePartnerCaseRequest::partnerConnectionId>(u"partnerConnectionId"),
});

template <>
inline constexpr auto fieldsOf<mirashare::TestAccountConnectionResponse> =
    fields<mirashare::TestAccountConnectionResponse>({
        field<&mirashare::TestAccountConnectionResponse::isConnected>(u"IsConnected"),
        field<&mirashare::TestAccountConnectionResponse::managePartnerConnectionUrl>(u"ManagePartnerConnectionUrl"),
    });

template <>
inline constexpr auto fieldsOf<operations::PortalCases> = fields<operations::PortalCases>({
    field<&operations::PortalCases::cases>(u"Cases"),
});

} // namespace jsonSerializer::implementation
