#pragma once

#include <chrono>
#include <functional>
#include <memory>

#include <QObject>
#include <QString>
#include <QUrl>

#include <platform/rest/Client.h>
#include <platform/rest/Export.h>
#include <platform/rest/HttpRequestData.h>
#include <platform/rest/NetReplyErrorParser.h>
#include <platform/rest/NetworkReply.h>
#include <platform/rest/TraceData.h>
#include <platform/threading/Future.h>

namespace rest
{

using TraceCallback = std::function<void(TraceData const&)>;

/// One authenticated HTTP session with one service. Requests may be sent from any thread, need no event loop, and run
/// on a process-wide I/O thread. A POST or PUT is put on the wire at most once. Destroying the connection ends its
/// pending calls as cancelled before the destructor returns and waits for continuations of its calls that are running
/// on another thread.
class PLATFORM_REST_EXPORT Connection : public QObject
{
    Q_OBJECT

public:
    /// `defaultTimeout` applies to requests whose own time-out is 0.
    Connection(
        std::unique_ptr<NetReplyErrorParser> parser, std::chrono::milliseconds defaultTimeout,
        QObject* parent = nullptr);
    ~Connection() override;

    /// True from `initialize` with an http or https base URL until `closeConnection`.
    virtual bool isConnected() const;
    /// Ends the pending calls as cancelled. Later requests end as network errors until `initialize` is called again.
    virtual void closeConnection();
    /// Sets the base URL and the credentials, sent as pre-emptive Basic authentication to the base URL's origin only;
    /// no user name, no authentication. `extra` is not used by this implementation. Nothing is sent yet; an unusable
    /// base URL makes every request end as a network error.
    virtual void initialize(QUrl baseUrl, QString const& username, QString const& password, QString const& extra);
    /// Accepts any server certificate from now on. For hosts with a test service; nothing in this library calls it.
    virtual void disableCertificateChecking();
    /// Trusts the certificates in a PEM file beside the system's, on this connection only: of authorities, for instance
    /// that of an inspecting proxy, or of a server itself. Everything else about a certificate is checked as before.
    /// The file is read at once and counts for requests made from now on; a later change of the file does not, until
    /// this is called again. While a file that cannot be read or has no certificate is set, every request ends as a
    /// network error that says so, and nothing is sent. An empty name: the system's alone.
    void setExtraCertificates(QString const& pemFile);

    /// Called once for each finished exchange, on the thread that finishes it, before its future; several threads may
    /// do so at the same time. An empty function ends tracing.
    void setTraceCallback(TraceCallback callback);
    /// Whether the system's proxies are used (loopback is always reached directly). Off, no proxy is.
    void setUseProxyAutoDiscovery(bool use);
    /// Replaces the constructor's default time-out for requests made from now on; 0 or less means 30 s.
    void setDefaultTimeout(std::chrono::milliseconds timeout);
    /// Replies with more body bytes, counted after decompression, end as network errors. 256 MiB unless set.
    void setReplySizeLimit(qint64 bytes);

    /// Sends a request. The reply's body is the JSON document, empty when the answer was not JSON.
    FutureJsonReply request(HttpRequestData data) const;
    /// Fetches a URL's body as bytes and hands the reply to `callback` on the finishing thread. The returned future
    /// finishes after that; cancelled, it aborts the transfer and `callback` is not called. `timeout` bounds the time
    /// without progress; 0 means the connection's own.
    threading::Future<void> downloadBinary(
        QUrl const& url, std::function<void(BinaryReply const&)> callback, std::chrono::milliseconds timeout) const;
    /// Fetches a URL's body into the file `path`, which gets it as it comes, decompressed; its size is not limited. The
    /// file is there, in the place of a former one, when the future finishes with HTTP status 200; in all other cases
    /// nothing has changed there. An error's body is in the reply. If the file cannot be written, the reply is a
    /// network error with an error number below 0; a file that cannot be made is found out before anything is sent.
    /// `timeout` as above. The folder holds a file with a name of its own meanwhile.
    threading::Future<BinaryReply> downloadTo(
        QUrl const& url, QString const& path, std::chrono::milliseconds timeout) const;

    /// The blocking face of this connection.
    Client httpConnection() const;
    /// The parser given at construction. Handles on it may outlive the connection.
    std::shared_ptr<NetReplyErrorParser const> getErrorParser() const;

private:
    std::shared_ptr<Session> session_;
};

} // namespace rest
