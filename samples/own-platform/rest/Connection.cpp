#include <platform/rest/Connection.h>

#include "Session.h"

namespace rest
{

Client::Client(std::shared_ptr<Session> session) : session_(std::move(session)) {}

JsonReply Client::send(HttpRequestData const& data) const
{
    if (JsonReply reply = session_->request(data).get())
    {
        return reply;
    }
    QString text = QStringLiteral("The connection was closed before the answer came.");
    if (data.method != HttpMethod::Get)
    {
        text += QStringLiteral(" The server may have processed the request.");
    }
    return std::make_shared<NetworkReply<QJsonDocument>>(0, 2, 0, text, QJsonDocument());
}

Connection::Connection(
    std::unique_ptr<NetReplyErrorParser> parser, std::chrono::milliseconds defaultTimeout, QObject* parent)
    : QObject(parent), session_(std::make_shared<Session>(std::move(parser), defaultTimeout))
{
}

Connection::~Connection()
{
    session_->close();
    session_->awaitOtherThreads();
    session_->setTraceCallback({});
}

bool Connection::isConnected() const
{
    return session_->isOpen();
}

void Connection::closeConnection()
{
    session_->close();
}

void Connection::initialize(QUrl baseUrl, QString const& username, QString const& password, QString const&)
{
    session_->open(baseUrl, username, password);
}

void Connection::disableCertificateChecking()
{
    session_->acceptAnyCertificate();
}

void Connection::setTraceCallback(TraceCallback callback)
{
    session_->setTraceCallback(std::move(callback));
}

void Connection::setUseProxyAutoDiscovery(bool use)
{
    session_->setUsesSystemProxies(use);
}

FutureJsonReply Connection::request(HttpRequestData const& data) const
{
    return session_->request(data);
}

threading::Future<void> Connection::downloadBinary(
    QUrl const& url, std::function<void(BinaryReply const&)> callback, std::chrono::milliseconds timeout) const
{
    return session_->download(url, std::move(callback), timeout);
}

Client Connection::httpConnection() const
{
    return Client(session_);
}

std::shared_ptr<NetReplyErrorParser const> Connection::getErrorParser() const
{
    return session_->parser();
}

} // namespace rest
