#pragma once

#include <array>
#include <memory>
#include <optional>
#include <vector>

#include <QByteArray>

#include <curl/curl.h>

#include <platform/rest/internal/Call.h>
#include <platform/rest/internal/ContentDecoder.h>
#include <platform/rest/internal/Failure.h>
#include <platform/rest/internal/OriginQueue.h>
#include <platform/rest/internal/TransferTrace.h>
#include <platform/rest/internal/UrlJoin.h>

namespace rest
{

/// A call on the network, from its request to its answer: perhaps some `beginNext`, then `end`. Every exchange has a
/// libcurl easy handle of its own.
class Transfer
{
public:
    Transfer(std::shared_ptr<Call> call, OriginQueue& queue, CURLSH* share);
    Transfer(Transfer const&) = delete;
    Transfer& operator=(Transfer const&) = delete;
    ~Transfer() = default;

    CURL* handle() const { return handle_.get(); }

    OriginQueue& queue() const { return queue_; }

    std::shared_ptr<Call> const& call() const { return call_; }

    /// The moment at which the exchange has taken too long, as things stand.
    Clock::time_point deadline() const;
    /// Makes `end` report a time-out.
    void markTimedOut();
    /// True if one more exchange must follow the one that has ended with `result`: the answer is a redirect, or the
    /// kept connection was not fit for the request. `handle` is then another one; the former must be off the network.
    bool beginNext(CURLcode result);
    Outcome end(CURLcode result);

    /// Its place in the list of active transfers; kept by the owner of that list.
    std::size_t index = 0;

private:
    struct HandleDeleter
    {
        void operator()(CURL* handle) const { curl_easy_cleanup(handle); }
    };

    void configureConnection(Request const& request);
    void configureCallbacks();
    void configureRequest(Request const& request);
    template <class Value>
    void set(CURLoption option, Value value);
    template <class Value>
    Value info(CURLINFO which) const;
    /// How long the server asks to be left alone, if it does.
    std::optional<std::chrono::seconds> retryAfter(long status) const;
    QString failureText(CURLcode result, bool maybeProcessed) const;
    void beginExchange();
    bool isWrite() const;

    std::size_t readBody(char* buffer, std::size_t capacity);
    std::size_t writeBody(char const* data, std::size_t size);
    bool appendBody(char const* data, qsizetype size);
    bool copyBody(char* buffer, qsizetype size);
    bool goesToFile() const;
    bool storeBody(char const* data, qsizetype size);
    bool decode(char const* data, qsizetype size, qint64 limit);
    std::size_t takeHeader(char const* line, std::size_t size);
    void readEncoding(QByteArray const& line);
    curl_socket_t openSocket(curl_sockaddr const& address);
    int beforeRequest(long localPort);
    bool wouldRepeatWrite();
    bool isRedirected(CURLcode result);
    void judgeConnection(CURLcode result);

    std::array<char, CURL_ERROR_SIZE> errorBuffer_{};
    std::shared_ptr<Call> const call_;
    OriginQueue& queue_;
    CURLSH* const share_;
    QByteArray url_;
    QByteArray body_;
    qsizetype bodySent_ = 0;
    qsizetype headerBytes_ = 0;
    bool isHeadComplete_ = false;
    int redirects_ = 0;
    int attempts_ = 0; ///< how often the request of the present exchange has gone out
    long localPort_ = 0;
    bool isReused_ = false; ///< the connection was kept from an earlier exchange
    bool isUnfit_ = false;  ///< and not fit for this one; nothing was sent
    Failure failure_ = Failure::None;
    Clock::time_point started_;
    Clock::time_point lastProgress_;
    std::optional<ContentDecoder> decoder_;
    std::optional<TransferTrace> trace_;
    std::vector<TraceData> traces_;
    /// Last, so that it goes first: until then it may call back.
    std::unique_ptr<CURL, HandleDeleter> handle_;
};

} // namespace rest
