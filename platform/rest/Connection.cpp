#include <platform/rest/Connection.h>

#include <platform/rest/internal/Session.h>

namespace rest
{

Connection::Connection(
    std::unique_ptr<NetReplyErrorParser> parser, std::chrono::milliseconds defaultTimeout, QObject* parent)
    : QObject(parent), session_(std::make_shared<Session>(std::move(parser), defaultTimeout))
{
}

Connection::~Connection()
{
    session_->close();
    session_->awaitOtherThreads();
    // What the host's callback holds dies here and not with the last handle on the session, on whatever thread that may
    // be.
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

void Connection::initialize(
    QUrl baseUrl, QString const& username, QString const& password, [[maybe_unused]] QString const& extra)
{
    session_->open(baseUrl, username, password);
}

void Connection::disableCertificateChecking()
{
    session_->acceptAnyCertificate();
}

void Connection::setExtraCertificates(QString const& pemFile)
{
    session_->setExtraCertificates(pemFile);
}

void Connection::setTraceCallback(TraceCallback callback)
{
    session_->setTraceCallback(std::move(callback));
}

void Connection::setUseProxyAutoDiscovery(bool use)
{
    session_->setUsesSystemProxies(use);
}

void Connection::setDefaultTimeout(std::chrono::milliseconds timeout)
{
    session_->setDefaultTimeout(timeout);
}

void Connection::setReplySizeLimit(qint64 bytes)
{
    session_->setReplySizeLimit(bytes);
}

FutureJsonReply Connection::request(HttpRequestData data) const
{
    return session_->request(std::move(data));
}

threading::Future<void> Connection::downloadBinary(
    QUrl const& url, std::function<void(BinaryReply const&)> callback, std::chrono::milliseconds timeout) const
{
    return session_->download(url, std::move(callback), timeout);
}

threading::Future<BinaryReply> Connection::downloadTo(
    QUrl const& url, QString const& path, std::chrono::milliseconds timeout) const
{
    return session_->downloadTo(url, path, timeout);
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
