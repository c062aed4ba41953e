#include <QJsonArray>
#include <QJsonObject>

#include <KeloCommunicationLib/connection/internal/RequestPipeline.h>
#include <KeloCommunicationLib/orders/OrderOperations.h>

using namespace KeloCommunicationLib::internal;
using KeloCommunicationLib::CatalogUpdateState;

TempShellDataResponse TessalyConnection::getTempShellCalculationData(QString const& orderReference) const
{
    rest::JsonReply const reply = postRequest(requestTo(operations::getTempShellCalculationData, {orderReference}));
    return rest::isNetworkError(reply) ? TempShellDataResponse()
                                       : jsonSerializer::fromJson<TempShellDataResponse>(reply->body().array());
}

threading::Future<QByteArray> TessalyConnection::getTempShellFile(QString const& fileId) const
{
    return download(pathOf(operations::getTempShellFile, {fileId}));
}

TessalyConnectionInterface::Reply<CatalogUpdateInfo> TessalyConnection::getCatalogUpdateInfo(
    QString const& installationId, QVersionNumber const& version)
{
    return call(*this, operations::getCatalogUpdateInfo, {installationId, version.toString()});
}

CatalogUpdateState TessalyConnection::getCatalogUpdateState(
    QString const& installationId, QVersionNumber const& version)
{
    rest::JsonReply const reply =
        postRequest(requestTo(operations::getCatalogUpdateState, {installationId, version.toString()}));
    return rest::isNetworkError(reply)
               ? CatalogUpdateState::NoUpdate
               : jsonSerializer::fromJson<CatalogUpdateInfo>(reply->body().object()).getUpdateStatus();
}
