#include "Session.h"

#include <algorithm>
#include <utility>

#include <QCoreApplication>
#include <QNetworkAccessManager>
#include <QSslConfiguration>

namespace rest
{

namespace
{

constexpr qint64 replySizeLimit = qint64(256) * 1024 * 1024;

QUrl joined(QUrl const& base, QUrl const& relative)
{
    if (relative.isEmpty())
    {
        return base;
    }
    // What looks like another address, or like a fragment, is part of the path: ids come from outside.
    QByteArray path = relative.toEncoded().replace('#', "%23");
    while (path.startsWith('/'))
    {
        path.remove(0, 1);
    }
    return QUrl::fromEncoded(base.toEncoded(QUrl::RemoveQuery | QUrl::StripTrailingSlash) + '/' + path);
}

QNetworkRequest requestFor(QUrl const& url)
{
    QNetworkRequest request(url);
    request.setRawHeader("Accept", "application/json");
    // Over HTTP/2 a server may refuse what is under way when it closes a connection.
    request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
    // The headers of a redirected request are those of the first one, credentials included.
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    // The limit on replies counts what is unpacked.
    request.setDecompressedSafetyCheckThreshold(-1);
    return request;
}

int classOf(Outcome const& outcome)
{
    if (!outcome.errorText.isEmpty())
    {
        return 2;
    }
    return outcome.httpStatus >= 200 && outcome.httpStatus < 300 ? 0 : 1;
}

template <class Body>
std::shared_ptr<NetworkReply<Body>> replyOf(Outcome const& outcome, Body body)
{
    int const kind = classOf(outcome);
    int const code = kind == 2 ? outcome.error : kind * outcome.httpStatus;
    QString const text = kind == 1 ? QStringLiteral("The service answered with HTTP status %1.").arg(outcome.httpStatus)
                                   : outcome.errorText;
    return std::make_shared<NetworkReply<Body>>(outcome.httpStatus, kind, code, text, std::move(body));
}

Outcome notSent()
{
    Outcome outcome;
    outcome.error = QNetworkReply::OperationCanceledError;
    outcome.errorText = QStringLiteral("The request was not sent: there is no connection, or its URL is none.");
    return outcome;
}

void guarded(std::function<void()> const& call)
{
    try
    {
        call();
    }
    catch (...)
    {
        threading::impl::logException();
    }
}

} // namespace

Session::Session(std::unique_ptr<NetReplyErrorParser> parser, std::chrono::milliseconds defaultTimeout)
    : parser_(std::move(parser)), defaultTimeout_(defaultTimeout)
{
}

void Session::open(QUrl const& baseUrl, QString const& username, QString const& password)
{
    bool const isHttp = baseUrl.scheme() == QLatin1String("http") || baseUrl.scheme() == QLatin1String("https");
    bool const isUsable = baseUrl.isValid() && isHttp && !baseUrl.host().isEmpty();
    std::lock_guard const lock(mutex_);
    baseUrl_ = isUsable ? std::optional(baseUrl.adjusted(QUrl::RemoveUserInfo | QUrl::RemoveFragment)) : std::nullopt;
    authorization_ = username.isEmpty() ? QByteArray() : "Basic " + (username + ':' + password).toUtf8().toBase64();
}

bool Session::isOpen() const
{
    std::lock_guard const lock(mutex_);
    return baseUrl_.has_value();
}

void Session::close()
{
    std::unique_lock lock(mutex_);
    baseUrl_.reset();
    auto const pending = std::exchange(pending_, {});
    lock.unlock();
    for (auto const& [id, cancel] : pending)
    {
        cancel();
    }
}

void Session::awaitOtherThreads()
{
    threading::Waiting const waiting;
    auto const isThisThread = [self = std::this_thread::get_id()](std::thread::id thread) { return thread == self; };
    std::unique_lock lock(mutex_);
    completed_.wait(lock, [&] { return std::all_of(completing_.begin(), completing_.end(), isThisThread); });
}

void Session::acceptAnyCertificate()
{
    std::lock_guard const lock(mutex_);
    verifiesCertificates_ = false;
}

void Session::setTraceCallback(TraceCallback callback)
{
    std::lock_guard const lock(mutex_);
    traceCallback_.swap(callback);
}

void Session::setUsesSystemProxies(bool use)
{
    std::lock_guard const lock(mutex_);
    usesSystemProxies_ = use;
}

FutureJsonReply Session::request(HttpRequestData const& data)
{
    return send<JsonReply>(
        exchangeFor(data), [](Outcome const& outcome, threading::Promise<JsonReply>& promise)
        { promise.setValue(replyOf(outcome, QJsonDocument::fromJson(outcome.body))); });
}

threading::Future<void> Session::download(
    QUrl const& url, std::function<void(BinaryReply const&)> callback, std::chrono::milliseconds timeout)
{
    HttpRequestData data;
    data.url = url;
    data.timeout = timeout;
    auto exchange = exchangeFor(data);
    if (exchange)
    {
        exchange->isTransfer = true;
    }
    return send<void>(
        std::move(exchange),
        [callback = std::move(callback)](Outcome const& outcome, threading::Promise<void>& promise)
        {
            callback(replyOf(outcome, outcome.body));
            promise.setValue();
        });
}

std::optional<Exchange> Session::exchangeFor(HttpRequestData const& data) const
{
    std::lock_guard const lock(mutex_);
    // Qt delivers no events without an application, so that the call would never end.
    if (!baseUrl_ || !data.url.errorString().isEmpty() || QCoreApplication::instance() == nullptr)
    {
        return std::nullopt;
    }
    Exchange exchange;
    exchange.manager = manager_;
    exchange.method = data.method;
    exchange.request = requestFor(joined(*baseUrl_, data.url));
    if (data.authenticated && !authorization_.isEmpty())
    {
        exchange.request.setRawHeader("Authorization", authorization_);
    }
    if (data.method != HttpMethod::Get)
    {
        exchange.body = data.body.value_or(QByteArray());
        exchange.isTransfer = data.body && !data.isJson;
        exchange.request.setHeader(
            QNetworkRequest::ContentTypeHeader,
            exchange.isTransfer ? QStringLiteral("application/octet-stream") : QStringLiteral("application/json"));
    }
    if (!verifiesCertificates_)
    {
        QSslConfiguration tls = exchange.request.sslConfiguration();
        tls.setPeerVerifyMode(QSslSocket::VerifyNone);
        exchange.request.setSslConfiguration(tls);
    }
    exchange.timeout = data.timeout.count() > 0 ? data.timeout : defaultTimeout_;
    exchange.usesSystemProxies = usesSystemProxies_;
    exchange.replySizeLimit = replySizeLimit;
    exchange.sinceLastHeard = sinceLastHeard_;
    return exchange;
}

template <class T>
threading::Future<T> Session::send(std::optional<Exchange> exchange, Finish<T> finish)
{
    auto const promise = std::make_shared<threading::Promise<T>>();
    threading::Future<T> const future = promise->future();
    auto const id = network_->nextId();
    if (!exchange || !add(id, [future] { future.cancel(); }))
    {
        guarded([&] { finish(notSent(), *promise); });
        return future;
    }
    promise->onCancel(
        [id, weak = weak_from_this()]
        {
            if (auto const self = weak.lock())
            {
                self->abandon(id);
            }
        });
    // Not held by the network thread, which must not be the one to destroy it.
    auto const done = [weak = weak_from_this(), id, promise, finish = std::move(finish)](Outcome const& outcome)
    {
        if (auto const self = weak.lock())
        {
            threading::workers().start([=] { self->complete(id, outcome, [&] { finish(outcome, *promise); }); });
        }
    };
    network_->start(id, std::move(*exchange), done);
    return future;
}

bool Session::add(Network::CallId id, std::function<void()> cancel)
{
    std::lock_guard const lock(mutex_);
    // Closed meanwhile, nobody would cancel it any more.
    if (!baseUrl_)
    {
        return false;
    }
    pending_.emplace(id, std::move(cancel));
    return true;
}

void Session::complete(Network::CallId id, Outcome const& outcome, std::function<void()> const& finish)
{
    if (!beginCompletion(id))
    {
        return;
    }
    trace(outcome.traces);
    // The hook may have closed the connection; the call is then cancelled with its promise.
    if (isOpen())
    {
        guarded(finish);
    }
    endCompletion();
}

void Session::abandon(Network::CallId id)
{
    {
        std::lock_guard const lock(mutex_);
        pending_.erase(id);
    }
    network_->abort(id);
}

bool Session::beginCompletion(Network::CallId id)
{
    std::lock_guard const lock(mutex_);
    if (pending_.erase(id) == 0)
    {
        return false;
    }
    completing_.push_back(std::this_thread::get_id());
    return true;
}

void Session::endCompletion()
{
    std::lock_guard const lock(mutex_);
    completing_.erase(std::find(completing_.begin(), completing_.end(), std::this_thread::get_id()));
    completed_.notify_all();
}

void Session::trace(std::vector<TraceData> const& traces) const
{
    std::unique_lock lock(mutex_);
    TraceCallback const callback = traceCallback_;
    lock.unlock();
    for (TraceData const& data : traces)
    {
        // The host's hook may not cost the caller its answer.
        guarded(
            [&]
            {
                if (callback)
                {
                    callback(data);
                }
            });
    }
}

} // namespace rest
