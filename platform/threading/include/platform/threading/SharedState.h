#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <type_traits>
#include <utility>
#include <vector>

#include <platform/threading/Export.h>
#include <platform/threading/SharedStateSignals.h>
#include <platform/threading/Task.h>
#include <platform/threading/WaitDriver.h>

namespace threading::impl
{

/// What a future and its promise share, but for the value. It leaves the pending phase exactly once, to finished or to
/// cancelled; that one transition wakes the waiters, emits the signals and runs the continuations, all outside the
/// lock.
class PLATFORM_THREADING_EXPORT SharedStateBase : public std::enable_shared_from_this<SharedStateBase>
{
public:
    SharedStateBase() = default;
    SharedStateBase(SharedStateBase const&) = delete;
    SharedStateBase& operator=(SharedStateBase const&) = delete;

    bool isFinished() const;
    bool isCanceled() const;
    void wait();
    bool waitFor(std::chrono::milliseconds duration);

    /// Runs `task` when the state is finished: on the finishing thread, or at once if it is finished already.
    void attach(Task task);
    /// Runs `handler` when the consumer cancels; at once if it has done so already.
    void setCancelHandler(Task handler);
    /// The consumer gives up: finishes as cancelled and tells the producer. False if the state was no longer pending.
    bool cancel();
    /// The producer gives up: finishes as cancelled. False if the state was no longer pending.
    bool abandon();

    SharedStateSignals* signalObject();

    /// How many handles there are through which the value can be asked for; kept by `Hold`.
    void addHandle() noexcept { handles_.fetch_add(1, std::memory_order_relaxed); }

    void dropHandle() noexcept { handles_.fetch_sub(1, std::memory_order_release); }

    /// For the owner of a handle: true if there is no other, and then all that the others did has happened before.
    bool hasOneHandle() const noexcept { return handles_.load(std::memory_order_acquire) == 1; }

protected:
    ~SharedStateBase();

    /// Reserves the one transition out of pending for the caller, who then stores the value and calls `publish`.
    bool claim();
    void publish();

private:
    enum class Phase : int
    {
        Pending,
        Claimed,
        Finished,
        Canceled
    };

    bool waitUntil(WaitDriver::Deadline deadline);
    void announceWaiting();
    bool claimAndCancel(Task& handler);
    void leavePending(Phase phase);

    std::atomic<Phase> phase_{Phase::Pending};
    std::atomic<int> handles_{0};
    bool canceledByConsumer_ = false;
    mutable std::mutex mutex_;
    std::condition_variable finished_;
    std::vector<Task> continuations_;
    Task cancelHandler_;
    std::unique_ptr<SharedStateSignals> signals_;
};

struct Nothing
{
};

template <class T>
using Stored = std::conditional_t<std::is_void_v<T>, Nothing, T>;

/// The shared state with its value.
template <class T>
class SharedState final : public SharedStateBase
{
public:
    bool setValue(Stored<T> value)
    {
        if (!claim())
        {
            return false;
        }
        value_.emplace(std::move(value));
        publish();
        return true;
    }

    /// Null unless finished with a value.
    Stored<T>* value() { return isFinished() && value_ ? &*value_ : nullptr; }

private:
    std::optional<Stored<T>> value_;
};

/// A handle through which the value can be asked for: what futures and promises are made of. Whoever merely works on
/// the state has a plain pointer, which does not count.
template <class T>
class Hold
{
public:
    explicit Hold(std::shared_ptr<SharedState<T>> state) : state_(std::move(state))
    {
        if (state_)
        {
            state_->addHandle();
        }
    }

    Hold(Hold const& other) : Hold(other.state_) {}
    Hold(Hold&& other) noexcept = default;

    Hold& operator=(Hold other) noexcept
    {
        state_.swap(other.state_);
        return *this;
    }

    ~Hold()
    {
        if (state_)
        {
            state_->dropHandle();
        }
    }

    explicit operator bool() const { return state_ != nullptr; }

    SharedState<T>* operator->() const { return state_.get(); }

    std::shared_ptr<SharedState<T>> const& state() const { return state_; }

    /// The state, on which this is no handle any more.
    std::shared_ptr<SharedState<T>> giveUp() &&
    {
        Hold const last(std::move(*this));
        return last.state_;
    }

private:
    std::shared_ptr<SharedState<T>> state_;
};

/// A task that, run on any thread, has `task` run in the thread of `context`, through its event loop. Once the context
/// is gone `task` is destroyed instead.
PLATFORM_THREADING_EXPORT Task relayTo(QObject* context, Task task);

/// The one place where an exception out of a continuation ends: it is logged, the continuation's own future is
/// cancelled.
PLATFORM_THREADING_EXPORT void reportContinuationException() noexcept;

} // namespace threading::impl
