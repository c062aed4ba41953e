#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>

#include <platform/rest/Connection.h>
#include <platform/rest/internal/Call.h>
#include <platform/rest/internal/CallRegistry.h>
#include <platform/rest/internal/Calls.h>
#include <platform/rest/internal/TrustStore.h>
#include <platform/rest/internal/UrlJoin.h>

namespace rest
{

/// What a connection, its blocking clients and its calls share. It outlives the connection as long as one of them needs
/// it.
class Session : public std::enable_shared_from_this<Session>
{
public:
    Session(std::unique_ptr<NetReplyErrorParser> parser, std::chrono::milliseconds defaultTimeout);

    void open(QUrl const& baseUrl, QString const& username, QString const& password);
    bool isOpen() const;
    /// Ends the pending calls as cancelled, on this thread.
    void close();
    /// Returns once no other thread ends calls of this session.
    void awaitOtherThreads();

    void acceptAnyCertificate();
    void setExtraCertificates(QString const& pemFile);
    void setTraceCallback(TraceCallback callback);
    void setUsesSystemProxies(bool use);
    void setDefaultTimeout(std::chrono::milliseconds timeout);
    void setReplySizeLimit(qint64 bytes);
    std::shared_ptr<NetReplyErrorParser const> parser() const;

    FutureJsonReply request(HttpRequestData data);
    threading::Future<void> download(
        QUrl const& url, DownloadCall::Callback callback, std::chrono::milliseconds timeout);
    threading::Future<BinaryReply> downloadTo(QUrl const& url, QString const& path, std::chrono::milliseconds timeout);

    /// The transport's ways to end a call; without effect if the call has ended otherwise.
    void complete(std::shared_ptr<Call> const& call, Outcome outcome);
    void cancel(std::shared_ptr<Call> const& call);
    /// Tells the call's watcher, unless the call has ended.
    void report(std::shared_ptr<Call> const& call, TransferProgress const& progress);
    /// The consumer has ended the call.
    void abandon(std::shared_ptr<Call> const& call);

private:
    struct Settings
    {
        std::optional<BaseUrl> baseUrl;
        QByteArray username;
        QByteArray password;
        QString refusal = QStringLiteral("The request was not sent: the connection is not initialised.");
        qint64 replySizeLimit = qint64(256) * 1024 * 1024;
        bool verifiesCertificates = true;
        std::shared_ptr<TrustStore> trust = TrustStore::system(); ///< null: the file named could not be read
        QString trustProblem;
        bool usesSystemProxies = false;
    };

    /// Fills in what the connection's settings say; a sentence when the request cannot be sent.
    std::optional<QString> prepare(Request& request, QUrl const& url, bool authenticated) const;
    void send(std::shared_ptr<Call> const& call, std::optional<QString> const& refusal);
    void trace(std::vector<TraceData> const& traces) const;

    std::shared_ptr<NetReplyErrorParser const> const parser_;
    std::atomic<std::chrono::milliseconds> defaultTimeout_;
    CallRegistry calls_;
    mutable std::mutex mutex_;
    Settings settings_;
    std::shared_ptr<TraceCallback const> traceCallback_;
};

} // namespace rest
