#include <platform/rest/internal/Transfer.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>

#include <platform/rest/internal/FailedExchange.h>
#include <platform/rest/internal/FileTarget.h>
#include <platform/rest/internal/Mapping.h>
#include <platform/rest/internal/ReplyBuffer.h>
#include <platform/rest/internal/TrustStore.h>

namespace rest
{

namespace
{

constexpr qsizetype headerLimit = qsizetype(256) * 1024;
constexpr int redirectLimit = 5;
constexpr qint64 largestReservation = qint64(16) * 1024 * 1024;

/// The request headers that differ between kinds of requests; made once, shared by all handles.
class HeaderLists
{
public:
    static curl_slist* of(Request const& request)
    {
        static HeaderLists const lists;
        if (request.method == HttpMethod::Get)
        {
            return request.isDownload ? nullptr : lists.read_;
        }
        switch (request.content)
        {
        case Request::Content::Json:
            return lists.json_;
        case Request::Content::Bytes:
            return lists.bytes_;
        case Request::Content::None:
            break;
        }
        return lists.empty_;
    }

private:
    static curl_slist* list(std::initializer_list<char const*> lines)
    {
        curl_slist* result = nullptr;
        for (char const* const line : lines)
        {
            result = curl_slist_append(result, line);
        }
        return result;
    }

    // A name without a value keeps libcurl from sending that header.
    curl_slist* const read_ = list({"Accept: application/json"});
    curl_slist* const json_ = list({"Accept: application/json", "Content-Type: application/json", "Expect:"});
    curl_slist* const bytes_ = list({"Accept: application/json", "Content-Type: application/octet-stream", "Expect:"});
    curl_slist* const empty_ = list({"Accept: application/json", "Content-Type:", "Expect:"});
};

/// Whether it is one of an answer; interim ones promise that it still comes.
bool isFinalStatus(int number)
{
    return number >= 200 && number <= 999;
}

bool isRedirect(long status)
{
    return status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
}

} // namespace

Transfer::Transfer(std::shared_ptr<Call> call, OriginQueue& queue, CURLSH* share)
    : call_(std::move(call)),
      queue_(queue),
      share_(share),
      url_(call_->request().url),
      started_(Clock::now()),
      lastProgress_(started_)
{
    beginExchange();
}

template <class Value>
void Transfer::set(CURLoption option, Value value)
{
    curl_easy_setopt(handle(), option, value);
}

template <class Value>
Value Transfer::info(CURLINFO which) const
{
    Value value{};
    curl_easy_getinfo(handle(), which, &value);
    return value;
}

void Transfer::beginExchange()
{
    // libcurl 7.88 uses freed memory when a handle is not new and an answer's first header is a folded line.
    handle_.reset(curl_easy_init());
    attempts_ = 0;
    bodySent_ = 0;
    headerBytes_ = 0;
    isHeadComplete_ = false;
    isReused_ = false;
    isUnfit_ = false;
    body_.clear();
    decoder_.reset();
    call_->progress.restartReceiving();
    errorBuffer_[0] = '\0';
    configureConnection(call_->request());
    configureCallbacks();
    configureRequest(call_->request());
    set(CURLOPT_URL, url_.constData());
    trace_.reset();
    if (call_->request().isTraced)
    {
        trace_.emplace().attach(handle());
    }
}

void Transfer::configureConnection(Request const& request)
{
    Proxy const& proxy = *queue_.proxy;
    set(CURLOPT_PROTOCOLS_STR, "http,https");
    set(CURLOPT_NOSIGNAL, 1L);
    // Without it, ending a transfer would wait for a name look-up that still runs.
    set(CURLOPT_QUICK_EXIT, 1L);
    set(CURLOPT_TCP_NODELAY, 1L);
    // Over HTTP/2 libcurl 7.88 cannot tell a request that the server refused from one that it may have processed.
    set(CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
    set(CURLOPT_SHARE, share_);
    set(CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2));
    set(CURLOPT_SSL_VERIFYPEER, request.verifiesCertificates ? 1L : 0L);
    set(CURLOPT_SSL_VERIFYHOST, request.verifiesCertificates ? 2L : 0L);
    if (request.trust)
    {
        request.trust->attach(handle());
    }
    // Set even when empty: libcurl must not look at the environment's proxies itself.
    set(CURLOPT_PROXY, proxy.address.isEmpty() ? "" : proxy.address.constData());
    set(CURLOPT_NOPROXY, "");
    set(CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
    if (!proxy.username.isEmpty())
    {
        set(CURLOPT_PROXYUSERNAME, proxy.username.constData());
        set(CURLOPT_PROXYPASSWORD, proxy.password.constData());
    }
}

void Transfer::configureCallbacks()
{
    // libcurl calls them on the I/O thread only, from within `curl_multi_perform`.
    using Self = Transfer*;
    set(CURLOPT_PRIVATE, this);
    set(CURLOPT_ERRORBUFFER, errorBuffer_.data());
    set(CURLOPT_WRITEDATA, this);
    set(
        CURLOPT_WRITEFUNCTION, +[](char* data, std::size_t, std::size_t size, void* self)
                               { return static_cast<Self>(self)->writeBody(data, size); });
    set(CURLOPT_HEADERDATA, this);
    set(
        CURLOPT_HEADERFUNCTION, +[](char* line, std::size_t, std::size_t size, void* self)
                                { return static_cast<Self>(self)->takeHeader(line, size); });
    set(CURLOPT_PREREQDATA, this);
    set(
        CURLOPT_PREREQFUNCTION, +[](void* self, char*, char*, int, int localPort)
                                { return static_cast<Self>(self)->beforeRequest(localPort); });
    set(CURLOPT_OPENSOCKETDATA, this);
    set(
        CURLOPT_OPENSOCKETFUNCTION, +[](void* self, curlsocktype, curl_sockaddr* address)
                                    { return static_cast<Self>(self)->openSocket(*address); });
    // The connection may outlive this transfer, but not its origin's queue.
    set(CURLOPT_CLOSESOCKETDATA, &queue_.connections);
    set(
        CURLOPT_CLOSESOCKETFUNCTION,
        +[](void* self, curl_socket_t socket) { return static_cast<Connections*>(self)->close(socket); });
    set(CURLOPT_READDATA, this);
    set(
        CURLOPT_READFUNCTION, +[](char* buffer, std::size_t, std::size_t capacity, void* self)
                              { return static_cast<Self>(self)->readBody(buffer, capacity); });
}

void Transfer::configureRequest(Request const& request)
{
    set(CURLOPT_PATH_AS_IS, 1L);
    set(CURLOPT_ACCEPT_ENCODING, ContentDecoder::offered);
    set(CURLOPT_HTTP_CONTENT_DECODING, 0L);
    set(CURLOPT_USERAGENT, KELO_USER_AGENT);
    set(CURLOPT_HTTPHEADER, HeaderLists::of(request));
    if (!request.username.isEmpty())
    {
        set(CURLOPT_HTTPAUTH, static_cast<long>(CURLAUTH_BASIC));
        set(CURLOPT_USERNAME, request.username.constData());
        set(CURLOPT_PASSWORD, request.password.constData());
    }
    if (!isWrite())
    {
        return;
    }
    // A body that is read without a way to rewind cannot be sent twice. An empty one could be, but not on a connection
    // that is new.
    auto const size = static_cast<curl_off_t>(request.body.size());
    if (request.method == HttpMethod::Put)
    {
        set(CURLOPT_UPLOAD, 1L);
        set(CURLOPT_INFILESIZE_LARGE, size);
    }
    else
    {
        set(CURLOPT_POST, 1L);
        set(CURLOPT_POSTFIELDSIZE_LARGE, size);
    }
    set(CURLOPT_FRESH_CONNECT, size == 0 ? 1L : 0L);
}

bool Transfer::isWrite() const
{
    return call_->request().method != HttpMethod::Get;
}

Clock::time_point Transfer::deadline() const
{
    Request const& request = call_->request();
    bool const isTotal = request.timeoutKind == Request::TimeoutKind::Total;
    return timeOut(isTotal ? started_ : lastProgress_, request.timeout);
}

void Transfer::markTimedOut()
{
    failure_ = Failure::TimedOut;
}

bool Transfer::beginNext(CURLcode result)
{
    judgeConnection(result);
    if (isUnfit_ && failure_ == Failure::None)
    {
        beginExchange();
        return true;
    }
    if (!isRedirected(result))
    {
        return false;
    }
    if (trace_)
    {
        traces_.push_back(trace_->finish(handle(), *call_, url_));
        traces_.back().responseBody = body_;
    }
    ++redirects_;
    url_ = QUrl::fromEncoded(info<char const*>(CURLINFO_REDIRECT_URL))
               .adjusted(QUrl::RemoveUserInfo | QUrl::RemoveFragment)
               .toEncoded();
    beginExchange();
    return true;
}

void Transfer::judgeConnection(CURLcode result)
{
    if (headerBytes_ > 0)
    {
        queue_.connections.answered(localPort_);
    }
    else if (result != CURLE_OK && isReused_ && !isUnfit_)
    {
        queue_.connections.foundDead(started_);
    }
}

bool Transfer::isRedirected(CURLcode result)
{
    char const* const location = info<char const*>(CURLINFO_REDIRECT_URL);
    if (result != CURLE_OK || isWrite() || location == nullptr || redirects_ == redirectLimit
        || !isRedirect(info<long>(CURLINFO_RESPONSE_CODE)))
    {
        return false;
    }
    QUrl const target = QUrl::fromEncoded(location);
    return target.isValid() && originOf(target) == call_->request().origin;
}

Outcome Transfer::end(CURLcode result)
{
    auto const status = static_cast<int>(info<long>(CURLINFO_RESPONSE_CODE));
    if (result == CURLE_OK && !isFinalStatus(status))
    {
        // libcurl takes any number behind "HTTP/2", and an interim answer that nothing follows.
        result = CURLE_WEIRD_SERVER_REPLY;
    }
    if (result == CURLE_OK && !isHeadComplete_)
    {
        // A head that ends early counts as one without a body for libcurl.
        result = CURLE_PARTIAL_FILE;
    }
    if (result == CURLE_OK && status == 407 && !queue_.proxy->address.isEmpty())
    {
        // Only a proxy answers so; the service has not seen the request.
        result = CURLE_PROXY;
    }
    if (failure_ == Failure::None && result == CURLE_OK && decoder_ && !decoder_->isComplete())
    {
        failure_ = Failure::BadCompression;
    }
    Outcome outcome;
    if (result != CURLE_OK || failure_ != Failure::None)
    {
        outcome.error = errorNumber(failure_, result);
        outcome.errorText = failureText(result, attempts_ > 0 && isWrite());
    }
    else
    {
        outcome.httpStatus = status;
        outcome.retryAfter = retryAfter(status);
        outcome.body = std::move(body_);
    }
    if (trace_)
    {
        traces_.push_back(trace_->finish(handle(), *call_, url_));
        traces_.back().responseBody = outcome.error == 0 ? outcome.body : body_;
        traces_.back().error = outcome.errorText;
        outcome.traces = std::move(traces_);
    }
    return outcome;
}

std::optional<std::chrono::seconds> Transfer::retryAfter(long status) const
{
    curl_off_t seconds = 0;
    if ((status != 429 && status != 503) || curl_easy_getinfo(handle(), CURLINFO_RETRY_AFTER, &seconds) != CURLE_OK
        || seconds <= 0)
    {
        return std::nullopt;
    }
    return std::chrono::seconds(seconds);
}

QString Transfer::failureText(CURLcode result, bool maybeProcessed) const
{
    FailedExchange const exchange{handle(),      result,        errorBuffer_.data(),
                                  attempts_ > 0, *queue_.proxy, call_->request()};
    QString text = failure_ == Failure::None ? exchange.description() : describeFailure(failure_, call_->request());
    if (maybeProcessed && result != CURLE_PROXY)
    {
        text += QStringLiteral(" The server may have processed the request.");
    }
    return text;
}

bool Transfer::wouldRepeatWrite()
{
    // libcurl repeats requests on its own when a kept connection dies early; a write is not repeated.
    bool const isRefused = attempts_ > 0 && isWrite();
    failure_ = isRefused ? Failure::WouldRepeatWrite : failure_;
    return isRefused;
}

curl_socket_t Transfer::openSocket(curl_sockaddr const& address)
{
    return wouldRepeatWrite() ? CURL_SOCKET_BAD : queue_.connections.open(address);
}

int Transfer::beforeRequest(long localPort)
{
    Connections& connections = queue_.connections;
    if (wouldRepeatWrite())
    {
        return CURL_PREREQFUNC_ABORT;
    }
    if (++attempts_ > 1)
    {
        connections.foundDead(started_);
    }
    localPort_ = localPort;
    isReused_ = info<long>(CURLINFO_NUM_CONNECTS) == 0;
    isUnfit_ = isReused_ && !connections.isFit(localPort, handle());
    if (isUnfit_)
    {
        return CURL_PREREQFUNC_ABORT;
    }
    bool const isTotal = call_->request().timeoutKind == Request::TimeoutKind::Total;
    connections.begin(localPort, isTotal ? Connections::acknowledgement : call_->request().timeout);
    return CURL_PREREQFUNC_OK;
}

std::size_t Transfer::readBody(char* buffer, std::size_t capacity)
{
    lastProgress_ = Clock::now();
    if (trace_)
    {
        trace_->bodyRead();
    }
    QByteArray const& body = call_->request().body;
    auto const count = std::min(static_cast<qsizetype>(capacity), body.size() - bodySent_);
    if (!copyBody(buffer, count))
    {
        return CURL_READFUNC_ABORT;
    }
    bodySent_ += count;
    call_->progress.setSent(bodySent_);
    return static_cast<std::size_t>(count);
}

bool Transfer::copyBody(char* buffer, qsizetype size)
{
    Request const& request = call_->request();
    char const* const place = request.body.constData() + bodySent_;
    if (request.file == nullptr)
    {
        std::memcpy(buffer, place, static_cast<std::size_t>(size));
        return true;
    }
    qsizetype const read = request.file->read(place, buffer, size);
    if (read != size)
    {
        failure_ = read < 0 ? Failure::FileUnreadable : Failure::FileShortened;
    }
    return read == size;
}

std::size_t Transfer::writeBody(char const* data, std::size_t size)
{
    queue_.lastByte = lastProgress_ = Clock::now();
    call_->progress.addReceived(static_cast<qint64>(size), info<curl_off_t>(CURLINFO_CONTENT_LENGTH_DOWNLOAD_T));
    try
    {
        auto const count = static_cast<qsizetype>(size);
        if (goesToFile() ? storeBody(data, count) : appendBody(data, count))
        {
            return size;
        }
    }
    catch (std::bad_alloc const&)
    {
        failure_ = Failure::OutOfMemory;
    }
    body_.clear();
    return 0;
}

bool Transfer::appendBody(char const* data, qsizetype size)
{
    qint64 const limit = call_->request().replySizeLimit;
    if (decoder_)
    {
        return decode(data, size, limit);
    }
    if (body_.size() + size > limit)
    {
        failure_ = Failure::ReplyTooLarge;
        return false;
    }
    qint64 expected = size;
    if (body_.isEmpty())
    {
        auto const announced = info<curl_off_t>(CURLINFO_CONTENT_LENGTH_DOWNLOAD_T);
        expected = std::clamp<qint64>(announced, size, std::max(largestReservation, qint64(size)));
    }
    makeRoom(body_, expected);
    body_.append(data, size);
    return true;
}

bool Transfer::goesToFile() const
{
    return call_->request().target != nullptr && info<long>(CURLINFO_RESPONSE_CODE) == 200;
}

bool Transfer::storeBody(char const* data, qsizetype size)
{
    if (decoder_ && !decode(data, size, std::numeric_limits<qint64>::max()))
    {
        return false;
    }
    FileTarget& target = *call_->request().target;
    bool const isStored = decoder_ ? target.write(body_.constData(), body_.size()) : target.write(data, size);
    // Its room is kept for the next piece.
    body_.resize(0);
    if (!isStored)
    {
        failure_ = Failure::NotStored;
    }
    return isStored;
}

bool Transfer::decode(char const* data, qsizetype size, qint64 limit)
{
    auto const result = decoder_->decode(data, size, body_, limit);
    if (result != ContentDecoder::Result::Ok)
    {
        failure_ = result == ContentDecoder::Result::TooLarge ? Failure::ReplyTooLarge : Failure::BadCompression;
    }
    return result == ContentDecoder::Result::Ok;
}

std::size_t Transfer::takeHeader(char const* line, std::size_t size)
{
    queue_.lastByte = lastProgress_ = Clock::now();
    headerBytes_ += static_cast<qsizetype>(size);
    if (headerBytes_ > headerLimit)
    {
        failure_ = Failure::HeadersTooLarge;
        return 0;
    }
    auto const text = QByteArray::fromRawData(line, static_cast<qsizetype>(size));
    // The trailers of a body in chunks come here, too, without an empty line behind them.
    isHeadComplete_ = text.trimmed().isEmpty() || (isHeadComplete_ && !text.startsWith("HTTP/"));
    if (call_->progress.received() == 0)
    {
        readEncoding(text);
    }
    if (trace_)
    {
        trace_->addResponseHeader(text);
    }
    return size;
}

void Transfer::readEncoding(QByteArray const& line)
{
    static constexpr QByteArrayView name = "content-encoding:";
    if (line.startsWith("HTTP/"))
    {
        decoder_.reset();
    }
    else if (
        line.size() > name.size() && QByteArrayView(line).first(name.size()).compare(name, Qt::CaseInsensitive) == 0)
    {
        QByteArray const encoding = line.sliced(name.size()).trimmed().toLower();
        ContentDecoder::isNeededFor(encoding) ? void(decoder_.emplace(encoding)) : decoder_.reset();
    }
}

} // namespace rest
