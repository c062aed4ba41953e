#pragma once

#include <utility>
#include <vector>

#include <QByteArray>
#include <QString>
#include <QVersionNumber>

#include <KeloCommunicationLib/Export.h>
#include <KeloCommunicationLib/account/AccountRecords.h>
#include <KeloCommunicationLib/account/DocumentRecords.h>
#include <KeloCommunicationLib/account/UserRecords.h>
#include <KeloCommunicationLib/collaboration/CollaborationRecords.h>
#include <KeloCommunicationLib/collaboration/ConnectionRecords.h>
#include <KeloCommunicationLib/collaboration/QueryRecords.h>
#include <KeloCommunicationLib/connection/KeloErrorCode.h>
#include <KeloCommunicationLib/orders/CatalogRecords.h>
#include <KeloCommunicationLib/orders/OrderRecords.h>
#include <KeloCommunicationLib/orders/PriceRecords.h>
#include <KeloCommunicationLib/orders/TempShellRecords.h>
#include <KeloCommunicationLib/partners/MiraShareRecords.h>
#include <KeloCommunicationLib/partners/PartnerRecords.h>
#include <platform/rest/RestReply.h>
#include <platform/threading/Future.h>

/// The abstract face of the client: one operation for each call of the service. The application and the orchestrators
/// hold this, so that a real `TessalyConnection` or a double can stand behind it. `installationId` is the identifier of
/// the account's installation.
///
/// Operations that return a future return at once and never throw; outcome and value are in the reply. Those marked
/// "Blocks" wait for the answer. The order and the constness of the operations are fixed.
class KELO_EXPORT TessalyConnectionInterface
{
public:
    /// The typed reply of an operation, there or to come.
    template <class T>
    using Reply = threading::Future<rest::RestReply<T>>;

    virtual ~TessalyConnectionInterface();

    /// The user accounts registered for the installation. GET Installations/{id}/users.
    virtual Reply<std::vector<TessalyUser>> getUsersForLicense(QString const& installationId) = 0;
    /// The clinical studies that the installation takes part in. GET Installations/{id}/Studies.
    virtual Reply<StudyInfoList> getStudiesForLicense(QString const& installationId) = 0;
    /// The addresses that the service hands out to the installation. GET Installations/{id}/settings.
    virtual Reply<SettingsLicenseInfo> getSettingsLicenseInfo(QString const& installationId) = 0;
    /// Account, site and two-factor settings of the installation. GET Installations/{id}/accountInfo.
    virtual Reply<AccountLicenseInfo> getAccountLicenseInfo(QString const& installationId) = 0;
    /// The id of the current about document. GET Installations/{id}/about/status.
    virtual Reply<FileIdReference> getAboutFileReference(QString const& installationId) = 0;
    /// The id of the current instructions for use. GET Installations/{id}/ifu/status.
    virtual Reply<FileIdReference> getIfuFileReference(QString const& installationId) = 0;
    /// The id of the current user-interface translation. GET Installations/{id}/uitranslation/status.
    virtual Reply<FileIdReference> getUITranslationFileReference(QString const& installationId) = 0;
    /// Id, name and size of the about document. GET Installations/{id}/about.
    virtual Reply<FileLicenseInfo> getAboutFileInfo(QString const& installationId) = 0;
    /// Id, name and size of the instructions for use. GET Installations/{id}/ifu.
    virtual Reply<FileLicenseInfo> getIfuFileInfo(QString const& installationId) = 0;
    /// Id, name and size of the user-interface translation. GET Installations/{id}/uitranslation.
    virtual Reply<FileLicenseInfo> getUITranslationFileInfo(QString const& installationId) = 0;
    /// Id, name and size of the help file in one language. GET Installations/{id}/help/{language}.
    virtual Reply<FileLicenseInfo> getHelpFileInfo(QString const& installationId, QString const& languageCode) = 0;
    /// The help files in all languages. GET Installations/{id}/help/status.
    virtual Reply<std::vector<HelpFileInfo>> getHelpFilesInfo(QString const& installationId) = 0;
    /// The latest software release. GET Installations/{id}/softwareupdate.
    virtual Reply<SoftwareUpdateInfo> getSoftwareUpdateInfo(QString const& installationId) = 0;
    /// The installation's partner connections. GET Installations/{id}/connections.
    virtual Reply<std::vector<ConnectionInfo>> getConnectionsForLicense(QString const& installationId) = 0;
    /// Starts a connection with a partner. POST Installations/{id}/connections.
    virtual Reply<StartConnectionResponse> startConnection(StartConnectionRequest const& request) const = 0;
    /// Changes the status of a partner connection. POST Connections/{id}.
    virtual Reply<void> updateConnectionStatus(UpdateConnectionStatusRequest const& request) const = 0;
    /// The catalogue file on offer for the given catalogue version. GET Installations/{id}/catalog/{version}.
    virtual Reply<CatalogUpdateInfo> getCatalogUpdateInfo(
        QString const& installationId, QVersionNumber const& version) = 0;
    /// Whether a newer catalogue exists. Blocks; any network failure gives `NoUpdate`. GET
    /// Installations/{id}/catalog/{version}/status.
    virtual KeloCommunicationLib::CatalogUpdateState getCatalogUpdateState(
        QString const& installationId, QVersionNumber const& version) = 0;
    /// The articles that the account may order. GET Installations/{id}/articles.
    virtual Reply<AvailableArticlesList> getAvailableArticles(QString const& installationId) = 0;
    /// Opens a collaboration session of the installation. POST Installations/{id}/sessions.
    virtual Reply<CollaborationSessionId> createCollaborationSession(QString const& installationId) = 0;
    /// Opens a collaboration session over a partner connection. POST Connections/{id}/sessions.
    virtual Reply<CollaborationSessionId> createCollaborationSession(CreateCollaborationSessionInfo const& info) = 0;
    /// Creates a restoration request in a session. POST Sessions/{id}/request/restoration.
    virtual Reply<CreateRestorationResponseInfo> createRestorationCollaboration(
        CreateRestorationRequestInfo const& request) = 0;
    /// Changes the status of a request. POST Requests/{id}/status.
    virtual Reply<void> updateCollaborationRequestStatus(UpdateCollaborationRequestStatusInfo const& request) = 0;
    /// The address at which a restoration is viewed, empty when the request has none, with the outcome of the call;
    /// ("", `NoConnection`) when cancelled. POST Installations/{id}/requests/restoration/details.
    virtual threading::Future<std::pair<QString, KeloErrorCode>> getRestorationURL(
        RequestRestorationDetailsInfo const& info, QString const& requestId) = 0;
    /// Opens a collaboration session without a partner connection. POST installations/{id}/sessions.
    virtual Reply<CollaborationSessionId> createCollaborationSessionWithoutConnectionId(
        CreateCollaborationSessionWithoutConnectionIdInfo const& info) const = 0;
    /// Creates a surgery-plan request in a session. POST Sessions/{id}/request/surgeryplan.
    virtual Reply<collaboration::UploadFilesRequest> createSurgeryPlanRequest(
        collaboration::CreateRequestRequest const& request) const = 0;
    /// Changes a surgery-plan request; members that are not set stay as they are. POST Requests/surgeryplan/{id}.
    virtual Reply<collaboration::UpdateSurgeryRequestResponse> updateSurgeryPlanRequest(
        collaboration::UpdateSurgeryRequestRequest const& request) = 0;
    /// Creates a referral request in a session. POST Sessions/{id}/request/referral.
    virtual Reply<collaboration::UploadFilesRequest> createReferralRequest(
        collaboration::CreateRequestRequest const& request) const = 0;
    /// The id of the request that belongs to a sales order. GET Installations/{id}/requests.
    virtual Reply<collaboration::RequestIdResponse> getRequestId(
        QString const& installationId, collaboration::SalesOrderNumberRequest const& search) const = 0;
    /// The id of the request with a human-readable key. GET Installations/{id}/requests.
    virtual Reply<collaboration::RequestIdResponse> getRequestId(
        QString const& installationId, collaboration::RequestKeyRequest const& search) const = 0;
    /// Whether the file of a template request is unlocked. POST Requests/{id}/unlocked-status.
    virtual Reply<RequestLockState> getUnlockedStateForRequest(
        QString const& installationId, QString const& requestId) = 0;
    /// Clears the file lock of a template request. PUT Requests/{id}/unlock-file.
    virtual Reply<void> unlockTemplateRequest(QString const& installationId, QString const& requestId) = 0;
    /// Changes a request and returns the slots of its new files. POST Requests/{id}/request.
    virtual Reply<std::vector<collaboration::CreatedFileInfo>> updateRequest(
        collaboration::UpdateRequestRequest const& request) const = 0;
    /// Creates a request in a session. POST Sessions/{id}/request.
    virtual Reply<CreateRestorationResponseInfo> createRequest(
        collaboration::CreateRequestRequest const& request) const = 0;
    /// Places a case-designer order; its time-out is 7 seconds. POST Orders/ipscasedesigner.
    virtual Reply<void> createIPSOrder(CreateIPSOrderInfo const& info) = 0;
    /// The requests of the installation that match the filter. POST Installations/{id}/requests.
    virtual Reply<std::vector<collaboration::RequestInfo>> getRequests(
        QString const& installationId, GetRequestsInfo info) const = 0;
    /// The requests of the installation in the host's collaboration version. POST Installations/{id}/requests.
    virtual Reply<std::vector<collaboration::RequestInfo>> getRequests(
        QString const& installationId, bool onlyActive) const = 0;
    /// Details of requests of any kind, grouped by partner. POST Installations/{id}/requests/details.
    virtual Reply<std::vector<collaboration::SessionDetails>> getCollaborationSessionRequestDetails(
        QString const& installationId, GetRequestDetailsInfo info) const = 0;
    /// Details of dental-scan requests. POST Installations/{id}/requests/dentalscan/details.
    virtual Reply<std::vector<collaboration::SessionDetails>> getDentalScanRequestDetails(
        QString const& installationId, GetRequestDetailsInfo info) const = 0;
    /// Details of lab-design requests. POST Installations/{id}/requests/labdesign/details.
    virtual Reply<std::vector<collaboration::SessionDetails>> getLabDesignRequestDetails(
        QString const& installationId, GetRequestDetailsInfo info) const = 0;
    /// Details of temporary-shell requests. POST Installations/{id}/requests/tempshell/details.
    virtual Reply<std::vector<collaboration::SessionDetails>> getTempShellRequestDetails(
        QString const& installationId, GetRequestDetailsInfo info) const = 0;
    /// Details of restoration requests. POST Installations/{id}/requests/restoration/details.
    virtual Reply<std::vector<collaboration::RestorationRequestDetail>> getRestorationRequestDetails(
        QString const& installationId, GetRequestDetailsInfo info) const = 0;
    /// Details of centralized restoration requests. POST Installations/{id}/requests/centralizedrestoration/details.
    virtual Reply<std::vector<collaboration::RestorationRequestDetail>> getCentralizedRestorationRequestDetails(
        QString const& installationId, GetRequestDetailsInfo info) const = 0;
    /// Details of template requests. POST Installations/{id}/requests/template/details.
    virtual Reply<std::vector<collaboration::TemplateRequestDetail>> getTemplateRequestDetails(
        QString const& installationId, GetRequestDetailsInfo info) const = 0;
    /// Details of surgery-plan requests. POST Installations/{id}/requests/surgeryplan/details.
    virtual Reply<std::vector<collaboration::UploadFilesRequestDetail>> getSurgeryPlanRequestDetails(
        QString const& installationId, GetRequestDetailsInfo info) const = 0;
    /// Details of referral requests. POST Installations/{id}/requests/referral/details.
    virtual Reply<std::vector<collaboration::UploadFilesRequestDetail>> getReferralRequestDetails(
        QString const& installationId, GetRequestDetailsInfo info) const = 0;
    /// The bytes of a temporary shell; empty when the download failed. GET Orders/file/tempshell/{id}.
    virtual threading::Future<QByteArray> getTempShellFile(QString const& fileId) const = 0;
    /// A patient's cases on the portal. GET Patients/{id}/cases.
    virtual Reply<std::vector<mirashare::MiraShareItemData>> getMiraShareCases(
        QString const& patientId, QString const& installationReference) const = 0;
    /// The partner platforms, with their logos if asked for; a logo that is missing, cannot be decoded or has more than
    /// 4096 x 4096 pixels stays empty. GET Installations/{id}/partners.
    virtual Reply<std::vector<PartnerInfo>> getPartners(QString const& installationId, bool withLogos) const = 0;
    /// A partner's logo as Base64 text; empty when the download failed. GET Installations/{id}/partners/{partner}/logo.
    virtual threading::Future<QByteArray> getPartnerLogo(
        QString const& installationId, QString const& partnerId) const = 0;
    /// The account's partner connections. GET Installations/{id}/PartnerConnections.
    virtual Reply<std::vector<PartnerAccountInfo>> getPartnerAccounts(QString const& installationId) const = 0;
    /// Whether a partner connection works. GET Installations/{id}/test-connection.
    virtual Reply<mirashare::TestAccountConnectionResponse> testAccountConnection(
        QString const& installationId, QString const& partnerConnectionId) const = 0;
    /// The cases of a patient that were sent to partners, with the partners' logos as `getPartners` gives them. GET
    /// Installations/{id}/PartnerCases/patients/{patient}.
    virtual Reply<std::vector<PartnerCaseInfo>> getPartnerCases(
        QString const& installationId, QString const& patientId) const = 0;
    /// Has the status of partner cases refreshed. POST Installations/{id}/partnercases/refresh-status.
    virtual Reply<std::vector<mirashare::CaseStatusResponse>> updatePartnerCasesStatus(
        QString const& installationId, mirashare::Cases const& cases) const = 0;
    /// Marks a file of a request as seen. POST CollaborationFiles/{id}.
    virtual Reply<void> markCollaborationFileAsSeen(
        QString const& fileId, collaboration::MarkAsSeenInfo const& info) const = 0;
    /// The account's ship-to addresses. GET Installations/{id}/addresses/shipto.
    virtual Reply<OrderShippingAddressList> getShippingAddresses(QString const& installationId) const = 0;
    /// Places a production order and returns its upload slots. On the wire at most once. POST Orders.
    virtual Reply<OrderRequestResponse> createOrder(OrderRequest const& order) const = 0;
    /// Places a laboratory order and returns its upload slots. On the wire at most once. POST Orders/lab/{id}.
    virtual Reply<ServiceOrderRequestResponse> createServiceOrder(ServiceOrderRequest const& order) const = 0;
    /// Uploads the bytes of one order file into its slot; the time-out bounds the time without progress. PUT
    /// Orders/files/{reference}.
    virtual Reply<void> uploadOrderFile(QString const& fileReference, QByteArray const& content) const = 0;
    /// Prices and voucher outcomes for the given items; orders nothing. POST Orders/simulation.
    virtual Reply<std::vector<PriceInfoResponse>> getPriceInfo(ExtendedPriceInfoRequest const& request) const = 0;
    /// The states of orders. POST Orders/details.
    virtual Reply<std::vector<OrderDetails>> getOrderStatus(OrderDetailsRequest const& request) const = 0;
    /// The temporary shells of an order. Blocks. A network failure gives an empty list. The body of an HTTP error is
    /// read as if it were the answer: the service's list of errors gives a shell without an id for each of them, what
    /// is no list an empty list. GET Orders/{reference}/files/tempshell.
    virtual TempShellDataResponse getTempShellCalculationData(QString const& orderReference) const = 0;
    /// Tells the service that all files of an order are uploaded. PUT Orders/{reference}/FinishUpload.
    virtual Reply<void> putFinishCadOrder(QString const& orderReference) const = 0;
    /// Tells the service that all files of an order are uploaded. POST Orders/{reference}/FinishUpload.
    virtual Reply<void> postFinishCadOrder(QString const& orderReference) const = 0;
    /// Authentication keys for outside parties. Blocks. GET Installations/{id}/3rdpartyauthenticationkeys.
    virtual std::pair<KeloErrorCode, std::vector<QString>> getThirdPartyAuthenticationKeys(
        QString const& installationId) = 0;
    /// Creates a case on the portal and returns the identities of its files. POST Cases.
    virtual Reply<mirashare::CreateCaseResponse> createCaseRequest(
        mirashare::CreateCaseRequest const& request) const = 0;
    /// Shares a case with a partner. POST Cases/share.
    virtual Reply<void> sharePartnerCaseRequest(mirashare::SharePartnerCaseRequest const& request) const = 0;
    /// Announces further files to a case on the portal. POST Cases/{id}/files.
    virtual Reply<std::vector<mirashare::CaseFileId>> addNewDataRequest(
        mirashare::AddDataRequest const& request) const = 0;
    /// The address of the public software page; empty on any failure. Blocks. GET Settings.
    virtual QString getSoftwarePageUrl() const = 0;

protected:
    TessalyConnectionInterface() = default;
    TessalyConnectionInterface(TessalyConnectionInterface const&) = default;
    TessalyConnectionInterface& operator=(TessalyConnectionInterface const&) = default;
};
