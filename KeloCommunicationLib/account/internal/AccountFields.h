#pragma once

#include <QByteArray>
#include <QJsonValue>
#include <QString>

#include <KeloCommunicationLib/account/AccountRecords.h>
#include <KeloCommunicationLib/account/DocumentRecords.h>
#include <KeloCommunicationLib/account/UserRecords.h>
#include <KeloCommunicationLib/account/VantorStats.h>
#include <KeloCommunicationLib/json/internal/Fields.h>

/// The keys of the account, document, user and statistics records.
namespace jsonSerializer::implementation
{

// Account and settings

inline constexpr auto accountRows = fields<AccountLicenseInfo>({
    readField<&AccountLicenseInfo::setAccountId>(u"AccountId"),
    readField<&AccountLicenseInfo::setAccountName>(u"AccountName"),
});

inline constexpr auto siteRows = fields<AccountLicenseInfo>({
    readField<&AccountLicenseInfo::setEmail>(u"Email"),
    readField<&AccountLicenseInfo::setToken>(u"Token"),
    readField<&AccountLicenseInfo::setSiteId>(u"Id"),
    readField<&AccountLicenseInfo::setZelkoCoreUrlApi>(u"ZelkoCoreUrlApi"),
    readField<&AccountLicenseInfo::setZelkoCoreUrlScanCenter>(u"ZelkoCoreUrlScanCenter"),
    readField<&AccountLicenseInfo::setTwoFactorEnabled>(u"TwoFactorEnabled"),
    readField<&AccountLicenseInfo::setTwoFactorRefreshTime>(u"TwoFactorRefreshTime"),
});

template <>
inline constexpr auto fieldsOf<AccountLicenseInfo> = fields<AccountLicenseInfo>({
    within<AccountLicenseInfo, accountRows>(u"Account"),
    within<AccountLicenseInfo, siteRows>(u"Site"),
});

// Some keys are named after the page they open, not after the member they fill.
template <>
inline constexpr auto fieldsOf<SettingsLicenseInfo> = fields<SettingsLicenseInfo>({
    readField<&SettingsLicenseInfo::setVantorStatsUrl>(u"StatsUploadUrl"),
    readField<&SettingsLicenseInfo::setContactUrl>(u"ContactUrl"),
    readField<&SettingsLicenseInfo::setHelpUrl>(u"HelpUrl"),
    readField<&SettingsLicenseInfo::setIfuUrl>(u"IFUUrl"),
    readField<&SettingsLicenseInfo::setZelkoMiraUrl>(u"ZelkoMiraUrl"),
    readField<&SettingsLicenseInfo::setZelkoMiraSharedCasesPageUrl>(u"SharedCasesUrl"),
    readField<&SettingsLicenseInfo::setZelkoMiraSoftwarePageUrl>(u"SoftwarePageUrl"),
    readField<&SettingsLicenseInfo::setZelkoMiraPasswordPageUrl>(u"ForgotPasswordPageUrl"),
    readField<&SettingsLicenseInfo::setZelkoMiraConnectionPageUrl>(u"FindAccountPageUrl"),
    readField<&SettingsLicenseInfo::setZelkoMiraAdditionalResourcesUrl>(u"AdditionalResourcesUrl"),
    readField<&SettingsLicenseInfo::setZelkoMiraDownloadImplantFilesPageUrl>(u"DownloadImplantFilesUrl"),
    readField<&SettingsLicenseInfo::setTrainingVideosUrl>(u"TrainingVideosUrl"),
    readField<&SettingsLicenseInfo::setZelkoMiraSubscriptionsPageUrl>(u"SubscriptionsUrl"),
    readField<&SettingsLicenseInfo::setPartnerUrl>(u"RedirectToPartnerUrl"),
});

// Documents and software

template <>
inline constexpr auto fieldsOf<FileIdReference> = fields<FileIdReference>({
    readField<&FileIdReference::setFileId>(u"FileId"),
});

template <>
inline constexpr auto fieldsOf<FileLicenseInfo> = fields<FileLicenseInfo>({
    readField<&FileLicenseInfo::setFileReference>(u"FileId"),
    readField<&FileLicenseInfo::setFileName>(u"FileName"),
    readField<&FileLicenseInfo::setFileSize>(u"FileSize"),
});

template <>
inline constexpr auto fieldsOf<HelpFileInfo> = fields<HelpFileInfo>({
    readField<&HelpFileInfo::setLanguageCode>(u"LanguageCode"),
    readField<&HelpFileInfo::setDisplayName>(u"DisplayName"),
    readField<&HelpFileInfo::setFileRef>(u"Id"),
});

template <>
inline constexpr auto fieldsOf<SoftwareUpdateInfo> = fields<SoftwareUpdateInfo>({
    readField<&SoftwareUpdateInfo::setUpdateVersion>(u"Version"),
    readField<&SoftwareUpdateInfo::setMandatoryUpdate>(u"ForcedUpdate"),
    readField<&SoftwareUpdateInfo::setReleaseImageUrl>(u"ReleaseImageUrl"),
    readField<&SoftwareUpdateInfo::setInformationUrl>(u"InformationUrl"),
    readField<&SoftwareUpdateInfo::setDownloadUrl>(u"DirectDownloadUrl"),
});

// Users and studies

template <>
inline constexpr auto fieldsOf<TessalyUser> = fields<TessalyUser>({
    readField<&TessalyUser::setReference>(u"Reference"),
    readField<&TessalyUser::setFirstName>(u"FirstName"),
    readField<&TessalyUser::setLastName>(u"LastName"),
    readField<&TessalyUser::setUserName>(u"UserName"),
    readField<&TessalyUser::setPasswordHash>(u"PasswordHash"),
    readField<&TessalyUser::setEmail>(u"Email"),
    readField<&TessalyUser::setEncryptedTwoFactorKey>(u"TwoFactorKey"),
});

template <>
inline constexpr auto fieldsOf<ClinicalPartner> = fields<ClinicalPartner>({
    readField<&ClinicalPartner::setId>(u"StudyParticipantId"),
    readField<&ClinicalPartner::setName>(u"Name"),
});

template <>
inline constexpr auto fieldsOf<StudyInfo> = fields<StudyInfo>({
    readField<&StudyInfo::setId>(u"Id"),
    readField<&StudyInfo::setName>(u"Name"),
    readField<&StudyInfo::setClinicalPartners>(u"ClinicalPartners"),
});

template <>
inline constexpr auto fieldsOf<StudyInfoList> = fields<StudyInfoList>({
    readField<&StudyInfoList::setStudyInfos>(u"StudyInfos"),
});

// Usage statistics

inline QJsonValue base64Text(QByteArray const& bytes)
{
    return QString::fromLatin1(bytes.toBase64());
}

template <>
inline constexpr auto fieldsOf<VantorStats> = fields<VantorStats>({
    field<&VantorStats::getVantorStatsId>(u"SelectedType"),
    field<&VantorStats::getData>(u"Data", writtenBy<&base64Text>),
});

} // namespace jsonSerializer::implementation
