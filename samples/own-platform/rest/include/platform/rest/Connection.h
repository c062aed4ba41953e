#pragma once

#include <chrono>
#include <functional>
#include <memory>

#include <QObject>
#include <QString>
#include <QUrl>

#include <platform/rest/HttpRequestData.h>
#include <platform/rest/NetReplyErrorParser.h>
#include <platform/rest/NetworkReply.h>
#include <platform/rest/TraceData.h>
#include <platform/threading/Future.h>

namespace rest
{

/// True where this header is reached, and no other of its name.
inline constexpr bool isHostsOwn = true;

class Session;

using TraceCallback = std::function<void(TraceData const&)>;

/// The blocking face of a connection.
class Client
{
public:
    explicit Client(std::shared_ptr<Session> session);

    /// Never null.
    JsonReply send(HttpRequestData const& data) const;

private:
    std::shared_ptr<Session> session_;
};

/// A session with one service, over Qt's access manager in a thread of its own. Needs an application object, but no
/// event loop of its caller's.
class Connection : public QObject
{
    Q_OBJECT

public:
    Connection(
        std::unique_ptr<NetReplyErrorParser> parser, std::chrono::milliseconds defaultTimeout,
        QObject* parent = nullptr);
    ~Connection() override;

    virtual bool isConnected() const;
    virtual void closeConnection();
    virtual void initialize(QUrl baseUrl, QString const& username, QString const& password, QString const& extra);
    virtual void disableCertificateChecking();

    void setTraceCallback(TraceCallback callback);
    void setUseProxyAutoDiscovery(bool use);

    FutureJsonReply request(HttpRequestData const& data) const;
    threading::Future<void> downloadBinary(
        QUrl const& url, std::function<void(BinaryReply const&)> callback, std::chrono::milliseconds timeout) const;
    Client httpConnection() const;
    std::shared_ptr<NetReplyErrorParser const> getErrorParser() const;

private:
    std::shared_ptr<Session> session_;
};

} // namespace rest
