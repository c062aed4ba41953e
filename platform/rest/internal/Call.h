#pragma once

#include <algorithm>
#include <atomic>
#include <chrono>
#include <memory>
#include <utility>
#include <vector>

#include <QByteArray>
#include <QString>

#include <platform/rest/HttpMethod.h>
#include <platform/rest/Progress.h>
#include <platform/rest/TraceData.h>
#include <platform/rest/internal/ProgressMeter.h>

namespace rest
{

class FileTarget;
class Mapping;
class Session;
class Transfer;
class TrustStore;

using Clock = std::chrono::steady_clock;

/// When a time-out that runs since `start` is over; never, if it is absurdly long.
inline Clock::time_point timeOut(Clock::time_point start, std::chrono::milliseconds duration)
{
    return start + std::min<std::chrono::milliseconds>(duration, std::chrono::hours(24 * 365));
}

/// Error numbers of replies for which no exchange took place; those of the exchange itself are libcurl's, which are
/// positive.
enum class LocalError : int
{
    NotSent = -1,  ///< the request was refused before anything was opened
    Closed = -2,   ///< the connection was closed while a blocking call waited
    NotStored = -3 ///< the answer could not be written to its file
};

/// What one exchange sends, complete and independent of the connection's later settings.
struct Request
{
    enum class Content : int
    {
        None,
        Json,
        Bytes
    };
    /// Whether the time-out bounds the whole exchange or the time without progress.
    enum class TimeoutKind : int
    {
        Total,
        Idle
    };

    HttpMethod method = HttpMethod::Get;
    QByteArray url; ///< absolute and encoded, without user-info
    QByteArray origin;
    Content content = Content::None;
    QByteArray body;
    std::shared_ptr<Mapping const> file; ///< which the body is part of, if any
    QByteArray username;                 ///< UTF-8; empty: no authentication
    QByteArray password;
    std::chrono::milliseconds timeout{0};
    TimeoutKind timeoutKind = TimeoutKind::Total;
    qint64 replySizeLimit = 0;
    bool verifiesCertificates = true;
    std::shared_ptr<TrustStore> trust; ///< null: whom libcurl trusts unless told otherwise
    bool usesSystemProxies = false;
    bool isTraced = false;
    std::shared_ptr<ProgressCallback const> watcher; ///< null: nobody
    std::shared_ptr<FileTarget> target;              ///< where the body of an answer 200 goes; null: into the reply
    bool isDownload = false;                         ///< of any type of content; else the reply is JSON
};

/// How an exchange ended: with an HTTP status, or with an error number and text.
struct Outcome
{
    int httpStatus = 0; ///< 0 when there was no usable answer
    int error = 0;
    QString errorText;
    std::optional<std::chrono::seconds> retryAfter; ///< of an answer 429 or 503
    QByteArray body;
    std::vector<TraceData> traces;
};

/// One request from its making to the end of its future. The session decides who may end it: `complete` and `cancel`
/// are called once in all.
class Call : public std::enable_shared_from_this<Call>
{
public:
    Call(std::shared_ptr<Session> session, Request request);
    Call(Call const&) = delete;
    Call& operator=(Call const&) = delete;
    virtual ~Call();

    virtual void complete(Outcome outcome) = 0;
    virtual void cancel() = 0;
    /// Has the session told when the future is cancelled by its consumer.
    virtual void watchCancellation() = 0;

    std::shared_ptr<Session> const& session() const { return session_; }

    Request const& request() const { return request_; }

    Clock::time_point created() const { return created_; }

    /// Nobody waits for it any more. Set at once, not when the I/O thread gets to know: a place that becomes free in
    /// between must not send it.
    std::atomic<bool> isAborted = false;
    /// Used on the I/O thread only: the transfer that carries the call.
    Transfer* transfer = nullptr;
    ProgressMeter progress;

private:
    std::shared_ptr<Session> const session_;
    Request const request_;
    Clock::time_point const created_ = Clock::now();
};

} // namespace rest
