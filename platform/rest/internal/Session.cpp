#include <platform/rest/internal/Session.h>

#include <QFile>

#include <platform/rest/internal/FileTarget.h>
#include <platform/rest/internal/IoThread.h>
#include <platform/rest/internal/Mapping.h>
#include <platform/rest/internal/Redaction.h>

namespace rest
{

namespace
{

constexpr std::chrono::milliseconds fallbackTimeout{30000};
constexpr qint64 certificatesLimit = qint64(16) * 1024 * 1024;

std::chrono::milliseconds positiveOr(std::chrono::milliseconds timeout, std::chrono::milliseconds fallback)
{
    return timeout.count() > 0 ? timeout : fallback;
}

void fillContent(Request& request, HttpRequestData const& data)
{
    if (data.method == HttpMethod::Get)
    {
        return;
    }
    if (!data.rawBody.isNull())
    {
        request.content = Request::Content::Bytes;
        request.timeoutKind = Request::TimeoutKind::Idle;
        request.body = data.rawBody;
        request.file = Mapping::holding(data.rawBody);
    }
    else if (!data.jsonBody.isNull())
    {
        request.content = Request::Content::Json;
        request.body = data.jsonBody.toJson(QJsonDocument::Compact);
    }
}

void tell(Request const& request, TransferProgress const& progress)
{
    try
    {
        if (request.watcher)
        {
            (*request.watcher)(progress);
        }
    }
    catch (...)
    {
        threading::impl::reportContinuationException();
    }
}

} // namespace

Session::Session(std::unique_ptr<NetReplyErrorParser> parser, std::chrono::milliseconds defaultTimeout)
    : parser_(std::move(parser)), defaultTimeout_(positiveOr(defaultTimeout, fallbackTimeout))
{
}

void Session::open(QUrl const& baseUrl, QString const& username, QString const& password)
{
    {
        std::lock_guard const lock(mutex_);
        settings_.baseUrl = BaseUrl::from(baseUrl);
        settings_.username = username.toUtf8();
        settings_.password = password.toUtf8();
        if (!settings_.baseUrl)
        {
            settings_.refusal =
                QStringLiteral("The request was not sent: the base URL is not an http or https URL with a host.");
        }
    }
    calls_.open();
}

bool Session::isOpen() const
{
    std::lock_guard const lock(mutex_);
    return settings_.baseUrl.has_value();
}

void Session::close()
{
    {
        std::lock_guard const lock(mutex_);
        settings_.baseUrl.reset();
        settings_.refusal = QStringLiteral("The request was not sent: the connection is closed.");
    }
    auto const [completion, calls] = calls_.close();
    for (std::shared_ptr<Call> const& call : calls)
    {
        IoThread::instance().abort(call);
    }
    for (std::shared_ptr<Call> const& call : calls)
    {
        call->cancel();
    }
}

void Session::awaitOtherThreads()
{
    calls_.awaitOtherThreads();
}

void Session::acceptAnyCertificate()
{
    std::lock_guard const lock(mutex_);
    settings_.verifiesCertificates = false;
}

void Session::setExtraCertificates(QString const& pemFile)
{
    std::shared_ptr<TrustStore> trust = TrustStore::system();
    QString problem;
    if (!pemFile.isEmpty())
    {
        QFile file(pemFile);
        bool const isOpen = file.open(QIODevice::ReadOnly);
        trust = isOpen ? TrustStore::withCertificates(file.read(certificatesLimit)) : nullptr;
        problem = isOpen ? QStringLiteral("it holds no certificate in PEM form, or a damaged one") : file.errorString();
    }
    std::lock_guard const lock(mutex_);
    settings_.trust = std::move(trust);
    settings_.trustProblem =
        QStringLiteral("The request was not sent: the certificates in %1 cannot be used: %2.").arg(pemFile, problem);
}

void Session::setTraceCallback(TraceCallback callback)
{
    auto shared = callback ? std::make_shared<TraceCallback const>(std::move(callback)) : nullptr;
    // The former callback is destroyed after the lock is released.
    std::lock_guard const lock(mutex_);
    traceCallback_.swap(shared);
}

void Session::setUsesSystemProxies(bool use)
{
    std::lock_guard const lock(mutex_);
    settings_.usesSystemProxies = use;
}

void Session::setDefaultTimeout(std::chrono::milliseconds timeout)
{
    defaultTimeout_ = positiveOr(timeout, fallbackTimeout);
}

void Session::setReplySizeLimit(qint64 bytes)
{
    std::lock_guard const lock(mutex_);
    settings_.replySizeLimit = bytes;
}

std::shared_ptr<NetReplyErrorParser const> Session::parser() const
{
    return parser_;
}

FutureJsonReply Session::request(HttpRequestData data)
{
    Request request;
    request.method = data.method;
    request.timeout = positiveOr(data.timeout, defaultTimeout_.load());
    fillContent(request, data);
    auto const refusal = prepare(request, data.url, data.authenticated);
    auto const call = std::make_shared<JsonCall>(shared_from_this(), std::move(request));
    FutureJsonReply future = call->future();
    send(call, refusal);
    return future;
}

threading::Future<void> Session::download(
    QUrl const& url, DownloadCall::Callback callback, std::chrono::milliseconds timeout)
{
    Request request;
    request.timeout = positiveOr(timeout, defaultTimeout_.load());
    request.timeoutKind = Request::TimeoutKind::Idle;
    request.isDownload = true;
    auto const refusal = prepare(request, url, true);
    auto const call = std::make_shared<DownloadCall>(shared_from_this(), std::move(request), std::move(callback));
    threading::Future<void> future = call->future();
    send(call, refusal);
    return future;
}

threading::Future<BinaryReply> Session::downloadTo(
    QUrl const& url, QString const& path, std::chrono::milliseconds timeout)
{
    Request request;
    request.timeout = positiveOr(timeout, defaultTimeout_.load());
    request.timeoutKind = Request::TimeoutKind::Idle;
    request.isDownload = true;
    auto refusal = prepare(request, url, true);
    request.target = std::make_shared<FileTarget>(path);
    if (!refusal && !request.target->open())
    {
        refusal = QStringLiteral("The request was not sent: %1").arg(request.target->failureText());
    }
    auto const call = std::make_shared<FileCall>(shared_from_this(), std::move(request));
    threading::Future<BinaryReply> future = call->future();
    send(call, refusal);
    return future;
}

std::optional<QString> Session::prepare(Request& request, QUrl const& url, bool authenticated) const
{
    request.watcher = ProgressScope::current();
    std::unique_lock lock(mutex_);
    if (!settings_.baseUrl)
    {
        return settings_.refusal;
    }
    if (!settings_.trust)
    {
        return settings_.trustProblem;
    }
    BaseUrl const base = *settings_.baseUrl;
    if (authenticated)
    {
        request.username = settings_.username;
        request.password = settings_.password;
    }
    request.replySizeLimit = settings_.replySizeLimit;
    request.verifiesCertificates = settings_.verifiesCertificates;
    request.trust = settings_.verifiesCertificates ? settings_.trust : nullptr;
    request.usesSystemProxies = settings_.usesSystemProxies;
    request.isTraced = traceCallback_ != nullptr;
    lock.unlock();

    auto joined = joinUrl(base, url);
    if (!joined)
    {
        return QStringLiteral("The request was not sent: its URL is not valid.");
    }
    request.url = std::move(*joined);
    request.origin = base.origin;
    return std::nullopt;
}

void Session::send(std::shared_ptr<Call> const& call, std::optional<QString> const& refusal)
{
    if (refusal || !calls_.add(call))
    {
        Outcome outcome;
        outcome.error = static_cast<int>(LocalError::NotSent);
        outcome.errorText = refusal.value_or(QStringLiteral("The request was not sent: the connection is closed."));
        call->complete(std::move(outcome));
        return;
    }
    call->watchCancellation();
    if (!IoThread::instance().submit(call))
    {
        cancel(call);
    }
}

void Session::complete(std::shared_ptr<Call> const& call, Outcome outcome)
{
    if (auto const completion = calls_.take(call))
    {
        redactCredentials(outcome, call->request());
        tell(call->request(), call->progress.atEnd());
        trace(outcome.traces);
        // The trace callback may have closed or destroyed the connection, to whose continuations the reply would come
        // too late.
        calls_.isOpen() ? call->complete(std::move(outcome)) : call->cancel();
    }
}

void Session::report(std::shared_ptr<Call> const& call, TransferProgress const& progress)
{
    if (auto const visit = calls_.visit(call))
    {
        tell(call->request(), progress);
    }
}

void Session::cancel(std::shared_ptr<Call> const& call)
{
    if (auto const completion = calls_.take(call))
    {
        call->cancel();
    }
}

void Session::abandon(std::shared_ptr<Call> const& call)
{
    if (calls_.remove(call))
    {
        call->cancel();
        IoThread::instance().abort(call);
    }
}

void Session::trace(std::vector<TraceData> const& traces) const
{
    std::unique_lock lock(mutex_);
    std::shared_ptr<TraceCallback const> const callback = traceCallback_;
    lock.unlock();
    for (TraceData const& data : traces)
    {
        try
        {
            if (callback)
            {
                (*callback)(data);
            }
        }
        catch (...)
        {
            threading::impl::reportContinuationException();
        }
    }
}

} // namespace rest
