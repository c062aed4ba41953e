#pragma once

#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include <KeloCommunicationLib/connection/TessalyConnectionInterface.h>

namespace testkit
{

/// The operations of the client, each to be given an expectation.
class MockedOperations : public TessalyConnectionInterface
{
public:
    MOCK_METHOD(Reply<std::vector<TessalyUser>>, getUsersForLicense, (QString const&), (override));
    MOCK_METHOD(Reply<StudyInfoList>, getStudiesForLicense, (QString const&), (override));
    MOCK_METHOD(Reply<SettingsLicenseInfo>, getSettingsLicenseInfo, (QString const&), (override));
    MOCK_METHOD(Reply<AccountLicenseInfo>, getAccountLicenseInfo, (QString const&), (override));
    MOCK_METHOD(Reply<FileIdReference>, getAboutFileReference, (QString const&), (override));
    MOCK_METHOD(Reply<FileIdReference>, getIfuFileReference, (QString const&), (override));
    MOCK_METHOD(Reply<FileIdReference>, getUITranslationFileReference, (QString const&), (override));
    MOCK_METHOD(Reply<FileLicenseInfo>, getAboutFileInfo, (QString const&), (override));
    MOCK_METHOD(Reply<FileLicenseInfo>, getIfuFileInfo, (QString const&), (override));
    MOCK_METHOD(Reply<FileLicenseInfo>, getUITranslationFileInfo, (QString const&), (override));
    MOCK_METHOD(Reply<FileLicenseInfo>, getHelpFileInfo, (QString const&, QString const&), (override));
    MOCK_METHOD(Reply<std::vector<HelpFileInfo>>, getHelpFilesInfo, (QString const&), (override));
    MOCK_METHOD(Reply<SoftwareUpdateInfo>, getSoftwareUpdateInfo, (QString const&), (override));
    MOCK_METHOD(Reply<std::vector<ConnectionInfo>>, getConnectionsForLicense, (QString const&), (override));
    MOCK_METHOD(Reply<StartConnectionResponse>, startConnection, (StartConnectionRequest const&), (const, override));
    MOCK_METHOD(Reply<void>, updateConnectionStatus, (UpdateConnectionStatusRequest const&), (const, override));
    MOCK_METHOD(Reply<CatalogUpdateInfo>, getCatalogUpdateInfo, (QString const&, QVersionNumber const&), (override));
    MOCK_METHOD(
        KeloCommunicationLib::CatalogUpdateState, getCatalogUpdateState, (QString const&, QVersionNumber const&),
        (override));
    MOCK_METHOD(Reply<AvailableArticlesList>, getAvailableArticles, (QString const&), (override));
    MOCK_METHOD(Reply<CollaborationSessionId>, createCollaborationSession, (QString const&), (override));
    MOCK_METHOD(
        Reply<CollaborationSessionId>, createCollaborationSession, (CreateCollaborationSessionInfo const&), (override));
    MOCK_METHOD(
        Reply<CreateRestorationResponseInfo>, createRestorationCollaboration, (CreateRestorationRequestInfo const&),
        (override));
    MOCK_METHOD(
        Reply<void>, updateCollaborationRequestStatus, (UpdateCollaborationRequestStatusInfo const&), (override));
    MOCK_METHOD(
        (threading::Future<std::pair<QString, KeloErrorCode>>), getRestorationURL,
        (RequestRestorationDetailsInfo const&, QString const&), (override));
    MOCK_METHOD(
        Reply<CollaborationSessionId>, createCollaborationSessionWithoutConnectionId,
        (CreateCollaborationSessionWithoutConnectionIdInfo const&), (const, override));
    MOCK_METHOD(
        Reply<collaboration::UploadFilesRequest>, createSurgeryPlanRequest,
        (collaboration::CreateRequestRequest const&), (const, override));
    MOCK_METHOD(
        Reply<collaboration::UpdateSurgeryRequestResponse>, updateSurgeryPlanRequest,
        (collaboration::UpdateSurgeryRequestRequest const&), (override));
    MOCK_METHOD(
        Reply<collaboration::UploadFilesRequest>, createReferralRequest, (collaboration::CreateRequestRequest const&),
        (const, override));
    MOCK_METHOD(
        Reply<collaboration::RequestIdResponse>, getRequestId,
        (QString const&, collaboration::SalesOrderNumberRequest const&), (const, override));
    MOCK_METHOD(
        Reply<collaboration::RequestIdResponse>, getRequestId,
        (QString const&, collaboration::RequestKeyRequest const&), (const, override));
    MOCK_METHOD(Reply<RequestLockState>, getUnlockedStateForRequest, (QString const&, QString const&), (override));
    MOCK_METHOD(Reply<void>, unlockTemplateRequest, (QString const&, QString const&), (override));
    MOCK_METHOD(
        Reply<std::vector<collaboration::CreatedFileInfo>>, updateRequest, (collaboration::UpdateRequestRequest const&),
        (const, override));
    MOCK_METHOD(
        Reply<CreateRestorationResponseInfo>, createRequest, (collaboration::CreateRequestRequest const&),
        (const, override));
    MOCK_METHOD(Reply<void>, createIPSOrder, (CreateIPSOrderInfo const&), (override));
    MOCK_METHOD(
        Reply<std::vector<collaboration::RequestInfo>>, getRequests, (QString const&, GetRequestsInfo),
        (const, override));
    MOCK_METHOD(Reply<std::vector<collaboration::RequestInfo>>, getRequests, (QString const&, bool), (const, override));
    MOCK_METHOD(
        Reply<std::vector<collaboration::SessionDetails>>, getCollaborationSessionRequestDetails,
        (QString const&, GetRequestDetailsInfo), (const, override));
    MOCK_METHOD(
        Reply<std::vector<collaboration::SessionDetails>>, getDentalScanRequestDetails,
        (QString const&, GetRequestDetailsInfo), (const, override));
    MOCK_METHOD(
        Reply<std::vector<collaboration::SessionDetails>>, getLabDesignRequestDetails,
        (QString const&, GetRequestDetailsInfo), (const, override));
    MOCK_METHOD(
        Reply<std::vector<collaboration::SessionDetails>>, getTempShellRequestDetails,
        (QString const&, GetRequestDetailsInfo), (const, override));
    MOCK_METHOD(
        Reply<std::vector<collaboration::RestorationRequestDetail>>, getRestorationRequestDetails,
        (QString const&, GetRequestDetailsInfo), (const, override));
    MOCK_METHOD(
        Reply<std::vector<collaboration::RestorationRequestDetail>>, getCentralizedRestorationRequestDetails,
        (QString const&, GetRequestDetailsInfo), (const, override));
    MOCK_METHOD(
        Reply<std::vector<collaboration::TemplateRequestDetail>>, getTemplateRequestDetails,
        (QString const&, GetRequestDetailsInfo), (const, override));
    MOCK_METHOD(
        Reply<std::vector<collaboration::UploadFilesRequestDetail>>, getSurgeryPlanRequestDetails,
        (QString const&, GetRequestDetailsInfo), (const, override));
    MOCK_METHOD(
        Reply<std::vector<collaboration::UploadFilesRequestDetail>>, getReferralRequestDetails,
        (QString const&, GetRequestDetailsInfo), (const, override));
    MOCK_METHOD(threading::Future<QByteArray>, getTempShellFile, (QString const&), (const, override));
    MOCK_METHOD(
        Reply<std::vector<mirashare::MiraShareItemData>>, getMiraShareCases, (QString const&, QString const&),
        (const, override));
    MOCK_METHOD(Reply<std::vector<PartnerInfo>>, getPartners, (QString const&, bool), (const, override));
    MOCK_METHOD(threading::Future<QByteArray>, getPartnerLogo, (QString const&, QString const&), (const, override));
    MOCK_METHOD(Reply<std::vector<PartnerAccountInfo>>, getPartnerAccounts, (QString const&), (const, override));
    MOCK_METHOD(
        Reply<mirashare::TestAccountConnectionResponse>, testAccountConnection, (QString const&, QString const&),
        (const, override));
    MOCK_METHOD(
        Reply<std::vector<PartnerCaseInfo>>, getPartnerCases, (QString const&, QString const&), (const, override));
    MOCK_METHOD(
        Reply<std::vector<mirashare::CaseStatusResponse>>, updatePartnerCasesStatus,
        (QString const&, mirashare::Cases const&), (const, override));
    MOCK_METHOD(
        Reply<void>, markCollaborationFileAsSeen, (QString const&, collaboration::MarkAsSeenInfo const&),
        (const, override));
    MOCK_METHOD(Reply<OrderShippingAddressList>, getShippingAddresses, (QString const&), (const, override));
    MOCK_METHOD(Reply<OrderRequestResponse>, createOrder, (OrderRequest const&), (const, override));
    MOCK_METHOD(
        Reply<ServiceOrderRequestResponse>, createServiceOrder, (ServiceOrderRequest const&), (const, override));
    MOCK_METHOD(Reply<void>, uploadOrderFile, (QString const&, QByteArray const&), (const, override));
    MOCK_METHOD(
        Reply<std::vector<PriceInfoResponse>>, getPriceInfo, (ExtendedPriceInfoRequest const&), (const, override));
    MOCK_METHOD(Reply<std::vector<OrderDetails>>, getOrderStatus, (OrderDetailsRequest const&), (const, override));
    MOCK_METHOD(TempShellDataResponse, getTempShellCalculationData, (QString const&), (const, override));
    MOCK_METHOD(Reply<void>, putFinishCadOrder, (QString const&), (const, override));
    MOCK_METHOD(Reply<void>, postFinishCadOrder, (QString const&), (const, override));
    MOCK_METHOD(
        (std::pair<KeloErrorCode, std::vector<QString>>), getThirdPartyAuthenticationKeys, (QString const&),
        (override));
    MOCK_METHOD(
        Reply<mirashare::CreateCaseResponse>, createCaseRequest, (mirashare::CreateCaseRequest const&),
        (const, override));
    MOCK_METHOD(Reply<void>, sharePartnerCaseRequest, (mirashare::SharePartnerCaseRequest const&), (const, override));
    MOCK_METHOD(
        Reply<std::vector<mirashare::CaseFileId>>, addNewDataRequest, (mirashare::AddDataRequest const&),
        (const, override));
    MOCK_METHOD(QString, getSoftwarePageUrl, (), (const, override));
};

/// A double of the client. A call that the test did not announce fails the test, and its future is cancelled.
using FakeConnection = testing::StrictMock<MockedOperations>;

template <class T>
rest::RestReply<T> success(T value)
{
    return {{}, std::move(value)};
}

/// The reply to a call that the service refused.
template <class T>
rest::RestReply<T> refusal()
{
    rest::RestReply<T> reply;
    reply.status.kind = 2;
    reply.status.code = 17;
    reply.status.httpStatus = 500;
    reply.status.message = QStringLiteral("Refused");
    return reply;
}

} // namespace testkit
