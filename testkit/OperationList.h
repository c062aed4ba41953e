#pragma once

#include <KeloCommunicationLib/connection/TessalyConnectionInterface.h>

// The operations of the client, from which the doubles are made, as ROW(name, parameters, specifiers, result).

#define KELO_TESTKIT_OPERATIONS(ROW)                                                                                   \
    ROW(getUsersForLicense, (QString const&), (override), Reply<std::vector<TessalyUser>>)                             \
    ROW(getStudiesForLicense, (QString const&), (override), Reply<StudyInfoList>)                                      \
    ROW(getSettingsLicenseInfo, (QString const&), (override), Reply<SettingsLicenseInfo>)                              \
    ROW(getAccountLicenseInfo, (QString const&), (override), Reply<AccountLicenseInfo>)                                \
    ROW(getAboutFileReference, (QString const&), (override), Reply<FileIdReference>)                                   \
    ROW(getIfuFileReference, (QString const&), (override), Reply<FileIdReference>)                                     \
    ROW(getUITranslationFileReference, (QString const&), (override), Reply<FileIdReference>)                           \
    ROW(getAboutFileInfo, (QString const&), (override), Reply<FileLicenseInfo>)                                        \
    ROW(getIfuFileInfo, (QString const&), (override), Reply<FileLicenseInfo>)                                          \
    ROW(getUITranslationFileInfo, (QString const&), (override), Reply<FileLicenseInfo>)                                \
    ROW(getHelpFileInfo, (QString const&, QString const&), (override), Reply<FileLicenseInfo>)                         \
    ROW(getHelpFilesInfo, (QString const&), (override), Reply<std::vector<HelpFileInfo>>)                              \
    ROW(getSoftwareUpdateInfo, (QString const&), (override), Reply<SoftwareUpdateInfo>)                                \
    ROW(getConnectionsForLicense, (QString const&), (override), Reply<std::vector<ConnectionInfo>>)                    \
    ROW(startConnection, (StartConnectionRequest const&), (const, override), Reply<StartConnectionResponse>)           \
    ROW(updateConnectionStatus, (UpdateConnectionStatusRequest const&), (const, override), Reply<void>)                \
    ROW(getCatalogUpdateInfo, (QString const&, QVersionNumber const&), (override), Reply<CatalogUpdateInfo>)           \
    ROW(getCatalogUpdateState, (QString const&, QVersionNumber const&), (override),                                    \
        KeloCommunicationLib::CatalogUpdateState)                                                                      \
    ROW(getAvailableArticles, (QString const&), (override), Reply<AvailableArticlesList>)                              \
    ROW(createCollaborationSession, (QString const&), (override), Reply<CollaborationSessionId>)                       \
    ROW(createRestorationCollaboration, (CreateRestorationRequestInfo const&), (override),                             \
        Reply<CreateRestorationResponseInfo>)                                                                          \
    ROW(updateCollaborationRequestStatus, (UpdateCollaborationRequestStatusInfo const&), (override), Reply<void>)      \
    ROW(getRestorationURL, (RequestRestorationDetailsInfo const&, QString const&), (override),                         \
        threading::Future<std::pair<QString, KeloErrorCode>>)                                                          \
    ROW(createCollaborationSessionWithoutConnectionId, (CreateCollaborationSessionWithoutConnectionIdInfo const&),     \
        (const, override), Reply<CollaborationSessionId>)                                                              \
    ROW(createSurgeryPlanRequest, (collaboration::CreateRequestRequest const&), (const, override),                     \
        Reply<collaboration::UploadFilesRequest>)                                                                      \
    ROW(updateSurgeryPlanRequest, (collaboration::UpdateSurgeryRequestRequest const&), (override),                     \
        Reply<collaboration::UpdateSurgeryRequestResponse>)                                                            \
    ROW(createReferralRequest, (collaboration::CreateRequestRequest const&), (const, override),                        \
        Reply<collaboration::UploadFilesRequest>)                                                                      \
    ROW(getRequestId, (QString const&, collaboration::SalesOrderNumberRequest const&), (const, override),              \
        Reply<collaboration::RequestIdResponse>)                                                                       \
    ROW(getUnlockedStateForRequest, (QString const&, QString const&), (override), Reply<RequestLockState>)             \
    ROW(unlockTemplateRequest, (QString const&, QString const&), (override), Reply<void>)                              \
    ROW(updateRequest, (collaboration::UpdateRequestRequest const&), (const, override),                                \
        Reply<std::vector<collaboration::CreatedFileInfo>>)                                                            \
    ROW(createRequest, (collaboration::CreateRequestRequest const&), (const, override),                                \
        Reply<CreateRestorationResponseInfo>)                                                                          \
    ROW(createIPSOrder, (CreateIPSOrderInfo const&), (override), Reply<void>)                                          \
    ROW(getRequests, (QString const&, GetRequestsInfo), (const, override),                                             \
        Reply<std::vector<collaboration::RequestInfo>>)                                                                \
    ROW(getCollaborationSessionRequestDetails, (QString const&, GetRequestDetailsInfo), (const, override),             \
        Reply<std::vector<collaboration::SessionDetails>>)                                                             \
    ROW(getDentalScanRequestDetails, (QString const&, GetRequestDetailsInfo), (const, override),                       \
        Reply<std::vector<collaboration::SessionDetails>>)                                                             \
    ROW(getLabDesignRequestDetails, (QString const&, GetRequestDetailsInfo), (const, override),                        \
        Reply<std::vector<collaboration::SessionDetails>>)                                                             \
    ROW(getTempShellRequestDetails, (QString const&, GetRequestDetailsInfo), (const, override),                        \
        Reply<std::vector<collaboration::SessionDetails>>)                                                             \
    ROW(getRestorationRequestDetails, (QString const&, GetRequestDetailsInfo), (const, override),                      \
        Reply<std::vector<collaboration::RestorationRequestDetail>>)                                                   \
    ROW(getCentralizedRestorationRequestDetails, (QString const&, GetRequestDetailsInfo), (const, override),           \
        Reply<std::vector<collaboration::RestorationRequestDetail>>)                                                   \
    ROW(getTemplateRequestDetails, (QString const&, GetRequestDetailsInfo), (const, override),                         \
        Reply<std::vector<collaboration::TemplateRequestDetail>>)                                                      \
    ROW(getSurgeryPlanRequestDetails, (QString const&, GetRequestDetailsInfo), (const, override),                      \
        Reply<std::vector<collaboration::UploadFilesRequestDetail>>)                                                   \
    ROW(getReferralRequestDetails, (QString const&, GetRequestDetailsInfo), (const, override),                         \
        Reply<std::vector<collaboration::UploadFilesRequestDetail>>)                                                   \
    ROW(getTempShellFile, (QString const&), (const, override), threading::Future<QByteArray>)                          \
    ROW(getMiraShareCases, (QString const&, QString const&), (const, override),                                        \
        Reply<std::vector<mirashare::MiraShareItemData>>)                                                              \
    ROW(getPartners, (QString const&, bool), (const, override), Reply<std::vector<PartnerInfo>>)                       \
    ROW(getPartnerLogo, (QString const&, QString const&), (const, override), threading::Future<QByteArray>)            \
    ROW(getPartnerAccounts, (QString const&), (const, override), Reply<std::vector<PartnerAccountInfo>>)               \
    ROW(testAccountConnection, (QString const&, QString const&), (const, override),                                    \
        Reply<mirashare::TestAccountConnectionResponse>)                                                               \
    ROW(getPartnerCases, (QString const&, QString const&), (const, override), Reply<std::vector<PartnerCaseInfo>>)     \
    ROW(updatePartnerCasesStatus, (QString const&, mirashare::Cases const&), (const, override),                        \
        Reply<std::vector<mirashare::CaseStatusResponse>>)                                                             \
    ROW(markCollaborationFileAsSeen, (QString const&, collaboration::MarkAsSeenInfo const&), (const, override),        \
        Reply<void>)                                                                                                   \
    ROW(getShippingAddresses, (QString const&), (const, override), Reply<OrderShippingAddressList>)                    \
    ROW(createOrder, (OrderRequest const&), (const, override), Reply<OrderRequestResponse>)                            \
    ROW(createServiceOrder, (ServiceOrderRequest const&), (const, override), Reply<ServiceOrderRequestResponse>)       \
    ROW(uploadOrderFile, (QString const&, QByteArray const&), (const, override), Reply<void>)                          \
    ROW(getPriceInfo, (ExtendedPriceInfoRequest const&), (const, override), Reply<std::vector<PriceInfoResponse>>)     \
    ROW(getOrderStatus, (OrderDetailsRequest const&), (const, override), Reply<std::vector<OrderDetails>>)             \
    ROW(getTempShellCalculationData, (QString const&), (const, override), TempShellDataResponse)                       \
    ROW(putFinishCadOrder, (QString const&), (const, override), Reply<void>)                                           \
    ROW(postFinishCadOrder, (QString const&), (const, override), Reply<void>)                                          \
    ROW(getThirdPartyAuthenticationKeys, (QString const&), (override), std::pair<KeloErrorCode, std::vector<QString>>) \
    ROW(createCaseRequest, (mirashare::CreateCaseRequest const&), (const, override),                                   \
        Reply<mirashare::CreateCaseResponse>)                                                                          \
    ROW(sharePartnerCaseRequest, (mirashare::SharePartnerCaseRequest const&), (const, override), Reply<void>)          \
    ROW(addNewDataRequest, (mirashare::AddDataRequest const&), (const, override),                                      \
        Reply<std::vector<mirashare::CaseFileId>>)                                                                     \
    ROW(getSoftwarePageUrl, (), (const, override), QString)

// Those that share their name, and what they return, with one above.
#define KELO_TESTKIT_OVERLOADS(ROW)                                                                                    \
    ROW(createCollaborationSession, (CreateCollaborationSessionInfo const&), (override),                               \
        Reply<CollaborationSessionId>)                                                                                 \
    ROW(getRequestId, (QString const&, collaboration::RequestKeyRequest const&), (const, override),                    \
        Reply<collaboration::RequestIdResponse>)                                                                       \
    ROW(getRequests, (QString const&, bool), (const, override), Reply<std::vector<collaboration::RequestInfo>>)
