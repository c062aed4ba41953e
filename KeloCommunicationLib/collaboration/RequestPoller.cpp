#include <KeloCommunicationLib/collaboration/RequestPoller.h>

#include <algorithm>
#include <ctime>
#include <memory>
#include <utility>

#include <QPointer>
#include <QRandomGenerator>
#include <QSet>
#include <QTimer>

#include <KeloCommunicationLib/collaboration/RequestDetailsRetriever.h>

using collaboration::ExtendedRequestDetails;
using collaboration::RequestInfo;
using std::chrono::milliseconds;

namespace
{

/// A timer may stand still while the machine sleeps, so none is set for longer than this. One that is late by as much
/// has slept.
constexpr milliseconds longestTick{10000};

class SystemClock : public PollClock
{
public:
    milliseconds now() const override
    {
#ifdef CLOCK_BOOTTIME
        // The steady clock stands still while the machine sleeps.
        std::timespec time{};
        if (clock_gettime(CLOCK_BOOTTIME, &time) == 0)
        {
            return std::chrono::seconds(time.tv_sec) + milliseconds(time.tv_nsec / 1000000);
        }
#endif
        return std::chrono::duration_cast<milliseconds>(std::chrono::steady_clock::now().time_since_epoch());
    }

    void callAfter(milliseconds delay, std::function<void()> tick) override
    {
        context_ = std::make_unique<QObject>();
        QTimer::singleShot(delay, context_.get(), std::move(tick));
    }

    double chance() override
    {
        return QRandomGenerator::global()->generateDouble();
    }

private:
    std::unique_ptr<QObject> context_; ///< of the tick that is still to come
};

QSet<QString> idsOf(std::vector<RequestInfo> const& requests)
{
    QSet<QString> ids;
    for (RequestInfo const& request : requests)
    {
        ids.insert(request.requestId);
    }
    return ids;
}

} // namespace

PollClock::~PollClock() = default;

RequestPoller::RequestPoller(TessalyConnectionInterface const& connection, QObject* parent)
    : RequestPoller(connection, std::make_unique<SystemClock>(), parent)
{
}

RequestPoller::RequestPoller(
    TessalyConnectionInterface const& connection, std::unique_ptr<PollClock> clock, QObject* parent)
    : QObject(parent), connection_(connection), clock_(std::move(clock))
{
}

RequestPoller::~RequestPoller() = default;

void RequestPoller::setTypes(std::vector<collaboration::RequestType> types)
{
    types_ = std::move(types);
}

void RequestPoller::setKnownRequests(std::vector<RequestInfo> known)
{
    known_ = std::move(known);
    ignored_.clear();
}

void RequestPoller::setSettings(PollSettings const& settings)
{
    settings_ = settings;
}

std::vector<RequestInfo> const& RequestPoller::knownRequests() const
{
    return known_;
}

void RequestPoller::start()
{
    if (isStarted_)
    {
        return;
    }
    isStarted_ = true;
    schedule_ = PollSchedule(settings_);
    waitToBegin();
    Q_EMIT stateChanged(state());
}

void RequestPoller::stop()
{
    if (!isStarted_)
    {
        return;
    }
    isStarted_ = false;
    isDemanded_ = false;
    isResultWanted_ = false;
    Q_EMIT stateChanged(state());
}

bool RequestPoller::pollNow()
{
    if (!isStarted_ || clock_->now() < leftAloneUntil_)
    {
        return false;
    }
    if (retriever_)
    {
        isDemanded_ = true;
    }
    else
    {
        poll();
    }
    return true;
}

RequestPoller::State RequestPoller::state() const
{
    if (!isStarted_)
    {
        return State::Stopped;
    }
    return retriever_ ? State::Polling : State::Waiting;
}

utility::Optional<milliseconds> RequestPoller::untilNextPoll() const
{
    if (state() != State::Waiting)
    {
        return std::nullopt;
    }
    return std::max(nextPoll_ - clock_->now(), milliseconds::zero());
}

void RequestPoller::waitToBegin()
{
    milliseconds const leftAlone = std::max(leftAloneUntil_ - clock_->now(), milliseconds::zero());
    wait(leftAlone + schedule_.begin(clock_->chance()));
}

void RequestPoller::wait(milliseconds delay)
{
    nextPoll_ = clock_->now() + delay;
    armTimer();
}

void RequestPoller::armTimer()
{
    milliseconds const now = clock_->now();
    nextTick_ = std::min(nextPoll_, now + longestTick);
    clock_->callAfter(std::max(nextTick_ - now, milliseconds::zero()), [this] { handleTick(); });
}

void RequestPoller::handleTick()
{
    // The timer is not told of stops and of polls on demand.
    if (state() != State::Waiting)
    {
        return;
    }
    milliseconds const now = clock_->now();
    if (now > nextTick_ + longestTick)
    {
        waitToBegin();
        Q_EMIT stateChanged(state());
    }
    else if (now >= nextPoll_)
    {
        poll();
    }
    else
    {
        armTimer();
    }
}

void RequestPoller::poll()
{
    retriever_ = std::make_unique<RequestDetailsRetriever>(connection_);
    // A request that was closed since the last poll is news as well.
    retriever_->setOnlyActiveRequests(false);
    connect(retriever_.get(), &RequestDetailsRetriever::finished, this, [this] { handleEnd(true); });
    connect(retriever_.get(), &RequestDetailsRetriever::failed, this, [this] { handleEnd(false); });
    isResultWanted_ = true;
    auto seen = known_;
    seen.insert(seen.end(), ignored_.begin(), ignored_.end());
    retriever_->getUpdates(types_, seen);
    Q_EMIT stateChanged(state());
}

void RequestPoller::handleEnd(bool hasList)
{
    auto const retriever = std::move(retriever_);
    rest::RestReplyStatus const status = retriever->lastStatus();
    bool const isComplete = status.kind == 0;
    leftAloneUntil_ = clock_->now() + PollSchedule::askedWait(status);
    milliseconds const delay = schedule_.after(status, clock_->chance());
    if (isComplete && isDemanded_)
    {
        wait(milliseconds::zero());
    }
    else if (isResultWanted_)
    {
        wait(delay);
    }
    else
    {
        waitToBegin();
    }
    isDemanded_ = false;
    // The receivers may stop, start or delete the poller.
    QPointer const self(this);
    if (isResultWanted_ && hasList)
    {
        Q_EMIT polled(takeOver(*retriever));
    }
    if (self && isResultWanted_ && !isComplete)
    {
        Q_EMIT failed(status);
    }
    if (self && isStarted_)
    {
        Q_EMIT stateChanged(state());
    }
}

RequestChanges RequestPoller::takeOver(RequestDetailsRetriever const& retriever)
{
    auto const known = idsOf(known_);
    RequestChanges changes;
    QSet<QString> gone;
    for (QString const& id : retriever.getRemovedRequestIds())
    {
        gone.insert(id);
        if (known.contains(id))
        {
            changes.removed.append(id);
        }
    }
    QSet<QString> reported = known;
    for (ExtendedRequestDetails& request : retriever.getAllRequestDetails())
    {
        QString const& id = request.requestDetails.id;
        reported.insert(id);
        (known.contains(id) ? changes.changed : changes.added).push_back(std::move(request));
    }
    std::vector<RequestInfo> current = retriever.getRequests();
    auto const failedTypes = retriever.failedTypes();
    std::erase_if(
        current, [&failedTypes](RequestInfo const& request)
        { return std::find(failedTypes.begin(), failedTypes.end(), request.requestType) != failedTypes.end(); });
    auto const isOutdated = [outdated = gone.unite(idsOf(current))](RequestInfo const& request)
    { return outdated.contains(request.requestId); };
    std::erase_if(known_, isOutdated);
    std::erase_if(ignored_, isOutdated);
    for (RequestInfo& request : current)
    {
        (reported.contains(request.requestId) ? known_ : ignored_).push_back(std::move(request));
    }
    return changes;
}
