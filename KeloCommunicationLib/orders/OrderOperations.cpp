#include <chrono>

#include <QJsonValue>
#include <QUrl>

#include <KeloCommunicationLib/connection/internal/RequestPipeline.h>

TessalyConnectionInterface::Reply<std::vector<PriceInfoResponse>> TessalyConnection::getPriceInfo(
    ExtendedPriceInfoRequest const& request) const
{
    return post<std::vector<PriceInfoResponse>>(
        pipeline::path("Orders/simulation%1", QString()), jsonSerializer::toJson(request));
}

TessalyConnectionInterface::Reply<OrderRequestResponse> TessalyConnection::createOrder(OrderRequest const& order) const
{
    return post<OrderRequestResponse>(pipeline::path("Orders%1", QString()), jsonSerializer::toJson(order));
}

TessalyConnectionInterface::Reply<void> TessalyConnection::createIPSOrder(CreateIPSOrderInfo const& info)
{
    return post<void>(
        pipeline::path("Orders/ipscasedesigner%1", QString()), jsonSerializer::toJson(info),
        std::chrono::milliseconds(7000));
}

TessalyConnectionInterface::Reply<ServiceOrderRequestResponse> TessalyConnection::createServiceOrder(
    ServiceOrderRequest const& order) const
{
    return post<ServiceOrderRequestResponse>(
        pipeline::path("Orders/lab/%1", order.installationReference), jsonSerializer::toJson(order));
}

TessalyConnectionInterface::Reply<void> TessalyConnection::uploadOrderFile(
    QString const& fileReference, QByteArray const& content) const
{
    QUrl const url(pipeline::path("Orders/files/%1", fileReference), QUrl::TolerantMode);
    return pipeline::send<void>(
        *this,
        rest::RequestDataCreator::makeRequest(rest::HttpMethod::Put, url, content, std::chrono::milliseconds(0)));
}

TessalyConnectionInterface::Reply<void> TessalyConnection::postFinishCadOrder(QString const& orderReference) const
{
    return post<void>(pipeline::path("Orders/%1/FinishUpload", orderReference), QJsonValue(QJsonValue::Undefined));
}

TessalyConnectionInterface::Reply<void> TessalyConnection::putFinishCadOrder(QString const& orderReference) const
{
    return put<void>(pipeline::path("Orders/%1/FinishUpload", orderReference), QJsonValue(QJsonValue::Undefined));
}

TessalyConnectionInterface::Reply<std::vector<OrderDetails>> TessalyConnection::getOrderStatus(
    OrderDetailsRequest const& request) const
{
    return post<std::vector<OrderDetails>>(
        pipeline::path("Orders/details%1", QString()), jsonSerializer::toJson(request));
}

TessalyConnectionInterface::Reply<OrderShippingAddressList> TessalyConnection::getShippingAddresses(
    QString const& installationId) const
{
    return get<OrderShippingAddressList>(pipeline::path("/Installations/%1/addresses/shipto", installationId));
}

TessalyConnectionInterface::Reply<AvailableArticlesList> TessalyConnection::getAvailableArticles(
    QString const& installationId)
{
    return get<AvailableArticlesList>(pipeline::path("/Installations/%1/articles", installationId));
}
