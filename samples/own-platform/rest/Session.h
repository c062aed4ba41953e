#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <unordered_map>
#include <vector>

#include <QUrl>

#include <platform/rest/Connection.h>

#include "Network.h"

namespace rest
{

/// What a connection consists of. Its calls hold it, so that it outlives the connection for as long as one of them
/// ends.
class Session : public std::enable_shared_from_this<Session>
{
public:
    Session(std::unique_ptr<NetReplyErrorParser> parser, std::chrono::milliseconds defaultTimeout);

    void open(QUrl const& baseUrl, QString const& username, QString const& password);
    bool isOpen() const;
    /// Ends the pending calls as cancelled.
    void close();
    /// Returns when no other thread is completing a call.
    void awaitOtherThreads();
    void acceptAnyCertificate();
    void setTraceCallback(TraceCallback callback);
    void setUsesSystemProxies(bool use);
    std::shared_ptr<NetReplyErrorParser const> parser() const { return parser_; }

    FutureJsonReply request(HttpRequestData const& data);
    threading::Future<void> download(
        QUrl const& url, std::function<void(BinaryReply const&)> callback, std::chrono::milliseconds timeout);

private:
    template <class T>
    using Finish = std::function<void(Outcome, threading::Promise<T>&)>;

    /// Nothing if the request cannot be sent.
    std::optional<Exchange> exchangeFor(HttpRequestData const& data) const;
    template <class T>
    threading::Future<T> send(std::optional<Exchange> exchange, Finish<T> finish);
    /// False if the session is closed.
    bool add(Network::CallId id, std::function<void()> cancel);
    void complete(Network::CallId id, Outcome const& outcome, std::function<void()> const& finish);
    void abandon(Network::CallId id);
    bool beginCompletion(Network::CallId id);
    void endCompletion();
    void trace(std::vector<TraceData> const& traces) const;

    std::shared_ptr<NetReplyErrorParser const> const parser_;
    std::chrono::milliseconds const defaultTimeout_;
    std::shared_ptr<Network> const network_ = Network::instance();
    std::shared_ptr<QNetworkAccessManager> const manager_ = network_->makeManager();
    std::shared_ptr<QElapsedTimer> const sinceLastHeard_ = std::make_shared<QElapsedTimer>(); ///< network thread's

    mutable std::mutex mutex_;
    std::condition_variable completed_;
    std::optional<QUrl> baseUrl_;
    QByteArray authorization_;
    bool verifiesCertificates_ = true;
    bool usesSystemProxies_ = false;
    TraceCallback traceCallback_;
    std::unordered_map<Network::CallId, std::function<void()>> pending_; ///< how to cancel the calls that are out
    std::vector<std::thread::id> completing_;                            ///< the threads that complete calls
};

} // namespace rest
