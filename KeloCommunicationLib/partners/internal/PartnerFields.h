#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QLatin1String>

#include <KeloCommunicationLib/json/internal/Fields.h>
#include <KeloCommunicationLib/partners/MiraShareRecords.h>
#include <KeloCommunicationLib/partners/PartnerRecords.h>

/// The keys of the partner and case-sharing records.
namespace jsonSerializer::implementation
{

// Partners

template <>
inline constexpr auto fieldsOf<PartnerInfo> = fields<PartnerInfo>({
    readField<&PartnerInfo::setId>(u"PartnerId"),
    readField<&PartnerInfo::setName>(u"PartnerName"),
    readField<&PartnerInfo::setShouldCreatePartnerConnection>(u"ShouldCreatePartnerConnection"),
    readField<&PartnerInfo::setIsAnonymizeRequired>(u"ShouldAnonymizeCaseData"),
    readField<&PartnerInfo::setCreatePartnerConnectionUrl>(u"CreatePartnerConnectionUrl"),
});

template <>
inline constexpr auto fieldsOf<PartnerAccountInfo> = fields<PartnerAccountInfo>({
    readField<&PartnerAccountInfo::setUserName>(u"UserName"),
    readField<&PartnerAccountInfo::setGivenName>(u"GivenName"),
    readField<&PartnerAccountInfo::setId>(u"PartnerConnectionId"),
    readField<&PartnerAccountInfo::setPartnerId>(u"PartnerId"),
    readField<&PartnerAccountInfo::setPartnerName>(u"PartnerName"),
    readField<&PartnerAccountInfo::setConnected>(u"IsConnected"),
    readField<&PartnerAccountInfo::setManagePartnerConnectionUrl>(u"ManagePartnerConnectionUrl"),
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
    readField<&PartnerCaseInfo::setId>(u"CaseId"),
    readField<&PartnerCaseInfo::setStatusString>(u"CaseStatus"),
    readField<&PartnerCaseInfo::setCreationTimeString>(u"CreatedAt"),
    readField<&PartnerCaseInfo::setPartnerId>(u"PartnerId"),
    readField<&PartnerCaseInfo::setPartnerName>(u"PartnerName"),
    readField<&PartnerCaseInfo::setConnectionId>(u"PartnerConnectionId"),
    readField<&PartnerCaseInfo::setConnectionUserName>(u"PartnerConnectionUserName"),
    readField<&PartnerCaseInfo::setCaseUpdatesAllowed>(u"AllowCaseUpdates"),
    readField<&PartnerCaseInfo::setPlatformCaseId>(u"PartnerPlatformCaseId"),
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

/// The "Name" of every object in an array.
inline QList<QString> namesIn(QJsonValueConstRef json)
{
    QList<QString> names;
    for (QJsonValueConstRef const element : json.toArray())
    {
        names.append(element[QLatin1String("Name")].toString());
    }
    return names;
}

template <>
inline constexpr auto fieldsOf<mirashare::MiraShareItemData> = fields<mirashare::MiraShareItemData>({
    readField<&mirashare::MiraShareItemData::setCaseName>(u"Name"),
    readField<&mirashare::MiraShareItemData::setStatus>(u"Status", texts<miraShareStates>),
    readField<&mirashare::MiraShareItemData::setCreatedBy>(u"CreatedBy"),
    readField<&mirashare::MiraShareItemData::setMiraLink>(u"CaseUrl"),
    readField<&mirashare::MiraShareItemData::setCreationDateString>(u"CreationTimestamp"),
    readField<&mirashare::MiraShareItemData::setCreatedByThisUser>(u"IsCreator"),
    readField<&mirashare::MiraShareItemData::setSharedWith>(u"SharedWithSites", readBy<&namesIn>),
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

/// The file's name without its directory.
inline QJsonValue fileName(QFileInfo const& file)
{
    return file.fileName();
}

template <>
inline constexpr auto fieldsOf<mirashare::Prescription> = fields<mirashare::Prescription>({
    field<&mirashare::Prescription::file>(u"Name", writtenBy<&fileName>),
    field<&mirashare::Prescription::acquisitionTimestamp>(u"AcquisitionTimestamp", nullWhenNull),
    field<&mirashare::Prescription::type>(u"Type"),
});

/// The gender's word with only its first letter in upper case; empty when it is not set.
inline QJsonValue capitalizedGender(PatientGender::Gender const& gender)
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
    field<&mirashare::CreateCaseRequest::patientGender>(u"PatientGender", writtenBy<&capitalizedGender>),
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

} // namespace jsonSerializer::implementation
