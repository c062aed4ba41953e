#include <platform/threading/SharedState.h>

#include <exception>

#include <QDebug>

// g++ tells by the first, clang by the second; Qt defines the second away for g++.
#if defined(__SANITIZE_THREAD__)
#define PLATFORM_THREADING_TSAN
#elif defined(__has_feature)
#if __has_feature(thread_sanitizer)
#define PLATFORM_THREADING_TSAN
#endif
#endif

#ifdef PLATFORM_THREADING_TSAN
#include <sanitizer/tsan_interface.h>
#endif

namespace threading::impl
{

namespace
{

// Qt's event queue orders the posting of a call before its run. Qt is not instrumented, so the thread sanitizer has to
// be told, for each call by itself: one order for all would hide the races of others.
std::shared_ptr<void> newOrder()
{
#ifdef PLATFORM_THREADING_TSAN
    return std::make_shared<char>();
#else
    return nullptr;
#endif
}

void comesBefore([[maybe_unused]] void* order)
{
#ifdef PLATFORM_THREADING_TSAN
    __tsan_release(order);
#endif
}

void comesAfter([[maybe_unused]] void* order)
{
#ifdef PLATFORM_THREADING_TSAN
    __tsan_acquire(order);
#endif
}

// Runs a task once, out of Qt's event queue. Qt may destroy it on another thread than the one that made or ran it.
class QueuedTask
{
public:
    QueuedTask(Task task, std::shared_ptr<void> order)
        : task_(std::make_shared<Task>(std::move(task))), order_(std::move(order))
    {
    }

    QueuedTask(QueuedTask const& other) : task_(other.task_), order_(other.order_) { comesBefore(this); }
    QueuedTask& operator=(QueuedTask const& other) = delete;

    ~QueuedTask() { comesAfter(this); }

    void operator()()
    {
        comesAfter(this);
        comesAfter(order_.get());
        {
            Task once = std::move(*task_);
            once();
        }
        comesBefore(this);
    }

private:
    std::shared_ptr<Task> task_;
    std::shared_ptr<void> order_;
};

} // namespace

SharedStateBase::~SharedStateBase() = default;

bool SharedStateBase::isFinished() const
{
    Phase const phase = phase_.load(std::memory_order_acquire);
    return phase == Phase::Finished || phase == Phase::Canceled;
}

bool SharedStateBase::isCanceled() const
{
    return phase_.load(std::memory_order_acquire) == Phase::Canceled;
}

void SharedStateBase::wait()
{
    waitUntil(std::nullopt);
}

bool SharedStateBase::waitFor(std::chrono::milliseconds duration)
{
    // A duration too long to be added to the clock is no deadline at all.
    auto const now = std::chrono::steady_clock::now();
    auto const longest =
        std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::time_point::max() - now);
    return waitUntil(duration < longest ? WaitDriver::Deadline(now + duration) : std::nullopt);
}

bool SharedStateBase::waitUntil(WaitDriver::Deadline deadline)
{
    if (isFinished())
    {
        return true;
    }
    announceWaiting();
    auto const done = [this] { return isFinished(); };
    if (std::shared_ptr<WaitDriver> const driver = WaitDriver::current())
    {
        attach(Task([driver] { driver->wake(); }));
        driver->driveUntil(done, deadline);
        return isFinished();
    }
    std::unique_lock lock(mutex_);
    if (!deadline)
    {
        finished_.wait(lock, done);
        return true;
    }
    return finished_.wait_until(lock, *deadline, done);
}

void SharedStateBase::announceWaiting()
{
    std::unique_lock lock(mutex_);
    SharedStateSignals* const signalObject = signals_.get();
    lock.unlock();
    if (signalObject != nullptr)
    {
        Q_EMIT signalObject->aboutToStartWaiting();
    }
}

void SharedStateBase::attach(Task task)
{
    {
        std::lock_guard const lock(mutex_);
        if (!isFinished())
        {
            continuations_.push_back(std::move(task));
            return;
        }
    }
    task();
}

void SharedStateBase::setCancelHandler(Task handler)
{
    {
        std::lock_guard const lock(mutex_);
        if (!canceledByConsumer_)
        {
            // The previous handler, or this one if nobody can cancel any more, is destroyed after the lock is released.
            if (!isFinished())
            {
                std::swap(cancelHandler_, handler);
            }
            return;
        }
    }
    handler();
}

bool SharedStateBase::cancel()
{
    auto const self = shared_from_this();
    Task handler;
    if (!claimAndCancel(handler))
    {
        return false;
    }
    leavePending(Phase::Canceled);
    if (handler)
    {
        handler();
    }
    return true;
}

bool SharedStateBase::claimAndCancel(Task& handler)
{
    std::lock_guard const lock(mutex_);
    if (!claim())
    {
        return false;
    }
    canceledByConsumer_ = true;
    std::swap(handler, cancelHandler_);
    return true;
}

bool SharedStateBase::abandon()
{
    auto const self = shared_from_this();
    if (!claim())
    {
        return false;
    }
    leavePending(Phase::Canceled);
    return true;
}

SharedStateSignals* SharedStateBase::signalObject()
{
    std::lock_guard const lock(mutex_);
    if (!signals_)
    {
        signals_ = std::make_unique<SharedStateSignals>();
        signals_->moveToThread(nullptr);
    }
    return signals_.get();
}

bool SharedStateBase::claim()
{
    Phase expected = Phase::Pending;
    return phase_.compare_exchange_strong(expected, Phase::Claimed, std::memory_order_acq_rel);
}

void SharedStateBase::publish()
{
    auto const self = shared_from_this();
    leavePending(Phase::Finished);
}

void SharedStateBase::leavePending(Phase phase)
{
    std::vector<Task> continuations;
    Task unusedHandler;
    SharedStateSignals* signalObject = nullptr;
    {
        std::lock_guard const lock(mutex_);
        phase_.store(phase, std::memory_order_release);
        continuations.swap(continuations_);
        std::swap(unusedHandler, cancelHandler_);
        signalObject = signals_.get();
    }
    finished_.notify_all();
    if (signalObject != nullptr)
    {
        if (phase == Phase::Canceled)
        {
            Q_EMIT signalObject->canceled();
        }
        Q_EMIT signalObject->finished();
    }
    for (Task& continuation : continuations)
    {
        // It goes before the next one runs, which may then have the only handle left.
        Task once = std::move(continuation);
        once();
    }
}

Task relayTo(QObject* context, Task task)
{
    // Each continuation has a signal object of its own: Qt ties the connection to the life and the thread of the
    // context.
    auto trigger = std::make_shared<SharedStateSignals>();
    trigger->moveToThread(nullptr);
    auto order = newOrder();
    if (context != nullptr)
    {
        QObject::connect(
            trigger.get(), &SharedStateSignals::finished, context, QueuedTask(std::move(task), order),
            Qt::QueuedConnection);
    }
    return Task(
        [trigger = std::move(trigger), order = std::move(order)]
        {
            comesBefore(order.get());
            Q_EMIT trigger->finished();
        });
}

void reportContinuationException() noexcept
{
    try
    {
        throw;
    }
    catch (std::exception const& exception)
    {
        qWarning() << "An exception left a continuation:" << exception.what();
    }
    catch (...)
    {
        qWarning() << "An exception left a continuation.";
    }
}

} // namespace threading::impl
