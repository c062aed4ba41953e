#include <KeloCommunicationLib/account/internal/AccountFields.h>
#include <KeloCommunicationLib/json/internal/Converters.h>

KELO_READABLE(AccountLicenseInfo);
KELO_READABLE(SettingsLicenseInfo);

KELO_READABLE(FileIdReference);
KELO_READABLE(FileLicenseInfo);
KELO_READABLE(HelpFileInfo);
KELO_READABLE(SoftwareUpdateInfo);

KELO_READABLE(TessalyUser);
KELO_READABLE(ClinicalPartner);
KELO_READABLE(StudyInfo);
KELO_READABLE(StudyInfoList);

KELO_WRITABLE(VantorStats);

KELO_READABLE(operations::AuthenticationKeys);
KELO_READABLE(operations::SoftwarePage);
