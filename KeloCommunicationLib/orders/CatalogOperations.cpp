#include <QJsonArray>
#include <QJsonObject>

#include <KeloCommunicationLib/connection/internal/RequestPipeline.h>

TempShellDataResponse TessalyConnection::getTempShellCalculationData(QString const& orderReference) const
{
    rest::JsonReply const reply = getBlocking(pipeline::path("Orders/%1/files/tempshell", orderReference));
    return rest::isNetworkError(reply) ? TempShellDataResponse()
                                       : jsonSerializer::fromJson<TempShellDataResponse>(reply->body().array());
}

threading::Future<QByteArray> TessalyConnection::getTempShellFile(QString const& fileId) const
{
    return download(pipeline::path("Orders/file/tempshell/%1", fileId));
}

TessalyConnectionInterface::Reply<CatalogUpdateInfo> TessalyConnection::getCatalogUpdateInfo(
    QString const& installationId, QVersionNumber const& version)
{
    return get<CatalogUpdateInfo>(
        (QStringLiteral("Installations/%1/catalog/") + version.toString()).arg(installationId));
}

KeloCommunicationLib::CatalogUpdateState TessalyConnection::getCatalogUpdateState(
    QString const& installationId, QVersionNumber const& version)
{
    rest::JsonReply const reply =
        getBlocking(pipeline::path("/Installations/%1/catalog/%2/status", installationId, version.toString()));
    return rest::isNetworkError(reply)
               ? KeloCommunicationLib::CatalogUpdateState::NoUpdate
               : jsonSerializer::fromJson<CatalogUpdateInfo>(reply->body().object()).getUpdateStatus();
}
