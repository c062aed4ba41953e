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
    field<&OrderFileInfo::getName>(u"Name"),
    field<&OrderFileInfo::getSize>(u"Size", decimalText),
    field<&OrderFileInfo::getChunckSize>(u"ChunkSize", decimalText),
    field<&OrderFileInfo::getCheckSum>(u"CheckSum"),
});

template <>
inline constexpr auto fieldsOf<OrderItemInfo> = fields<OrderItemInfo>({
    field<&OrderItemInfo::getArticleNumber>(u"ArticleNumber"),
    field<&OrderItemInfo::getQuantity>(u"Quantity"),
    field<&OrderItemInfo::getToothNumberStart>(u"ToothNumberStart"),
    field<&OrderItemInfo::getToothNumberEnd>(u"ToothNumberEnd"),
    field<&OrderItemInfo::getRemakeCode>(u"RemakeCode"),
    field<&OrderItemInfo::getVoucherCode>(u"VoucherCode"),
    field<&OrderItemInfo::getCadStatus>(u"CadStatus", decimalText),
    field<&OrderItemInfo::getFiles>(u"Files"),
});

template <>
inline constexpr auto fieldsOf<OrderRequest> = fields<OrderRequest>({
    field<&OrderRequest::getInstallationReference>(u"InstallationReference"),
    field<&OrderRequest::getCreationFrontendVersion>(u"CreationFrontendVersion"),
    field<&OrderRequest::getFrontendVersion>(u"FrontendVersion"),
    field<&OrderRequest::getAddressIdentifier>(u"AddressIdentifier"),
    field<&OrderRequest::getProductionNote>(u"ProductionNote"),
    field<&OrderRequest::getOriginalOrderNumber>(u"OriginalOrderNumber"),
    field<&OrderRequest::getInvoiceReference>(u"InvoiceReference"),
    field<&OrderRequest::getStudyId>(u"StudyId"),
    field<&OrderRequest::getStudyParticipantId>(u"StudyParticipantId"),
    field<&OrderRequest::getClinicianZipCode>(u"ClinicianZipCode"),
    field<&OrderRequest::getClinicianName>(u"ClinicianName"),
    field<&OrderRequest::getOrderItems>(u"OrderItems"),
});

template <>
inline constexpr auto fieldsOf<OrderFile> = fields<OrderFile>({
    readField<&OrderFile::setName>(u"Name"),
    readField<&OrderFile::setReference>(u"Reference"),
});

template <>
inline constexpr auto fieldsOf<CadItemInfo> = fields<CadItemInfo>({
    readField<&CadItemInfo::setArticleNumber>(u"ArticleNumber"),
    readField<&CadItemInfo::setFiles>(u"Files"),
});

inline constexpr auto createdOrder = fields<OrderRequestResponse>({
    readField<&OrderRequestResponse::setOrderReference>(u"Reference"),
    readField<&OrderRequestResponse::setProductionIdentifier>(u"ProductionIdentifier"),
    readField<&OrderRequestResponse::setFiles>(u"OrderItems"),
});

template <>
inline constexpr auto fieldsOf<OrderRequestResponse> = fields<OrderRequestResponse>({
    within<OrderRequestResponse, createdOrder>(u"Order"),
});

// Order status

template <>
inline constexpr auto fieldsOf<OrderDetailsRequest> = fields<OrderDetailsRequest>({
    field<&OrderDetailsRequest::getOrderReferences>(u"References"),
});

template <>
inline constexpr auto fieldsOf<OrderItemDetails> = fields<OrderItemDetails>({
    readField<&OrderItemDetails::setArticleNumber>(u"ArticleNumber"),
    readField<&OrderItemDetails::setState>(u"State"),
    readField<&OrderItemDetails::setToothNumberStart>(u"ToothNumberStart"),
    readField<&OrderItemDetails::setToothNumberEnd>(u"ToothNumberEnd"),
});

template <>
inline constexpr auto fieldsOf<OrderDetails> = fields<OrderDetails>({
    readField<&OrderDetails::setState>(u"State"),
    readField<&OrderDetails::setReference>(u"Reference"),
    readField<&OrderDetails::setOrderItems>(u"OrderItems"),
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
    readField<&TempShellFile::setFileId>(u"Id"),
    readField<&TempShellFile::setFileName>(u"Name"),
    readField<&TempShellFile::setNumberOfChuncks>(u"NumberOfChunks"),
    readField<&TempShellFile::setFileSize>(u"FileSize"),
    readField<&TempShellFile::setChunkSize>(u"ChunkSize"),
    readField<&TempShellFile::setArticleNumber>(u"ArticleNumber"),
    readField<&TempShellFile::setToothNumberStart>(u"ToothNumberStart"),
    readField<&TempShellFile::setToothNumberEnd>(u"ToothNumberEnd"),
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
    readField<&CatalogUpdateInfo::setFileReference>(u"FileId"),
    readField<&CatalogUpdateInfo::setFileName>(u"FileName"),
    readField<&CatalogUpdateInfo::setFileSize>(u"FileSize"),
    readField<&CatalogUpdateInfo::setCatalogVersion>(u"Version"),
    readField<&CatalogUpdateInfo::setUpdateStatusString>(u"Status"),
});

} // namespace jsonSerializer::implementation
