#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

#include <QHash>
#include <QUrl>

#include <curl/curl.h>

#include <platform/rest/internal/Call.h>
#include <platform/rest/internal/OriginQueue.h>
#include <platform/rest/internal/Transfer.h>

namespace rest
{

/// All transfers, driven from one thread. Never calls user code; finished calls are kept until somebody takes them.
class TransferLoop
{
public:
    struct Finished
    {
        std::shared_ptr<Call> call;
        Outcome outcome;
    };
    struct Report
    {
        std::shared_ptr<Call> call;
        TransferProgress progress;
    };

    /// Finds out which proxy leads to `url`, for all calls to `origin`, and tells by `setProxy`.
    using FindProxy = std::function<void(QByteArray const& origin, QUrl const& url)>;

    explicit TransferLoop(FindProxy findProxy);
    TransferLoop(TransferLoop const&) = delete;
    TransferLoop& operator=(TransferLoop const&) = delete;
    ~TransferLoop();

    /// Starts the call's transfer, or queues it behind others to the same origin.
    void add(std::shared_ptr<Call> call);
    void abort(Call& call);
    void setProxy(QByteArray const& origin, Proxy proxy);
    /// Does all the network's work that is possible without waiting.
    void perform();
    bool hasFinished() const;
    std::optional<Finished> takeFinished();
    /// The news of a transfer whose watcher may be told now.
    std::optional<Report> takeReport();
    /// Waits for the network, `wake`, or the deadline.
    void sleep(std::optional<Clock::time_point> deadline);
    /// Ends a `sleep`, now or the next one. May be called from any thread.
    void wake();
    /// Ends all transfers and gives out their calls, with the queued and the finished ones.
    std::vector<std::shared_ptr<Call>> takeAll();

private:
    OriginQueue& queueFor(Request const& request);
    void startWaiting(OriginQueue& queue);
    void start(std::shared_ptr<Call> call, OriginQueue& queue);
    void conclude(Transfer& transfer, CURLcode result);
    void expireOverdue();
    void expireWaiting(OriginQueue& queue, Clock::time_point now);
    /// Takes a transfer off the network; its place at the origin becomes free.
    void retire(Transfer& transfer);

    FindProxy const findProxy_;
    CURLM* const multi_;
    /// What is kept from one exchange for the next, beside the connections: TLS sessions.
    CURLSH* const share_;
    std::unordered_map<QByteArray, OriginQueue> origins_;
    std::vector<std::unique_ptr<Transfer>> active_;
    std::deque<Finished> finished_;
    /// No deadline of a call is before this moment.
    Clock::time_point nextCheck_ = Clock::time_point::max();
    /// No watcher is to be told anything before this moment.
    Clock::time_point nextReport_ = Clock::time_point::max();
};

} // namespace rest
