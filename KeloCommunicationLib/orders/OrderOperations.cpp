#include <KeloCommunicationLib/orders/OrderOperations.h>

#include <chrono>

#include <KeloCommunicationLib/connection/internal/RequestPipeline.h>

using KeloCommunicationLib::internal::call;

namespace
{

template <class T>
using Reply = TessalyConnectionInterface::Reply<T>;

} // namespace

Reply<std::vector<PriceInfoResponse>> TessalyConnection::getPriceInfo(ExtendedPriceInfoRequest const& request) const
{
    return call(*this, operations::getPriceInfo, {}, request);
}

Reply<OrderRequestResponse> TessalyConnection::createOrder(OrderRequest const& order) const
{
    return call(*this, operations::createOrder, {}, order);
}

Reply<void> TessalyConnection::createIPSOrder(CreateIPSOrderInfo const& info)
{
    return call(*this, operations::createIPSOrder, {}, info);
}

Reply<ServiceOrderRequestResponse> TessalyConnection::createServiceOrder(ServiceOrderRequest const& order) const
{
    return call(*this, operations::createServiceOrder, {order.installationReference}, order);
}

Reply<void> TessalyConnection::uploadOrderFile(QString const& fileReference, QByteArray const& content) const
{
    auto const& operation = operations::uploadOrderFile;
    return KeloCommunicationLib::internal::send<void>(
        *this, rest::RequestDataCreator::makeRequest(
                   operation.method, KeloCommunicationLib::internal::urlOf(operation, {fileReference}), content,
                   operation.timeout));
}

Reply<void> TessalyConnection::postFinishCadOrder(QString const& orderReference) const
{
    return call(*this, operations::postFinishCadOrder, {orderReference});
}

Reply<void> TessalyConnection::putFinishCadOrder(QString const& orderReference) const
{
    return call(*this, operations::putFinishCadOrder, {orderReference});
}

Reply<std::vector<OrderDetails>> TessalyConnection::getOrderStatus(OrderDetailsRequest const& request) const
{
    return call(*this, operations::getOrderStatus, {}, request);
}

Reply<OrderShippingAddressList> TessalyConnection::getShippingAddresses(QString const& installationId) const
{
    return call(*this, operations::getShippingAddresses, {installationId});
}

Reply<AvailableArticlesList> TessalyConnection::getAvailableArticles(QString const& installationId)
{
    return call(*this, operations::getAvailableArticles, {installationId});
}
