#include <KeloCommunicationLib/connection/TessalyConnection.h>

#include <memory>
#include <utility>

#include <KeloCommunicationLib/connection/internal/RequestPipeline.h>
#include <platform/core/HostInfo.h>

TessalyConnection::TessalyConnection() = default;

TessalyConnection::~TessalyConnection() = default;

std::unique_ptr<TessalyConnection> TessalyConnection::makeConnection(
    QUrl const& baseUrl, QString const& username, QString const& password)
{
    std::unique_ptr<TessalyConnection> connection(new TessalyConnection);
    connection->setUseProxyAutoDiscovery(HostInfo::getHTTPProxyAutoDiscovery());
    connection->initialize(baseUrl, username, password, QString());
    return connection;
}

std::unique_ptr<TessalyConnection> TessalyConnection::makeDefaultConnection()
{
    QString const password = HostInfo::getKELOPassword();
    QString const username = HostInfo::getKELOUsername();
    QUrl const baseUrl = HostInfo::getTessalyHostApiUrl();
    return makeConnection(baseUrl, username, password);
}

std::shared_ptr<rest::NetworkReply<QJsonDocument>> TessalyConnection::postRequest(rest::HttpRequestData&& request) const
{
    return httpConnection().send(std::move(request));
}

std::shared_ptr<rest::NetworkReply<QJsonDocument>> TessalyConnection::postRequest(
    QUrl const& url, QJsonValue const& body, std::chrono::milliseconds const& timeout) const
{
    return postRequest(rest::RequestDataCreator::makeRequestData(rest::HttpMethod::Post, url, body, timeout, true));
}

threading::Future<QByteArray> TessalyConnection::download(QString const& path) const
{
    return KeloCommunicationLib::internal::download(*this, QUrl(path, QUrl::TolerantMode));
}
