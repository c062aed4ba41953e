#include "cli/Operations.h"

#include "cli/OperationCall.h"

namespace cli
{

namespace
{

using I = TessalyConnectionInterface;

// A table of one row an operation, not a function to be read from top to bottom.
// clang-format off
std::vector<Operation> makeOperations() // NOLINT(readability-function-size)
{
    return {
        operation("getUsersForLicense", {"INSTALLATION"}, &I::getUsersForLicense),
        operation("getStudiesForLicense", {"INSTALLATION"}, &I::getStudiesForLicense),
        operation("getSettingsLicenseInfo", {"INSTALLATION"}, &I::getSettingsLicenseInfo),
        operation("getAccountLicenseInfo", {"INSTALLATION"}, &I::getAccountLicenseInfo),
        operation("getAboutFileReference", {"INSTALLATION"}, &I::getAboutFileReference),
        operation("getIfuFileReference", {"INSTALLATION"}, &I::getIfuFileReference),
        operation("getUITranslationFileReference", {"INSTALLATION"}, &I::getUITranslationFileReference),
        operation("getAboutFileInfo", {"INSTALLATION"}, &I::getAboutFileInfo),
        operation("getIfuFileInfo", {"INSTALLATION"}, &I::getIfuFileInfo),
        operation("getUITranslationFileInfo", {"INSTALLATION"}, &I::getUITranslationFileInfo),
        operation("getHelpFileInfo", {"INSTALLATION", "LANGUAGE_CODE"}, &I::getHelpFileInfo),
        operation("getHelpFilesInfo", {"INSTALLATION"}, &I::getHelpFilesInfo),
        operation("getSoftwareUpdateInfo", {"INSTALLATION"}, &I::getSoftwareUpdateInfo),
        operation("getConnectionsForLicense", {"INSTALLATION"}, &I::getConnectionsForLicense),
        operation("startConnection", {"REQUEST"}, &I::startConnection),
        operation("updateConnectionStatus", {"REQUEST"}, &I::updateConnectionStatus),
        operation("getCatalogUpdateInfo", {"INSTALLATION", "VERSION"}, &I::getCatalogUpdateInfo),
        operation("getCatalogUpdateState", {"INSTALLATION", "VERSION"}, &I::getCatalogUpdateState),
        operation("getAvailableArticles", {"INSTALLATION"}, &I::getAvailableArticles),
        operation("createCollaborationSession", {"INSTALLATION"}, static_cast<I::Reply<CollaborationSessionId> (I::*)(QString const&)>(&I::createCollaborationSession)),
        operation("createCollaborationSession:connection", {"INFO"}, static_cast<I::Reply<CollaborationSessionId> (I::*)(CreateCollaborationSessionInfo const&)>(&I::createCollaborationSession)),
        operation("createRestorationCollaboration", {"REQUEST"}, &I::createRestorationCollaboration),
        operation("updateCollaborationRequestStatus", {"REQUEST"}, &I::updateCollaborationRequestStatus),
        operation("getRestorationURL", {"INFO", "REQUEST_ID"}, &I::getRestorationURL),
        operation("createCollaborationSessionWithoutConnectionId", {"INFO"}, &I::createCollaborationSessionWithoutConnectionId),
        operation("createSurgeryPlanRequest", {"REQUEST"}, &I::createSurgeryPlanRequest),
        operation("updateSurgeryPlanRequest", {"REQUEST"}, &I::updateSurgeryPlanRequest),
        operation("createReferralRequest", {"REQUEST"}, &I::createReferralRequest),
        operation("getRequestId:order", {"INSTALLATION", "ORDER_NUMBER"}, static_cast<I::Reply<collaboration::RequestIdResponse> (I::*)(QString const&, collaboration::SalesOrderNumberRequest const&) const>(&I::getRequestId)),
        operation("getRequestId:key", {"INSTALLATION", "KEY"}, static_cast<I::Reply<collaboration::RequestIdResponse> (I::*)(QString const&, collaboration::RequestKeyRequest const&) const>(&I::getRequestId)),
        operation("getUnlockedStateForRequest", {"INSTALLATION", "REQUEST_ID"}, &I::getUnlockedStateForRequest),
        operation("unlockTemplateRequest", {"INSTALLATION", "REQUEST_ID"}, &I::unlockTemplateRequest),
        operation("updateRequest", {"REQUEST"}, &I::updateRequest),
        operation("createRequest", {"REQUEST"}, &I::createRequest),
        operation("createIPSOrder", {"INFO"}, &I::createIPSOrder),
        operation("getRequests:filter", {"INSTALLATION", "INFO"}, static_cast<I::Reply<std::vector<collaboration::RequestInfo>> (I::*)(QString const&, GetRequestsInfo) const>(&I::getRequests)),
        operation("getRequests:active", {"INSTALLATION", "ONLY_ACTIVE"}, static_cast<I::Reply<std::vector<collaboration::RequestInfo>> (I::*)(QString const&, bool) const>(&I::getRequests)),
        operation("getCollaborationSessionRequestDetails", {"INSTALLATION", "INFO"}, &I::getCollaborationSessionRequestDetails),
        operation("getDentalScanRequestDetails", {"INSTALLATION", "INFO"}, &I::getDentalScanRequestDetails),
        operation("getLabDesignRequestDetails", {"INSTALLATION", "INFO"}, &I::getLabDesignRequestDetails),
        operation("getTempShellRequestDetails", {"INSTALLATION", "INFO"}, &I::getTempShellRequestDetails),
        operation("getRestorationRequestDetails", {"INSTALLATION", "INFO"}, &I::getRestorationRequestDetails),
        operation("getCentralizedRestorationRequestDetails", {"INSTALLATION", "INFO"}, &I::getCentralizedRestorationRequestDetails),
        operation("getTemplateRequestDetails", {"INSTALLATION", "INFO"}, &I::getTemplateRequestDetails),
        operation("getSurgeryPlanRequestDetails", {"INSTALLATION", "INFO"}, &I::getSurgeryPlanRequestDetails),
        operation("getReferralRequestDetails", {"INSTALLATION", "INFO"}, &I::getReferralRequestDetails),
        operation("getTempShellFile", {"FILE_ID"}, &I::getTempShellFile),
        operation("getMiraShareCases", {"PATIENT_ID", "INSTALLATION"}, &I::getMiraShareCases),
        operation("getPartners", {"INSTALLATION", "WITH_LOGOS"}, &I::getPartners),
        operation("getPartnerLogo", {"INSTALLATION", "PARTNER_ID"}, &I::getPartnerLogo),
        operation("getPartnerAccounts", {"INSTALLATION"}, &I::getPartnerAccounts),
        operation("testAccountConnection", {"INSTALLATION", "PARTNER_CONNECTION_ID"}, &I::testAccountConnection),
        operation("getPartnerCases", {"INSTALLATION", "PATIENT_ID"}, &I::getPartnerCases),
        operation("updatePartnerCasesStatus", {"INSTALLATION", "CASES"}, &I::updatePartnerCasesStatus),
        operation("markCollaborationFileAsSeen", {"FILE_ID", "INFO"}, &I::markCollaborationFileAsSeen),
        operation("getShippingAddresses", {"INSTALLATION"}, &I::getShippingAddresses),
        operation("createOrder", {"ORDER"}, &I::createOrder),
        operation("createServiceOrder", {"ORDER"}, &I::createServiceOrder),
        operation("uploadOrderFile", {"FILE_REFERENCE", "CONTENT"}, &I::uploadOrderFile),
        operation("getPriceInfo", {"REQUEST"}, &I::getPriceInfo),
        operation("getOrderStatus", {"REQUEST"}, &I::getOrderStatus),
        operation("getTempShellCalculationData", {"ORDER_REFERENCE"}, &I::getTempShellCalculationData),
        operation("putFinishCadOrder", {"ORDER_REFERENCE"}, &I::putFinishCadOrder),
        operation("postFinishCadOrder", {"ORDER_REFERENCE"}, &I::postFinishCadOrder),
        operation("getThirdPartyAuthenticationKeys", {"INSTALLATION"}, &I::getThirdPartyAuthenticationKeys),
        operation("createCaseRequest", {"REQUEST"}, &I::createCaseRequest),
        operation("sharePartnerCaseRequest", {"REQUEST"}, &I::sharePartnerCaseRequest),
        operation("addNewDataRequest", {"REQUEST"}, &I::addNewDataRequest),
        operation("getSoftwarePageUrl", {}, &I::getSoftwarePageUrl),
    };
}
// clang-format on

} // namespace

std::vector<Operation> const& operations()
{
    static std::vector<Operation> const all = makeOperations();
    return all;
}

} // namespace cli
