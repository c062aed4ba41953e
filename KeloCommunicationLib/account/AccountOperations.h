#pragma once

#include <vector>

#include <KeloCommunicationLib/account/AccountRecords.h>
#include <KeloCommunicationLib/account/DocumentRecords.h>
#include <KeloCommunicationLib/account/UserRecords.h>
#include <KeloCommunicationLib/connection/Operation.h>
#include <KeloCommunicationLib/connection/OperationRecords.h>

/// Account, documents, software, users and studies. What each does and gives is told at the interface's member of its
/// name.
namespace operations
{

using rest::HttpMethod;

// clang-format off
inline constexpr Operation<void, std::vector<TessalyUser>> getUsersForLicense{{"getUsersForLicense", HttpMethod::Get, "/Installations/%1/users", {"installationId"}}};
inline constexpr Operation<void, StudyInfoList> getStudiesForLicense{{"getStudiesForLicense", HttpMethod::Get, "/Installations/%1/Studies", {"installationId"}}};
inline constexpr Operation<void, SettingsLicenseInfo> getSettingsLicenseInfo{{"getSettingsLicenseInfo", HttpMethod::Get, "/Installations/%1/settings?api-version=1.0", {"installationId"}}};
inline constexpr Operation<void, AccountLicenseInfo> getAccountLicenseInfo{{"getAccountLicenseInfo", HttpMethod::Get, "/Installations/%1/accountInfo?api-version=1.0", {"installationId"}}};
inline constexpr Operation<void, FileIdReference> getAboutFileReference{{"getAboutFileReference", HttpMethod::Get, "/Installations/%1/about/status", {"installationId"}}};
inline constexpr Operation<void, FileIdReference> getIfuFileReference{{"getIfuFileReference", HttpMethod::Get, "/Installations/%1/ifu/status", {"installationId"}}};
inline constexpr Operation<void, FileIdReference> getUITranslationFileReference{{"getUITranslationFileReference", HttpMethod::Get, "/Installations/%1/uitranslation/status", {"installationId"}}};
inline constexpr Operation<void, FileLicenseInfo> getAboutFileInfo{{"getAboutFileInfo", HttpMethod::Get, "/Installations/%1/about", {"installationId"}}};
inline constexpr Operation<void, FileLicenseInfo> getIfuFileInfo{{"getIfuFileInfo", HttpMethod::Get, "/Installations/%1/ifu", {"installationId"}}};
inline constexpr Operation<void, FileLicenseInfo> getUITranslationFileInfo{{"getUITranslationFileInfo", HttpMethod::Get, "/Installations/%1/uitranslation", {"installationId"}}};
inline constexpr Operation<void, FileLicenseInfo> getHelpFileInfo{{"getHelpFileInfo", HttpMethod::Get, "/Installations/%1/help/", {"installationId"}, "languageCode"}};
inline constexpr Operation<void, std::vector<HelpFileInfo>> getHelpFilesInfo{{"getHelpFilesInfo", HttpMethod::Get, "/Installations/%1/help/status", {"installationId"}}};
inline constexpr Operation<void, SoftwareUpdateInfo> getSoftwareUpdateInfo{{"getSoftwareUpdateInfo", HttpMethod::Get, "/Installations/%1/softwareupdate?api-version=1.0", {"installationId"}}};
inline constexpr Operation<void, SoftwarePage> getSoftwarePageUrl{{"getSoftwarePageUrl", HttpMethod::Get, "Settings"}};
inline constexpr Operation<void, AuthenticationKeys> getThirdPartyAuthenticationKeys{{"getThirdPartyAuthenticationKeys", HttpMethod::Get, "Installations/%1/3rdpartyauthenticationkeys", {"installationId"}}};
// clang-format on

} // namespace operations
