#pragma once

#include <vector>

#include <QByteArray>
#include <QList>

#include <KeloCommunicationLib/connection/Operation.h>
#include <KeloCommunicationLib/orders/CatalogRecords.h>
#include <KeloCommunicationLib/orders/OrderRecords.h>
#include <KeloCommunicationLib/orders/PriceRecords.h>
#include <KeloCommunicationLib/orders/TempShellRecords.h>

/// Orders, shells and the catalogue. What each does and gives is told at the interface's member of its name.
namespace operations
{

using rest::HttpMethod;

// clang-format off
inline constexpr Operation<ExtendedPriceInfoRequest, std::vector<PriceInfoResponse>> getPriceInfo{{.name = "getPriceInfo", .method = HttpMethod::Post, .path = "Orders/simulation%1", .constant = "", .isQuery = true}};
inline constexpr Operation<OrderRequest, OrderRequestResponse> createOrder{{.name = "createOrder", .method = HttpMethod::Post, .path = "Orders%1", .constant = ""}};
inline constexpr Operation<CreateIPSOrderInfo, void> createIPSOrder{{.name = "createIPSOrder", .method = HttpMethod::Post, .path = "Orders/ipscasedesigner%1", .constant = "", .timeout = std::chrono::milliseconds(7000)}};
inline constexpr Operation<ServiceOrderRequest, ServiceOrderRequestResponse> createServiceOrder{{"createServiceOrder", HttpMethod::Post, "Orders/lab/%1", {"installationId"}}};
inline constexpr Operation<QByteArray, void> uploadOrderFile{{"uploadOrderFile", HttpMethod::Put, "Orders/files/%1", {"fileReference"}}};
inline constexpr Operation<void, void> postFinishCadOrder{{"postFinishCadOrder", HttpMethod::Post, "Orders/%1/FinishUpload", {"orderReference"}}};
inline constexpr Operation<void, void> putFinishCadOrder{{"putFinishCadOrder", HttpMethod::Put, "Orders/%1/FinishUpload", {"orderReference"}}};
inline constexpr Operation<OrderDetailsRequest, std::vector<OrderDetails>> getOrderStatus{{.name = "getOrderStatus", .method = HttpMethod::Post, .path = "Orders/details%1", .constant = "", .isQuery = true}};
inline constexpr Operation<void, OrderShippingAddressList> getShippingAddresses{{"getShippingAddresses", HttpMethod::Get, "/Installations/%1/addresses/shipto", {"installationId"}}};
inline constexpr Operation<void, AvailableArticlesList> getAvailableArticles{{"getAvailableArticles", HttpMethod::Get, "/Installations/%1/articles", {"installationId"}}};

inline constexpr Operation<void, QList<TempShellFile>> getTempShellCalculationData{{"getTempShellCalculationData", HttpMethod::Get, "Orders/%1/files/tempshell", {"orderReference"}}};
inline constexpr Operation<void, QByteArray> getTempShellFile{{"getTempShellFile", HttpMethod::Get, "Orders/file/tempshell/%1", {"fileId"}}};
inline constexpr Operation<void, CatalogUpdateInfo> getCatalogUpdateInfo{{"getCatalogUpdateInfo", HttpMethod::Get, "Installations/%1/catalog/", {"installationId"}, "version"}};
inline constexpr Operation<void, CatalogUpdateInfo> getCatalogUpdateState{{"getCatalogUpdateState", HttpMethod::Get, "/Installations/%1/catalog/%2/status", {"installationId", "version"}}};
// clang-format on

} // namespace operations
