#pragma once

#include <QLatin1String>

#include <KeloCommunicationLib/json/internal/Fields.h>
#include <KeloCommunicationLib/orders/CatalogRecords.h>
#include <KeloCommunicationLib/orders/OrderRecords.h>
#include <KeloCommunicationLib/orders/PriceRecords.h>
#include <KeloCommunicationLib/orders/TempShellRecords.h>

/// The keys of the order, price, shell and catalogue records.
namespace jsonSerializer::implementation
{

// Production orders

template <>
inline constexpr auto fieldsOf<OrderFileInfo> = fields<OrderFileInfo>({
    field<&OrderFileInfo::getName, &OrderFileInfo::setName>(u"Name"),
    field<&OrderFileInfo::getSize, &OrderFileInfo::setSize>(u"Size", decimalText),
    field<&OrderFileInfo::getChunckSize, &OrderFileInfo::setChunckSize>(u"ChunkSize", decimalText),
    field<&OrderFileInfo::getCheckSum, &OrderFileInfo::setCheckSum>(u"CheckSum"),
});

template <>
inline constexpr auto fieldsOf<OrderItemInfo> = fields<OrderItemInfo>({
    field<&OrderItemInfo::getArticleNumber, &OrderItemInfo::setArticleNumber>(u"ArticleNumber"),
    field<&OrderItemInfo::getQuantity, &OrderItemInfo::setQuantity>(u"Quantity"),
    field<&OrderItemInfo::getToothNumberStart, &OrderItemInfo::setToothNumberStart>(u"ToothNumberStart"),
    field<&OrderItemInfo::getToothNumberEnd, &OrderItemInfo::setToothNumberEnd>(u"ToothNumberEnd"),
    field<&OrderItemInfo::getRemakeCode, &OrderItemInfo::setRemakeCode>(u"RemakeCode"),
    field<&OrderItemInfo::getVoucherCode, &OrderItemInfo::setVoucherCode>(u"VoucherCode"),
    field<&OrderItemInfo::getCadStatus, &OrderItemInfo::setCadStatus>(u"CadStatus", decimalText),
    field<&OrderItemInfo::getFiles, &OrderItemInfo::setFiles>(u"Files"),
});

template <>
inline constexpr auto fieldsOf<OrderRequest> = fields<OrderRequest>({
    field<&OrderRequest::getInstallationReference, &OrderRequest::setInstallationReference>(u"InstallationReference"),
    field<&OrderRequest::getCreationFrontendVersion, &OrderRequest::setCreationFrontendVersion>(
        u"CreationFrontendVersion"),
    field<&OrderRequest::getFrontendVersion, &OrderRequest::setFrontendVersion>(u"FrontendVersion"),
    field<&OrderRequest::getAddressIdentifier, &OrderRequest::setAddressIdentifier>(u"AddressIdentifier"),
    field<&OrderRequest::getProductionNote, &OrderRequest::setProductionNote>(u"ProductionNote"),
    field<&OrderRequest::getOriginalOrderNumber, &OrderRequest::setOriginalOrderNumber>(u"OriginalOrderNumber"),
    field<&OrderRequest::getInvoiceReference, &OrderRequest::setInvoiceReference>(u"InvoiceReference"),
    field<&OrderRequest::getStudyId, &OrderRequest::setStudyId>(u"StudyId"),
    field<&OrderRequest::getStudyParticipantId, &OrderRequest::setStudyParticipantId>(u"StudyParticipantId"),
    field<&OrderRequest::getClinicianZipCode, &OrderRequest::setClinicianZipCode>(u"ClinicianZipCode"),
    field<&OrderRequest::getClinicianName, &OrderRequest::setClinicianName>(u"ClinicianName"),
    field<&OrderRequest::getOrderItems, &OrderRequest::setOrderItems>(u"OrderItems"),
});

template <>
inline constexpr auto fieldsOf<OrderFile> = fields<OrderFile>({
    field<&OrderFile::getName, &OrderFile::setName>(u"Name"),
    field<&OrderFile::getReference, &OrderFile::setReference>(u"Reference"),
});

template <>
inline constexpr auto fieldsOf<CadItemInfo> = fields<CadItemInfo>({
    field<&CadItemInfo::getArticleNumber, &CadItemInfo::setArticleNumber>(u"ArticleNumber"),
    field<&CadItemInfo::getFiles, &CadItemInfo::setFiles>(u"Files"),
});

inline constexpr auto createdOrder = fields<OrderRequestResponse>({
    field<&OrderRequestResponse::getOrderReference, &OrderRequestResponse::setOrderReference>(u"Reference"),
    field<&OrderRequestResponse::getProductionIdentifier, &OrderRequestResponse::setProductionIdentifier>(
        u"ProductionIdentifier"),
    field<&OrderRequestResponse::getFiles, &OrderRequestResponse::setFiles>(u"OrderItems"),
});

template <>
inline constexpr auto fieldsOf<OrderRequestResponse> = fields<OrderRequestResponse>({
    within<OrderRequestResponse, createdOrder>(u"Order"),
});

// Order status

template <>
inline constexpr auto fieldsOf<OrderDetailsRequest> = fields<OrderDetailsRequest>({
    field<&OrderDetailsRequest::getOrderReferences, &OrderDetailsRequest::setOrderReferences>(u"References"),
});

template <>
inline constexpr auto fieldsOf<OrderItemDetails> = fields<OrderItemDetails>({
    field<&OrderItemDetails::getArticleNumber, &OrderItemDetails::setArticleNumber>(u"ArticleNumber"),
    field<&OrderItemDetails::getState, &OrderItemDetails::setState>(u"State"),
    field<&OrderItemDetails::getToothNumberStart, &OrderItemDetails::setToothNumberStart>(u"ToothNumberStart"),
    field<&OrderItemDetails::getToothNumberEnd, &OrderItemDetails::setToothNumberEnd>(u"ToothNumberEnd"),
});

template <>
inline constexpr auto fieldsOf<OrderDetails> = fields<OrderDetails>({
    field<&OrderDetails::getState, &OrderDetails::setState>(u"State"),
    field<&OrderDetails::getReference, &OrderDetails::setReference>(u"Reference"),
    field<&OrderDetails::getOrderItems, &OrderDetails::setOrderItems>(u"OrderItems"),
});

// Case-designer orders

template <>
inline constexpr auto fieldsOf<IPSOrderItemInfo> = fields<IPSOrderItemInfo>({
    field<&IPSOrderItemInfo::getArticleNumber, &IPSOrderItemInfo::setArticleNumber>(u"ArticleNumber"),
    field<&IPSOrderItemInfo::getManufacturerReference, &IPSOrderItemInfo::setManufacturerReference>(
        u"ManufacturerReference"),
    field<&IPSOrderItemInfo::getQuantity, &IPSOrderItemInfo::setQuantity>(u"Quantity"),
});

template <>
inline constexpr auto fieldsOf<CreateIPSOrderInfo> = fields<CreateIPSOrderInfo>({
    field<&CreateIPSOrderInfo::getInstallationReference, &CreateIPSOrderInfo::setInstallationReference>(
        u"InstallationReference"),
    field<&CreateIPSOrderInfo::getCreationFrontendVersion, &CreateIPSOrderInfo::setCreationFrontendVersion>(
        u"CreationFrontendVersion"),
    field<&CreateIPSOrderInfo::getFrontendVersion, &CreateIPSOrderInfo::setFrontendVersion>(u"FrontendVersion"),
    field<&CreateIPSOrderInfo::getPatientId, &CreateIPSOrderInfo::setPatientId>(u"PatientId"),
    field<&CreateIPSOrderInfo::getOrderItemInfos, &CreateIPSOrderInfo::setOrderItemInfos>(u"OrderItems"),
});

// Laboratory orders

template <>
inline constexpr auto fieldsOf<ServiceOrderItemInfo> = fields<ServiceOrderItemInfo>({
    field<&ServiceOrderItemInfo::articleNumber>(u"ArticleNumber"),
    field<&ServiceOrderItemInfo::manufacturerReference>(u"ManufacturerReference"),
    field<&ServiceOrderItemInfo::quantity>(u"Quantity"),
    field<&ServiceOrderItemInfo::toothNumberStart>(u"ToothNumberStart"),
    field<&ServiceOrderItemInfo::toothNumberEnd>(u"ToothNumberEnd"),
    field<&ServiceOrderItemInfo::files>(u"Files"),
});

template <>
inline constexpr auto fieldsOf<ServiceOrderRequest> = fields<ServiceOrderRequest>({
    field<&ServiceOrderRequest::installationReference>(u"InstallationReference"),
    field<&ServiceOrderRequest::creationFrontendVersion>(u"CreationFrontendVersion"),
    field<&ServiceOrderRequest::frontendVersion>(u"FrontendVersion"),
    field<&ServiceOrderRequest::productionNote>(u"ProductionNote"),
    field<&ServiceOrderRequest::orderItems>(u"OrderItems"),
});

template <>
inline constexpr auto fieldsOf<ServiceOrderRequestResponse> = fields<ServiceOrderRequestResponse>({
    field<&ServiceOrderRequestResponse::orderItems>(u"OrderItems"),
});

// Prices

inline constexpr TextTable<VoucherMessage, 9> voucherMessages{
    {{
        {latin1("MSG_VOUCHER_100"), VoucherMessage::Msg100},
        {latin1("MSG_VOUCHER_101"), VoucherMessage::Msg101},
        {latin1("MSG_VOUCHER_102"), VoucherMessage::Msg102},
        {latin1("MSG_VOUCHER_103"), VoucherMessage::Msg103},
        {latin1("MSG_VOUCHER_104"), VoucherMessage::Msg104},
        {latin1("MSG_VOUCHER_105"), VoucherMessage::Msg105},
        {latin1("MSG_VOUCHER_106"), VoucherMessage::Msg106},
        {latin1("MSG_VOUCHER_107"), VoucherMessage::Msg107},
        {latin1("MSG_VOUCHER_M999"), VoucherMessage::MsgM999},
    }},
    VoucherMessage::None,
};

template <>
inline constexpr auto fieldsOf<PriceInfoRequest> = fields<PriceInfoRequest>({
    field<&PriceInfoRequest::articleNumber>(u"ArticleNumber"),
    field<&PriceInfoRequest::quantity>(u"Quantity"),
    field<&PriceInfoRequest::toothNumberStart>(u"ToothNumberStart"),
    field<&PriceInfoRequest::toothNumberEnd>(u"ToothNumberEnd"),
    field<&PriceInfoRequest::voucherCode>(u"VoucherCode"),
    field<&PriceInfoRequest::isLocalProductionArticle>(u"IsLocalProductionArticle"),
});

template <>
inline constexpr auto fieldsOf<ExtendedPriceInfoRequest> = fields<ExtendedPriceInfoRequest>({
    field<&ExtendedPriceInfoRequest::installationReference>(u"InstallationReference"),
    field<&ExtendedPriceInfoRequest::orderItems>(u"OrderItems"),
});

template <>
inline constexpr auto fieldsOf<PriceInfoResponse> = fields<PriceInfoResponse>({
    field<&PriceInfoResponse::articleNumber>(u"ArticleNumber"),
    field<&PriceInfoResponse::articlePrice>(u"ArticlePrice"),
    field<&PriceInfoResponse::originalVoucherCode>(u"OriginalVoucherCode"),
    field<&PriceInfoResponse::quantity>(u"Quantity"),
    field<&PriceInfoResponse::toothNumberStart>(u"ToothNumberStart"),
    field<&PriceInfoResponse::toothNumberEnd>(u"ToothNumberEnd"),
    field<&PriceInfoResponse::voucherDiscountPrice>(u"VoucherDiscountPrice"),
    field<&PriceInfoResponse::currency>(u"Currency"),
    field<&PriceInfoResponse::priceType>(u"PriceType", alwaysZero),
    field<&PriceInfoResponse::voucherMessage>(u"VoucherMessage", texts<voucherMessages>),
});

// What an account may order, and where to

template <>
inline constexpr auto fieldsOf<OrderShippingAddress> = fields<OrderShippingAddress>({
    field<&OrderShippingAddress::identifier>(u"Identifier"),
    field<&OrderShippingAddress::name>(u"Name"),
    field<&OrderShippingAddress::street>(u"Street"),
    field<&OrderShippingAddress::postalCode>(u"PostalCode"),
    field<&OrderShippingAddress::city>(u"City"),
    field<&OrderShippingAddress::region>(u"Region"),
    field<&OrderShippingAddress::country>(u"Country"),
});

template <>
inline constexpr auto fieldsOf<OrderShippingAddressList> = fields<OrderShippingAddressList>({
    field<&OrderShippingAddressList::addresses>(u"Addresses"),
});

template <>
inline constexpr auto fieldsOf<AvailableArticlesList> = fields<AvailableArticlesList>({
    field<&AvailableArticlesList::articleNumbers>(u"ArticleNumbers"),
});

// Temporary shells and the catalogue

template <>
inline constexpr auto fieldsOf<TempShellFile> = fields<TempShellFile>({
    field<&TempShellFile::getFileId, &TempShellFile::setFileId>(u"Id"),
    field<&TempShellFile::getFileName, &TempShellFile::setFileName>(u"Name"),
    field<&TempShellFile::getNumberOfChuncks, &TempShellFile::setNumberOfChuncks>(u"NumberOfChunks"),
    field<&TempShellFile::getFileSize, &TempShellFile::setFileSize>(u"FileSize"),
    field<&TempShellFile::getChunkSize, &TempShellFile::setChunkSize>(u"ChunkSize"),
    field<&TempShellFile::getArticleNumber, &TempShellFile::setArticleNumber>(u"ArticleNumber"),
    field<&TempShellFile::getToothNumberStart, &TempShellFile::setToothNumberStart>(u"ToothNumberStart"),
    field<&TempShellFile::getToothNumberEnd, &TempShellFile::setToothNumberEnd>(u"ToothNumberEnd"),
});

inline constexpr TextTable<KeloCommunicationLib::CatalogUpdateState, 2> catalogUpdateStates{
    {{
        {latin1("Optional"), KeloCommunicationLib::CatalogUpdateState::Optional},
        {latin1("Mandatory"), KeloCommunicationLib::CatalogUpdateState::Mandatory},
    }},
    KeloCommunicationLib::CatalogUpdateState::NoUpdate,
};

template <>
inline constexpr auto fieldsOf<CatalogUpdateInfo> = fields<CatalogUpdateInfo>({
    field<&CatalogUpdateInfo::getFileReference, &CatalogUpdateInfo::setFileReference>(u"FileId"),
    field<&CatalogUpdateInfo::getFileName, &CatalogUpdateInfo::setFileName>(u"FileName"),
    field<&CatalogUpdateInfo::getFileSize, &CatalogUpdateInfo::setFileSize>(u"FileSize"),
    field<&CatalogUpdateInfo::getCatalogVersion, &CatalogUpdateInfo::setCatalogVersion>(u"Version"),
    field<&CatalogUpdateInfo::getUpdateStatusString, &CatalogUpdateInfo::setUpdateStatusString>(u"Status"),
});

} // namespace jsonSerializer::implementation
