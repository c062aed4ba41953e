#pragma once

#include <algorithm>
#include <chrono>
#include <functional>
#include <future>
#include <memory>
#include <mutex>
#include <optional>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include <platform/threading/Signals.h>
#include <platform/threading/Workers.h>

namespace threading::impl
{

/// What a value's way needs whatever its type is: one who may settle it, those who want to be told, one who wants to
/// know that nobody waits any more. What it calls, it calls without its lock.
class ChannelBase
{
public:
    ChannelBase() = default;
    ChannelBase(ChannelBase const&) = delete;
    ChannelBase& operator=(ChannelBase const&) = delete;
    virtual ~ChannelBase();

    virtual bool isFinished() const = 0;
    virtual bool isCanceled() const = 0;

    /// Called on the thread that settles it, or at once if it is settled.
    void attach(std::function<void()> listener);
    /// Called when the consumer cancels, at once if it has; forgotten when it is settled otherwise.
    void onCancel(std::function<void()> handler);
    SharedStateSignals* signalObject();

protected:
    /// True for the one who may settle it.
    bool claim();
    /// As above for the consumer, who gets the handler to call.
    bool claimForConsumer(std::function<void()>& handler);
    /// Tells everybody.
    void announce();
    void announceWaiting();

private:
    std::mutex mutex_;
    bool isClaimed_ = false;
    bool isGivenUp_ = false;
    std::vector<std::function<void()>> listeners_;
    std::function<void()> cancelHandler_;
    std::unique_ptr<SharedStateSignals> signals_;
};

template <class T>
using Held = std::conditional_t<std::is_void_v<T>, std::monostate, T>;

/// A value on its way, or the news that there will be none. The standard library keeps it and wakes those who wait.
template <class T>
class Channel final : public ChannelBase
{
public:
    bool isFinished() const override { return outcome_.wait_for(std::chrono::seconds(0)) == std::future_status::ready; }

    bool isCanceled() const override { return isFinished() && !outcome_.get(); }

    bool settle(std::optional<Held<T>> outcome)
    {
        if (!claim())
        {
            return false;
        }
        promise_.set_value(std::move(outcome));
        announce();
        return true;
    }

    void cancel()
    {
        std::function<void()> handler;
        if (!claimForConsumer(handler))
        {
            return;
        }
        promise_.set_value(std::nullopt);
        announce();
        if (handler)
        {
            handler();
        }
    }

    bool waitFor(std::chrono::milliseconds duration)
    {
        // The clock could not count on if somebody meant "for ever".
        constexpr std::chrono::milliseconds longest = std::chrono::hours(24 * 365);
        if (isFinished())
        {
            return true;
        }
        announceWaiting();
        Waiting const waiting;
        return outcome_.wait_for(std::min(duration, longest)) == std::future_status::ready;
    }

    /// Waits.
    std::optional<Held<T>> const& outcome()
    {
        if (!isFinished())
        {
            announceWaiting();
            Waiting const waiting;
            outcome_.wait();
        }
        return outcome_.get();
    }

private:
    std::promise<std::optional<Held<T>>> promise_;
    std::shared_future<std::optional<Held<T>>> const outcome_{promise_.get_future()};
};

/// A listener that has `step` called in the thread of `context`, through its event loop; once the context is gone
/// `step` is destroyed instead.
std::function<void()> inThreadOf(QObject* context, std::function<void()> step);

/// To be called where an exception has left a continuation.
void logException() noexcept;

} // namespace threading::impl
