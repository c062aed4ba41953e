#pragma once

#include <KeloCommunicationLib/account/AccountRecords.h>
#include <KeloCommunicationLib/account/DocumentRecords.h>
#include <KeloCommunicationLib/account/UserRecords.h>
#include <KeloCommunicationLib/account/VantorStats.h>
#include <KeloCommunicationLib/connection/OperationRecords.h>
#include <KeloCommunicationLib/json/internal/Fields.h>

/// The keys of the account, document, user and statistics records.
namespace jsonSerializer::implementation
{

// Account and settings

inline constexpr auto accountRows = fields<AccountLicenseInfo>({
    field<&AccountLicenseInfo::getAccountId, &AccountLicenseInfo::setAccountId>(u"AccountId"),
    field<&AccountLicenseInfo::getAccountName, &AccountLicenseInfo::setAccountName>(u"AccountName"),
});

inline constexpr auto siteRows = fields<AccountLicenseInfo>({
    field<&AccountLicenseInfo::getEmail, &AccountLicenseInfo::setEmail>(u"Email"),
    field<&AccountLicenseInfo::getToken, &AccountLicenseInfo::setToken>(u"Token"),
    field<&AccountLicenseInfo::getSiteId, &AccountLicenseInfo::setSiteId>(u"Id"),
    field<&AccountLicenseInfo::getZelkoCoreUrlApi, &AccountLicenseInfo::setZelkoCoreUrlApi>(u"ZelkoCoreUrlApi"),
    field<&AccountLicenseInfo::getZelkoCoreUrlScanCenter, &AccountLicenseInfo::setZelkoCoreUrlScanCenter>(
        u"ZelkoCoreUrlScanCenter"),
    field<&AccountLicenseInfo::isTwoFactorEnabled, &AccountLicenseInfo::setTwoFactorEnabled>(u"TwoFactorEnabled"),
    field<&AccountLicenseInfo::getTwoFactorRefreshTime, &AccountLicenseInfo::setTwoFactorRefreshTime>(
        u"TwoFactorRefreshTime"),
});

template <>
inline constexpr auto fieldsOf<AccountLicenseInfo> = fields<AccountLicenseInfo>({
    within<AccountLicenseInfo, accountRows>(u"Account"),
    within<AccountLicenseInfo, siteRows>(u"Site"),
});

// Some keys are named after the page they open, not after the member they fill.
template <>
inline constexpr auto fieldsOf<SettingsLicenseInfo> = fields<SettingsLicenseInfo>({
    field<&SettingsLicenseInfo::getVantorStatsUrl, &SettingsLicenseInfo::setVantorStatsUrl>(u"StatsUploadUrl"),
    field<&SettingsLicenseInfo::getContactUrl, &SettingsLicenseInfo::setContactUrl>(u"ContactUrl"),
    field<&SettingsLicenseInfo::getHelpUrl, &SettingsLicenseInfo::setHelpUrl>(u"HelpUrl"),
    field<&SettingsLicenseInfo::getIfuUrl, &SettingsLicenseInfo::setIfuUrl>(u"IFUUrl"),
    field<&SettingsLicenseInfo::getZelkoMiraUrl, &SettingsLicenseInfo::setZelkoMiraUrl>(u"ZelkoMiraUrl"),
    field<&SettingsLicenseInfo::getZelkoMiraSharedCasesPageUrl, &SettingsLicenseInfo::setZelkoMiraSharedCasesPageUrl>(
        u"SharedCasesUrl"),
    field<&SettingsLicenseInfo::getZelkoMiraSoftwarePageUrl, &SettingsLicenseInfo::setZelkoMiraSoftwarePageUrl>(
        u"SoftwarePageUrl"),
    field<&SettingsLicenseInfo::getZelkoMiraPasswordPageUrl, &SettingsLicenseInfo::setZelkoMiraPasswordPageUrl>(
        u"ForgotPasswordPageUrl"),
    field<&SettingsLicenseInfo::getZelkoMiraConnectionPageUrl, &SettingsLicenseInfo::setZelkoMiraConnectionPageUrl>(
        u"FindAccountPageUrl"),
    field<
        &SettingsLicenseInfo::getZelkoMiraAdditionalResourcesUrl,
        &SettingsLicenseInfo::setZelkoMiraAdditionalResourcesUrl>(u"AdditionalResourcesUrl"),
    field<
        &SettingsLicenseInfo::getZelkoMiraDownloadImplantFilesPageUrl,
        &SettingsLicenseInfo::setZelkoMiraDownloadImplantFilesPageUrl>(u"DownloadImplantFilesUrl"),
    field<&SettingsLicenseInfo::getTrainingVideosUrl, &SettingsLicenseInfo::setTrainingVideosUrl>(u"TrainingVideosUrl"),
    field<
        &SettingsLicenseInfo::getZelkoMiraSubscriptionsPageUrl, &SettingsLicenseInfo::setZelkoMiraSubscriptionsPageUrl>(
        u"SubscriptionsUrl"),
    field<&SettingsLicenseInfo::getPartnerUrl, &SettingsLicenseInfo::setPartnerUrl>(u"RedirectToPartnerUrl"),
});

// Documents and software

template <>
inline constexpr auto fieldsOf<FileIdReference> = fields<FileIdReference>({
    field<&FileIdReference::getFileId, &FileIdReference::setFileId>(u"FileId"),
});

template <>
inline constexpr auto fieldsOf<FileLicenseInfo> = fields<FileLicenseInfo>({
    field<&FileLicenseInfo::getFileReference, &FileLicenseInfo::setFileReference>(u"FileId"),
    field<&FileLicenseInfo::getFileName, &FileLicenseInfo::setFileName>(u"FileName"),
    field<&FileLicenseInfo::getFileSize, &FileLicenseInfo::setFileSize>(u"FileSize"),
});

template <>
inline constexpr auto fieldsOf<HelpFileInfo> = fields<HelpFileInfo>({
    field<&HelpFileInfo::getLanguageCode, &HelpFileInfo::setLanguageCode>(u"LanguageCode"),
    field<&HelpFileInfo::getDisplayName, &HelpFileInfo::setDisplayName>(u"DisplayName"),
    field<&HelpFileInfo::getFileRef, &HelpFileInfo::setFileRef>(u"Id"),
});

template <>
inline constexpr auto fieldsOf<SoftwareUpdateInfo> = fields<SoftwareUpdateInfo>({
    field<&SoftwareUpdateInfo::getUpdateVersion, &SoftwareUpdateInfo::setUpdateVersion>(u"Version"),
    field<&SoftwareUpdateInfo::hasMandatoryUpdate, &SoftwareUpdateInfo::setMandatoryUpdate>(u"ForcedUpdate"),
    field<&SoftwareUpdateInfo::getReleaseImageUrl, &SoftwareUpdateInfo::setReleaseImageUrl>(u"ReleaseImageUrl"),
    field<&SoftwareUpdateInfo::getInformationUrl, &SoftwareUpdateInfo::setInformationUrl>(u"InformationUrl"),
    field<&SoftwareUpdateInfo::getDownloadUrl, &SoftwareUpdateInfo::setDownloadUrl>(u"DirectDownloadUrl"),
});

// Users and studies

template <>
inline constexpr auto fieldsOf<TessalyUser> = fields<TessalyUser>({
    field<&TessalyUser::getReference, &TessalyUser::setReference>(u"Reference"),
    field<&TessalyUser::getFirstName, &TessalyUser::setFirstName>(u"FirstName"),
    field<&TessalyUser::getLastName, &TessalyUser::setLastName>(u"LastName"),
    field<&TessalyUser::getUserName, &TessalyUser::setUserName>(u"UserName"),
    field<&TessalyUser::getPasswordHash, &TessalyUser::setPasswordHash>(u"PasswordHash"),
    field<&TessalyUser::getEmail, &TessalyUser::setEmail>(u"Email"),
    field<&TessalyUser::getEncryptedTwoFactorKey, &TessalyUser::setEncryptedTwoFactorKey>(u"TwoFactorKey"),
});

template <>
inline constexpr auto fieldsOf<ClinicalPartner> = fields<ClinicalPartner>({
    field<&ClinicalPartner::getId, &ClinicalPartner::setId>(u"StudyParticipantId"),
    field<&ClinicalPartner::getName, &ClinicalPartner::setName>(u"Name"),
});

template <>
inline constexpr auto fieldsOf<StudyInfo> = fields<StudyInfo>({
    field<&StudyInfo::getId, &StudyInfo::setId>(u"Id"),
    field<&StudyInfo::getName, &StudyInfo::setName>(u"Name"),
    field<&StudyInfo::getClinicalPartners, &StudyInfo::setClinicalPartners>(u"ClinicalPartners"),
});

template <>
inline constexpr auto fieldsOf<StudyInfoList> = fields<StudyInfoList>({
    field<&StudyInfoList::getStudyInfos, &StudyInfoList::setStudyInfos>(u"StudyInfos"),
});

// Usage statistics

template <>
inline constexpr auto fieldsOf<VantorStats> = fields<VantorStats>({
    field<&VantorStats::getVantorStatsId>(u"SelectedType"),
    field<&VantorStats::getData>(u"Data", base64),
});

// Replies that the operations take apart

template <>
inline constexpr auto fieldsOf<operations::AuthenticationKeys> = fields<operations::AuthenticationKeys>({
    field<&operations::AuthenticationKeys::keys>(u"Keys"),
});

template <>
inline constexpr auto fieldsOf<operations::SoftwarePage> = fields<operations::SoftwarePage>({
    field<&operations::SoftwarePage::softwarePageUrl>(u"SoftwarePageUrl"),
});

} // namespace jsonSerializer::implementation
