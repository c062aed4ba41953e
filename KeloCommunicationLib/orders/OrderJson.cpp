#include <KeloCommunicationLib/json/internal/Converters.h>
#include <KeloCommunicationLib/orders/internal/OrderFields.h>

KELO_WRITABLE(OrderFileInfo);
KELO_WRITABLE(OrderItemInfo);
KELO_WRITABLE(OrderRequest);
KELO_READABLE(OrderFile);
KELO_READABLE(CadItemInfo);
KELO_READABLE(OrderRequestResponse);

KELO_WRITABLE(OrderDetailsRequest);
KELO_READABLE(OrderItemDetails);
KELO_READABLE(OrderDetails);

KELO_READABLE_AND_WRITABLE(IPSOrderItemInfo);
KELO_READABLE_AND_WRITABLE(CreateIPSOrderInfo);

KELO_WRITABLE(ServiceOrderItemInfo);
KELO_WRITABLE(ServiceOrderRequest);
KELO_READABLE(ServiceOrderRequestResponse);

KELO_WRITABLE(PriceInfoRequest);
KELO_WRITABLE(ExtendedPriceInfoRequest);
KELO_READABLE(PriceInfoResponse);

KELO_READABLE(OrderShippingAddress);
KELO_READABLE(OrderShippingAddressList);
KELO_READABLE(AvailableArticlesList);

KELO_READABLE(TempShellFile);
KELO_READABLE(CatalogUpdateInfo);

template <>
TempShellDataResponse jsonSerializer::fromJson<TempShellDataResponse, QJsonArray>(QJsonArray const& json)
{
    QList<TempShellFile> files;
    for (QJsonValueConstRef const element : json)
    {
        files.append(fromJson<TempShellFile>(element.toObject()));
    }
    TempShellDataResponse response;
    response.setTempShellFile(files);
    return response;
}

KeloCommunicationLib::CatalogUpdateState CatalogUpdateInfo::getUpdateStatus() const
{
    return jsonSerializer::implementation::catalogUpdateStates.valueOf(updateStatus_);
}
