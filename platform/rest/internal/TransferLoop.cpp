#include <platform/rest/internal/TransferLoop.h>

#include <algorithm>
#include <iterator>
#include <utility>

namespace rest
{

namespace
{

constexpr long idleConnectionLimit = 64;
constexpr std::chrono::milliseconds longestSleep{60000};

// How long the system's answer which proxy to use is believed.
constexpr std::chrono::seconds proxyLifetime{60};

CURLM* makeMulti()
{
    curl_global_init(CURL_GLOBAL_DEFAULT);
    CURLM* const multi = curl_multi_init();
    curl_multi_setopt(multi, CURLMOPT_MAX_HOST_CONNECTIONS, static_cast<long>(OriginQueue::connectionLimit));
    curl_multi_setopt(multi, CURLMOPT_MAXCONNECTS, idleConnectionLimit);
    return multi;
}

CURLSH* makeShare()
{
    CURLSH* const share = curl_share_init();
    curl_share_setopt(share, CURLSHOPT_SHARE, CURL_LOCK_DATA_SSL_SESSION);
    return share;
}

} // namespace

TransferLoop::TransferLoop(FindProxy findProxy)
    : findProxy_(std::move(findProxy)), multi_(makeMulti()), share_(makeShare())
{
}

TransferLoop::~TransferLoop()
{
    takeAll();
    curl_multi_cleanup(multi_);
    curl_share_cleanup(share_);
}

OriginQueue& TransferLoop::queueFor(Request const& request)
{
    if (!request.usesSystemProxies)
    {
        OriginQueue& queue = origins_[request.origin];
        queue.proxy.emplace();
        return queue;
    }
    QByteArray const origin = request.origin + " by proxy";
    OriginQueue& queue = origins_[origin];
    auto const now = Clock::now();
    if (!queue.proxyAsked || now - *queue.proxyAsked > proxyLifetime)
    {
        queue.proxyAsked = now;
        findProxy_(origin, QUrl::fromEncoded(request.url));
    }
    return queue;
}

void TransferLoop::setProxy(QByteArray const& origin, Proxy proxy)
{
    OriginQueue& queue = origins_[origin];
    queue.proxy = std::move(proxy);
    startWaiting(queue);
}

void TransferLoop::add(std::shared_ptr<Call> call)
{
    OriginQueue& queue = queueFor(call->request());
    nextCheck_ = std::min(nextCheck_, queue.deadline(*call));
    queue.waiting.push_back(std::move(call));
    startWaiting(queue);
}

void TransferLoop::startWaiting(OriginQueue& queue)
{
    while (queue.hasPlace() && !queue.waiting.empty())
    {
        std::shared_ptr<Call> call = std::move(queue.waiting.front());
        queue.waiting.pop_front();
        if (!call->isAborted)
        {
            start(std::move(call), queue);
        }
    }
}

void TransferLoop::start(std::shared_ptr<Call> call, OriginQueue& queue)
{
    auto transfer = std::make_unique<Transfer>(std::move(call), queue, share_);
    transfer->call()->transfer = transfer.get();
    transfer->index = active_.size();
    ++queue.inFlight;
    nextCheck_ = std::min(nextCheck_, transfer->deadline());
    curl_multi_add_handle(multi_, transfer->handle());
    active_.push_back(std::move(transfer));
}

void TransferLoop::abort(Call& call)
{
    if (call.transfer != nullptr)
    {
        OriginQueue& queue = call.transfer->queue();
        retire(*call.transfer);
        startWaiting(queue);
    }
}

void TransferLoop::retire(Transfer& transfer)
{
    curl_multi_remove_handle(multi_, transfer.handle());
    --transfer.queue().inFlight;
    transfer.call()->transfer = nullptr;

    std::size_t const index = transfer.index;
    std::swap(active_[index], active_.back());
    active_[index]->index = index;
    active_.pop_back();
}

void TransferLoop::perform()
{
    expireOverdue();
    bool hasNews = true;
    while (hasNews)
    {
        hasNews = false;
        int count = 0;
        curl_multi_perform(multi_, &count);
        while (CURLMsg const* const message = curl_multi_info_read(multi_, &count))
        {
            Transfer* transfer = nullptr;
            CURLcode const result = message->data.result;
            curl_easy_getinfo(message->easy_handle, CURLINFO_PRIVATE, &transfer);
            conclude(*transfer, result);
            hasNews = true;
        }
    }
}

void TransferLoop::conclude(Transfer& transfer, CURLcode result)
{
    OriginQueue& queue = transfer.queue();
    curl_multi_remove_handle(multi_, transfer.handle());
    if (transfer.beginNext(result))
    {
        curl_multi_add_handle(multi_, transfer.handle());
        return;
    }
    std::shared_ptr<Call> call = transfer.call();
    Outcome outcome = transfer.end(result);
    retire(transfer);
    finished_.push_back({std::move(call), std::move(outcome)});
    startWaiting(queue);
}

void TransferLoop::expireOverdue()
{
    auto const now = Clock::now();
    if (now < nextCheck_)
    {
        return;
    }
    nextCheck_ = Clock::time_point::max();
    std::vector<Transfer*> overdue;
    for (auto const& transfer : active_)
    {
        if (auto const deadline = transfer->deadline(); deadline <= now)
        {
            overdue.push_back(transfer.get());
        }
        else
        {
            nextCheck_ = std::min(nextCheck_, deadline);
        }
    }
    for (Transfer* const transfer : overdue)
    {
        transfer->markTimedOut();
        conclude(*transfer, CURLE_OPERATION_TIMEDOUT);
    }
    for (auto& [origin, queue] : origins_)
    {
        expireWaiting(queue, now);
    }
}

void TransferLoop::expireWaiting(OriginQueue& queue, Clock::time_point now)
{
    std::deque<std::shared_ptr<Call>> stillWaiting;
    for (std::shared_ptr<Call>& call : queue.waiting)
    {
        if (call->isAborted)
        {
            continue;
        }
        auto const deadline = queue.deadline(*call);
        if (deadline > now)
        {
            nextCheck_ = std::min(nextCheck_, deadline);
            stillWaiting.push_back(std::move(call));
            continue;
        }
        Outcome outcome = neverSent(call->request());
        finished_.push_back({std::move(call), std::move(outcome)});
    }
    queue.waiting.swap(stillWaiting);
}

bool TransferLoop::hasFinished() const
{
    return !finished_.empty();
}

std::optional<TransferLoop::Finished> TransferLoop::takeFinished()
{
    if (finished_.empty())
    {
        return std::nullopt;
    }
    std::optional<Finished> first(std::move(finished_.front()));
    finished_.pop_front();
    return first;
}

std::optional<TransferLoop::Report> TransferLoop::takeReport()
{
    auto const first = std::min_element(
        active_.begin(), active_.end(),
        [](auto const& left, auto const& right)
        { return left->call()->progress.due() < right->call()->progress.due(); });
    nextReport_ = first != active_.end() ? (*first)->call()->progress.due() : Clock::time_point::max();
    auto const now = Clock::now();
    if (nextReport_ > now)
    {
        return std::nullopt;
    }
    std::shared_ptr<Call> const& call = (*first)->call();
    return Report{call, call->progress.take(now)};
}

void TransferLoop::sleep(std::optional<Clock::time_point> deadline)
{
    auto const until = std::min({deadline.value_or(Clock::time_point::max()), nextCheck_, nextReport_});
    auto const now = Clock::now();
    auto const time =
        until <= now
            ? std::chrono::milliseconds(0)
            : std::chrono::ceil<std::chrono::milliseconds>(std::min<Clock::duration>(until - now, longestSleep));
    curl_multi_poll(multi_, nullptr, 0, static_cast<int>(time.count()), nullptr);
}

void TransferLoop::wake()
{
    curl_multi_wakeup(multi_);
}

std::vector<std::shared_ptr<Call>> TransferLoop::takeAll()
{
    std::vector<std::shared_ptr<Call>> calls;
    for (auto& [origin, queue] : origins_)
    {
        std::move(queue.waiting.begin(), queue.waiting.end(), std::back_inserter(calls));
        queue.waiting.clear();
    }
    while (!active_.empty())
    {
        calls.push_back(active_.back()->call());
        retire(*active_.back());
    }
    for (Finished& finished : finished_)
    {
        calls.push_back(std::move(finished.call));
    }
    finished_.clear();
    return calls;
}

} // namespace rest
