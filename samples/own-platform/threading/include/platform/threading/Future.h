#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <type_traits>
#include <utility>
#include <vector>

#include <QObject>

#include <platform/threading/Channel.h>

namespace threading
{

/// True where this header is reached, and no other of its name.
inline constexpr bool isHostsOwn = true;

template <class T>
class Future;

template <class T>
class Promise;

namespace impl
{

template <class F, class T>
constexpr bool takesValue()
{
    if constexpr (std::is_void_v<T>)
    {
        return std::is_invocable_v<F&>;
    }
    else
    {
        return std::is_invocable_v<F&, T const&>;
    }
}

template <class F, class T>
constexpr auto resultOf()
{
    if constexpr (!takesValue<F, T>())
    {
        return std::type_identity<std::invoke_result_t<F&, Future<T> const&>>();
    }
    else if constexpr (std::is_void_v<T>)
    {
        return std::type_identity<std::invoke_result_t<F&>>();
    }
    else
    {
        return std::type_identity<std::invoke_result_t<F&, T const&>>();
    }
}

/// A continuation, what it waits for, and the promise of what it returns.
template <class F, class T>
class Step
{
public:
    Step(Future<T> source, F continuation) : source_(std::move(source)), continuation_(std::move(continuation)) {}

    auto future() const { return promise_.future(); }

    void run()
    {
        try
        {
            if (takesValue<F, T>() && source_.isCanceled())
            {
                promise_.cancel();
            }
            else if constexpr (std::is_void_v<Result>)
            {
                call();
                promise_.setValue();
            }
            else
            {
                promise_.setValue(call());
            }
        }
        catch (...)
        {
            logException();
            promise_.cancel();
        }
    }

private:
    using Result = std::decay_t<typename decltype(resultOf<F, T>())::type>;

    decltype(auto) call()
    {
        if constexpr (!takesValue<F, T>())
        {
            return continuation_(std::as_const(source_));
        }
        else if constexpr (std::is_void_v<T>)
        {
            return continuation_();
        }
        else
        {
            return continuation_(*source_.channel_->outcome());
        }
    }

    Future<T> source_;
    F continuation_;
    Promise<Result> promise_;
};

} // namespace impl

/// A handle on a value that is there or will be; see the library's page on platforms for what it owes.
template <class T>
class Future
{
public:
    Future() : channel_(std::make_shared<impl::Channel<T>>()) { channel_->settle(std::nullopt); }

    bool isFinished() const { return channel_->isFinished(); }

    bool isCanceled() const { return channel_->isCanceled(); }

    void wait() const { channel_->outcome(); }

    bool waitFor(std::chrono::milliseconds duration) const { return channel_->waitFor(duration); }

    T get() const
    {
        [[maybe_unused]] auto const& outcome = channel_->outcome();
        if constexpr (!std::is_void_v<T>)
        {
            return outcome ? *outcome : T();
        }
    }

    void cancel() const
    {
        // A continuation may destroy this future.
        auto const channel = channel_;
        channel->cancel();
    }

    template <class F>
    auto then(F continuation) const
    {
        auto const step = std::make_shared<impl::Step<F, T>>(*this, std::move(continuation));
        auto const result = step->future();
        channel_->attach([step] { step->run(); });
        return result;
    }

    template <class F>
    auto then(QObject* context, F continuation) const
    {
        auto step = std::make_shared<impl::Step<F, T>>(*this, std::move(continuation));
        auto const result = step->future();
        channel_->attach(impl::inThreadOf(context, [step = std::move(step)] { step->run(); }));
        return result;
    }

    impl::SharedStateSignals* sharedStateSignals() const { return channel_->signalObject(); }

private:
    friend class Promise<T>;
    template <class F, class U>
    friend class impl::Step;

    explicit Future(std::shared_ptr<impl::Channel<T>> channel) : channel_(std::move(channel)) {}

    std::shared_ptr<impl::Channel<T>> channel_;
};

/// The other end of a future. Destroyed without a value, it cancels its future.
template <class T>
class Promise
{
public:
    Promise() = default;
    Promise(Promise&& other) noexcept = default;

    Promise& operator=(Promise&& other) noexcept
    {
        channel_.swap(other.channel_);
        return *this;
    }

    Promise(Promise const&) = delete;
    Promise& operator=(Promise const&) = delete;
    ~Promise() { cancel(); }

    Future<T> future() const { return channel_ ? Future<T>(channel_) : Future<T>(); }

    bool setValue(impl::Held<T> value) requires(!std::is_void_v<T>)
    {
        auto const channel = channel_;
        return channel && channel->settle(std::move(value));
    }

    bool setValue() requires(std::is_void_v<T>)
    {
        auto const channel = channel_;
        return channel && channel->settle(std::monostate());
    }

    void cancel()
    {
        if (auto const channel = channel_)
        {
            channel->settle(std::nullopt);
        }
    }

    void onCancel(std::function<void()> handler)
    {
        if (channel_)
        {
            channel_->onCancel(std::move(handler));
        }
    }

private:
    std::shared_ptr<impl::Channel<T>> channel_ = std::make_shared<impl::Channel<T>>();
};

template <class T>
Future<T> makeReadyFuture(T value)
{
    Promise<T> promise;
    promise.setValue(std::move(value));
    return promise.future();
}

/// Finishes when all are finished, cancelled ones included.
template <class T>
Future<std::vector<Future<T>>> whenAll(std::vector<Future<T>> futures)
{
    struct Gathering
    {
        Promise<std::vector<Future<T>>> promise;
        std::vector<Future<T>> futures;
    };
    auto gathering = std::make_shared<Gathering>();
    auto const result = gathering->promise.future();
    // The last of the continuations that lets go of the deleter's guard has seen them all finished.
    std::shared_ptr<void> const guard(nullptr, [gathering](void*) { gathering->promise.setValue(gathering->futures); });
    gathering->futures = futures;
    for (Future<T> const& future : futures)
    {
        future.then([guard](Future<T> const&) {});
    }
    return result;
}

} // namespace threading
