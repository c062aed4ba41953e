#pragma once

#include <chrono>
#include <memory>
#include <utility>
#include <vector>

#include <QByteArray>
#include <QJsonDocument>
#include <QJsonValue>
#include <QString>
#include <QUrl>
#include <QVersionNumber>

#include <KeloCommunicationLib/Export.h>
#include <KeloCommunicationLib/connection/TessalyConnectionBase.h>
#include <KeloCommunicationLib/connection/TessalyConnectionInterface.h>

/// The client of the KELO service. May be used from any thread; destroying it ends its pending calls as cancelled.
class KELO_EXPORT TessalyConnection : public TessalyConnectionBase, public TessalyConnectionInterface
{
    Q_OBJECT

public:
    /// A connection to the service at `baseUrl`; proxy auto-discovery is the host's choice. Nothing is sent until the
    /// first operation.
    static std::unique_ptr<TessalyConnection> makeConnection(
        QUrl const& baseUrl, QString const& username, QString const& password);
    /// A connection to the host's service with the host's credentials.
    static std::unique_ptr<TessalyConnection> makeDefaultConnection();

    ~TessalyConnection() override;

    Reply<std::vector<TessalyUser>> getUsersForLicense(QString const& installationId) override;
    Reply<StudyInfoList> getStudiesForLicense(QString const& installationId) override;
    Reply<SettingsLicenseInfo> getSettingsLicenseInfo(QString const& installationId) override;
    Reply<AccountLicenseInfo> getAccountLicenseInfo(QString const& installationId) override;
    Reply<FileIdReference> getAboutFileReference(QString const& installationId) override;
    Reply<FileIdReference> getIfuFileReference(QString const& installationId) override;
    Reply<FileIdReference> getUITranslationFileReference(QString const& installationId) override;
    Reply<FileLicenseInfo> getAboutFileInfo(QString const& installationId) override;
    Reply<FileLicenseInfo> getIfuFileInfo(QString const& installationId) override;
    Reply<FileLicenseInfo> getUITranslationFileInfo(QString const& installationId) override;
    Reply<FileLicenseInfo> getHelpFileInfo(QString const& installationId, QString const& languageCode) override;
    Reply<std::vector<HelpFileInfo>> getHelpFilesInfo(QString const& installationId) override;
    Reply<SoftwareUpdateInfo> getSoftwareUpdateInfo(QString const& installationId) override;
    Reply<std::vector<ConnectionInfo>> getConnectionsForLicense(QString const& installationId) override;
    Reply<StartConnectionResponse> startConnection(StartConnectionRequest const& request) const override;
    Reply<void> updateConnectionStatus(UpdateConnectionStatusRequest const& request) const override;
    Reply<CatalogUpdateInfo> getCatalogUpdateInfo(
        QString const& installationId, QVersionNumber const& version) override;
    KeloCommunicationLib::CatalogUpdateState getCatalogUpdateState(
        QString const& installationId, QVersionNumber const& version) override;
    Reply<AvailableArticlesList> getAvailableArticles(QString const& installationId) override;
    Reply<CollaborationSessionId> createCollaborationSession(QString const& installationId) override;
    Reply<CollaborationSessionId> createCollaborationSession(CreateCollaborationSessionInfo const& info) override;
    Reply<CreateRestorationResponseInfo> createRestorationCollaboration(
        CreateRestorationRequestInfo const& request) override;
    Reply<void> updateCollaborationRequestStatus(UpdateCollaborationRequestStatusInfo const& request) override;
    threading::Future<std::pair<QString, KeloErrorCode>> getRestorationURL(
        RequestRestorationDetailsInfo const& info, QString const& requestId) override;
    Reply<CollaborationSessionId> createCollaborationSessionWithoutConnectionId(
        CreateCollaborationSessionWithoutConnectionIdInfo const& info) const override;
    Reply<collaboration::UploadFilesRequest> createSurgeryPlanRequest(
        collaboration::CreateRequestRequest const& request) const override;
    Reply<collaboration::UpdateSurgeryRequestResponse> updateSurgeryPlanRequest(
        collaboration::UpdateSurgeryRequestRequest const& request) override;
    Reply<collaboration::UploadFilesRequest> createReferralRequest(
        collaboration::CreateRequestRequest const& request) const override;
    Reply<collaboration::RequestIdResponse> getRequestId(
        QString const& installationId, collaboration::SalesOrderNumberRequest const& search) const override;
    Reply<collaboration::RequestIdResponse> getRequestId(
        QString const& installationId, collaboration::RequestKeyRequest const& search) const override;
    Reply<RequestLockState> getUnlockedStateForRequest(
        QString const& installationId, QString const& requestId) override;
    Reply<void> unlockTemplateRequest(QString const& installationId, QString const& requestId) override;
    Reply<std::vector<collaboration::CreatedFileInfo>> updateRequest(
        collaboration::UpdateRequestRequest const& request) const override;
    Reply<CreateRestorationResponseInfo> createRequest(
        collaboration::CreateRequestRequest const& request) const override;
    Reply<void> createIPSOrder(CreateIPSOrderInfo const& info) override;
    Reply<std::vector<collaboration::RequestInfo>> getRequests(
        QString const& installationId, GetRequestsInfo info) const override;
    Reply<std::vector<collaboration::RequestInfo>> getRequests(
        QString const& installationId, bool onlyActive) const override;
    Reply<std::vector<collaboration::SessionDetails>> getCollaborationSessionRequestDetails(
        QString const& installationId, GetRequestDetailsInfo info) const override;
    Reply<std::vector<collaboration::SessionDetails>> getDentalScanRequestDetails(
        QString const& installationId, GetRequestDetailsInfo info) const override;
    Reply<std::vector<collaboration::SessionDetails>> getLabDesignRequestDetails(
        QString const& installationId, GetRequestDetailsInfo info) const override;
    Reply<std::vector<collaboration::SessionDetails>> getTempShellRequestDetails(
        QString const& installationId, GetRequestDetailsInfo info) const override;
    Reply<std::vector<collaboration::RestorationRequestDetail>> getRestorationRequestDetails(
        QString const& installationId, GetRequestDetailsInfo info) const override;
    Reply<std::vector<collaboration::RestorationRequestDetail>> getCentralizedRestorationRequestDetails(
        QString const& installationId, GetRequestDetailsInfo info) const override;
    Reply<std::vector<collaboration::TemplateRequestDetail>> getTemplateRequestDetails(
        QString const& installationId, GetRequestDetailsInfo info) const override;
    Reply<std::vector<collaboration::UploadFilesRequestDetail>> getSurgeryPlanRequestDetails(
        QString const& installationId, GetRequestDetailsInfo info) const override;
    Reply<std::vector<collaboration::UploadFilesRequestDetail>> getReferralRequestDetails(
        QString const& installationId, GetRequestDetailsInfo info) const override;
    threading::Future<QByteArray> getTempShellFile(QString const& fileId) const override;
    Reply<std::vector<mirashare::MiraShareItemData>> getMiraShareCases(
        QString const& patientId, QString const& installationReference) const override;
    Reply<std::vector<PartnerInfo>> getPartners(QString const& installationId, bool withLogos) const override;
    threading::Future<QByteArray> getPartnerLogo(
        QString const& installationId, QString const& partnerId) const override;
    Reply<std::vector<PartnerAccountInfo>> getPartnerAccounts(QString const& installationId) const override;
    Reply<mirashare::TestAccountConnectionResponse> testAccountConnection(
        QString const& installationId, QString const& partnerConnectionId) const override;
    Reply<std::vector<PartnerCaseInfo>> getPartnerCases(
        QString const& installationId, QString const& patientId) const override;
    Reply<std::vector<mirashare::CaseStatusResponse>> updatePartnerCasesStatus(
        QString const& installationId, mirashare::Cases const& cases) const override;
    Reply<void> markCollaborationFileAsSeen(
        QString const& fileId, collaboration::MarkAsSeenInfo const& info) const override;
    Reply<OrderShippingAddressList> getShippingAddresses(QString const& installationId) const override;
    Reply<OrderRequestResponse> createOrder(OrderRequest const& order) const override;
    Reply<ServiceOrderRequestResponse> createServiceOrder(ServiceOrderRequest const& order) const override;
    Reply<void> uploadOrderFile(QString const& fileReference, QByteArray const& content) const override;
    Reply<std::vector<PriceInfoResponse>> getPriceInfo(ExtendedPriceInfoRequest const& request) const override;
    Reply<std::vector<OrderDetails>> getOrderStatus(OrderDetailsRequest const& request) const override;
    TempShellDataResponse getTempShellCalculationData(QString const& orderReference) const override;
    Reply<void> putFinishCadOrder(QString const& orderReference) const override;
    Reply<void> postFinishCadOrder(QString const& orderReference) const override;
    std::pair<KeloErrorCode, std::vector<QString>> getThirdPartyAuthenticationKeys(
        QString const& installationId) override;
    Reply<mirashare::CreateCaseResponse> createCaseRequest(mirashare::CreateCaseRequest const& request) const override;
    Reply<void> sharePartnerCaseRequest(mirashare::SharePartnerCaseRequest const& request) const override;
    Reply<std::vector<mirashare::CaseFileId>> addNewDataRequest(
        mirashare::AddDataRequest const& request) const override;
    QString getSoftwarePageUrl() const override;

private:
    TessalyConnection();

    std::shared_ptr<rest::NetworkReply<QJsonDocument>> postRequest(rest::HttpRequestData&& request) const;
    std::shared_ptr<rest::NetworkReply<QJsonDocument>> postRequest(
        QUrl const& url, QJsonValue const& body, std::chrono::milliseconds const& timeout) const;
    /// The bytes at the path; empty unless the answer is HTTP 200.
    threading::Future<QByteArray> download(QString const& path) const;
};
