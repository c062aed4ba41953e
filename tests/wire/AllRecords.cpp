#include "tests/wire/AllRecords.h"

#include <KeloCommunicationLib/account/internal/AccountFields.h>
#include <KeloCommunicationLib/collaboration/internal/CollaborationFields.h>
#include <KeloCommunicationLib/collaboration/internal/ConnectionFields.h>
#include <KeloCommunicationLib/orders/internal/OrderFields.h>
#include <KeloCommunicationLib/partners/internal/PartnerFields.h>

namespace test
{

namespace
{

template <class... Records>
struct RecordList
{
    static std::vector<WireType> records() { return {wireType<Records>()...}; }
    static std::vector<WireType> lists() { return {wireType<std::vector<Records>>()...}; }
};

using AllRecords = RecordList<
    AccountLicenseInfo, SettingsLicenseInfo, FileIdReference, FileLicenseInfo, HelpFileInfo, SoftwareUpdateInfo,
    TessalyUser, ClinicalPartner, StudyInfo, StudyInfoList, VantorStats, collaboration::FileInfo,
    collaboration::NoteInfo, collaboration::PatientInfo, collaboration::Partner, collaboration::RequestDetails,
    collaboration::RequestInfo, collaboration::ImplantConnection, collaboration::Restoration,
    collaboration::RestorationRequest, collaboration::TemplateRequestDetailInfo,
    collaboration::UploadFilesRequestDetailInfo, collaboration::SessionDetails, collaboration::RestorationRequestDetail,
    collaboration::TemplateRequestDetail, collaboration::UploadFilesRequestDetail, collaboration::NewFileInfo,
    collaboration::ExistingFileInfo, collaboration::CreateRequestRequest, collaboration::UpdateRequestRequest,
    collaboration::UpdateSurgeryRequestRequest, collaboration::MarkAsSeenInfo, collaboration::RequestIdResponse,
    collaboration::CreatedFileInfo, collaboration::UploadFilesRequest, collaboration::UpdateSurgeryRequestResponse,
    CollaborationSessionId, CreateCollaborationSessionInfo, CreateCollaborationSessionWithoutConnectionIdInfo,
    RequestLockState, UpdateCollaborationRequestStatusInfo, StartConnectionRequest, StartConnectionResponse,
    UpdateConnectionStatusRequest, ConnectionInfo, CreateRestorationRequestInfo::NewFileInfo,
    CreateRestorationRequestInfo::ExistingFileInfo, CreateRestorationRequestInfo::ImplantConnection,
    CreateRestorationRequestInfo, CreateRestorationResponseInfo::FileInfo, CreateRestorationResponseInfo,
    RestorationDetailsInfo::CollaborationRequestDetailInfos, RestorationDetailsInfo::CollaborationSessionDetailInfos,
    RestorationDetailsInfo, GetRequestDetailsInfo, GetRequestsInfo, RequestRestorationDetailsInfo, OrderFileInfo,
    OrderItemInfo, OrderRequest, OrderFile, CadItemInfo, OrderRequestResponse, OrderDetailsRequest, OrderItemDetails,
    OrderDetails, IPSOrderItemInfo, CreateIPSOrderInfo, ServiceOrderItemInfo, ServiceOrderRequest,
    ServiceOrderRequestResponse, PriceInfoRequest, ExtendedPriceInfoRequest, PriceInfoResponse, OrderShippingAddress,
    OrderShippingAddressList, AvailableArticlesList, TempShellFile, CatalogUpdateInfo, PartnerInfo, PartnerAccountInfo,
    PartnerCaseInfo, mirashare::MiraShareItemData, mirashare::CaseFileInfo, mirashare::Prescription,
    mirashare::CreateCaseRequest, mirashare::CaseFileId, mirashare::CreateCaseResponse, mirashare::AddDataRequest,
    mirashare::CaseStatusResponse, mirashare::SharePartnerCaseRequest, mirashare::TestAccountConnectionResponse,
    operations::InstallationBody, operations::PortalCases, operations::AuthenticationKeys, operations::SoftwarePage>;

} // namespace

std::vector<WireType> const& allRecords()
{
    static std::vector<WireType> const records = AllRecords::records();
    return records;
}

std::vector<WireType> const& listsOfAllRecords()
{
    static std::vector<WireType> const lists = AllRecords::lists();
    return lists;
}

} // namespace test
