#pragma once

#include <atomic>
#include <chrono>
#include <concepts>
#include <cstddef>
#include <functional>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

#include <QObject>

#include <platform/threading/SharedState.h>

namespace threading
{

template <class T>
class Future;

template <class T>
class Promise;

namespace impl
{

template <class F, class T>
struct TakesValue : std::is_invocable<F&, T const&>
{
};

template <class F>
struct TakesValue<F, void> : std::is_invocable<F&>
{
};

template <class F, class T>
decltype(auto) invokeContinuation(F& continuation, Future<T>& source)
{
    if constexpr (!TakesValue<F, T>::value)
    {
        return continuation(std::move(source));
    }
    else if constexpr (std::is_void_v<T>)
    {
        return continuation();
    }
    else
    {
        return continuation(source.result());
    }
}

template <class F, class T>
using ContinuationResult = std::decay_t<decltype(invokeContinuation(std::declval<F&>(), std::declval<Future<T>&>()))>;

} // namespace impl

/// A copyable handle on a value that is there, or will be. Every future finishes exactly once: with its value, or
/// cancelled. All members may be called from any thread. A default-constructed future counts as cancelled.
template <class T>
class Future
{
public:
    Future() : state_(std::make_shared<impl::SharedState<T>>()) { state_->abandon(); }

    /// True once there is a value or the future was cancelled.
    bool isFinished() const { return state_->isFinished(); }

    bool isCanceled() const { return state_->isCanceled(); }

    /// Blocks until finished. On a thread that drives other futures (the I/O thread) its work goes on meanwhile.
    void wait() const { state_->wait(); }

    /// Blocks until finished, for at most `duration`; returns `isFinished()`.
    bool waitFor(std::chrono::milliseconds duration) const { return state_->waitFor(duration); }

    /// Waits and returns a copy of the value; a default-constructed `T` when cancelled.
    T get() const
    {
        wait();
        if constexpr (!std::is_void_v<T>)
        {
            T const* const value = state_->value();
            return value != nullptr ? *value : T();
        }
    }

    /// Waits and gives the value away: moved out if no other handle is left that could ask for it, be it a future, a
    /// promise or a continuation that waits, else copied; a default-constructed `T` when cancelled. Uses up this
    /// handle, which no other thread may be using; others may be used meanwhile.
    T take() &&
    {
        impl::Hold<T> const hold = std::move(state_);
        hold->wait();
        if constexpr (!std::is_void_v<T>)
        {
            T* const value = hold->value();
            if (value == nullptr)
            {
                return T();
            }
            return hold->hasOneHandle() ? std::move(*value) : T(*value);
        }
    }

    /// Finishes the future as cancelled, unless it is finished, and tells whoever works on it to stop.
    /// Futures made from this one with `then` end as cancelled, too; those this one was made from go on.
    void cancel() const { state_->cancel(); }

    /// Has `continuation` called with the value (`T const&`; not called when cancelled, and the returned future is then
    /// cancelled, too) or with the finished future (`Future<T> const&`, or `Future<T>` to `take` from; always called).
    /// It runs on the thread that finishes this future, or at once, in this call, if that has happened. Any number may
    /// be attached; each runs once.
    template <class F>
    auto then(F continuation) const
    {
        using R = impl::ContinuationResult<F, T>;
        Promise<R> promise;
        Future<R> result = promise.future();
        state_->attach(continuationTask<R>(std::move(continuation), std::move(promise)));
        return result;
    }

    /// As above, but `continuation` runs in the thread of `context`, always through its event loop. Once `context` is
    /// gone it does not run at all and the returned future is cancelled.
    template <class F>
    auto then(QObject* context, F continuation) const
    {
        using R = impl::ContinuationResult<F, T>;
        Promise<R> promise;
        Future<R> result = promise.future();
        state_->attach(impl::relayTo(context, continuationTask<R>(std::move(continuation), std::move(promise))));
        return result;
    }

    /// The signals `finished()`, `canceled()` and `aboutToStartWaiting()`. They are not repeated for late receivers:
    /// connect first, then look at `isFinished()`. Lives as long as any handle on this future.
    impl::SharedStateSignals* sharedStateSignals() const { return state_->signalObject(); }

private:
    friend class Promise<T>;
    template <class F, class U>
    friend decltype(auto) impl::invokeContinuation(F& continuation, Future<U>& source);

    explicit Future(impl::Hold<T> state) : state_(std::move(state)) {}

    impl::Stored<T> const& result() const { return *state_->value(); }

    template <class R, class F>
    impl::Task continuationTask(F continuation, Promise<R> promise) const
    {
        return impl::Task([source = *this, continuation = std::move(continuation),
                           promise = std::move(promise)]() mutable { run(source, continuation, promise); });
    }

    template <class R, class F>
    static void run(Future& source, F& continuation, Promise<R>& promise)
    {
        if (impl::TakesValue<F, T>::value && source.isCanceled())
        {
            promise.cancel();
            return;
        }
        try
        {
            if constexpr (std::is_void_v<R>)
            {
                impl::invokeContinuation(continuation, source);
                promise.setValue();
            }
            else
            {
                std::move(promise).setValue(impl::invokeContinuation(continuation, source));
            }
        }
        catch (...)
        {
            impl::reportContinuationException();
            promise.cancel();
        }
    }

    impl::Hold<T> state_;
};

/// The producer's side of a future. Destroyed without a value, it cancels its future.
template <class T>
class Promise
{
public:
    Promise() : state_(std::make_shared<impl::SharedState<T>>()) {}

    Promise(Promise&& other) noexcept = default;

    Promise& operator=(Promise&& other) noexcept
    {
        std::swap(state_, other.state_);
        return *this;
    }

    Promise(Promise const&) = delete;
    Promise& operator=(Promise const&) = delete;

    ~Promise() { cancel(); }

    /// The future of this promise; may be asked for at any time and any number of times.
    Future<T> future() const { return state_ ? Future<T>(state_) : Future<T>(); }

    /// Finishes the future with `value`; false if it was finished already. May be called from any thread.
    bool setValue(impl::Stored<T> value) & requires(!std::is_void_v<T>)
    {
        auto const state = state_.state();
        return state && state->setValue(std::move(value));
    }

    /// As above, but gives this handle up first, so that the consumer's may be the only one: `Future::take` then moves
    /// the value out, on a thread that waits for it as well as in a continuation.
    bool setValue(impl::Stored<T> value) && requires(!std::is_void_v<T>)
    {
        auto const state = std::move(state_).giveUp();
        return state && state->setValue(std::move(value));
    }

    bool setValue() requires(std::is_void_v<T>)
    {
        auto const state = state_.state();
        return state && state->setValue({});
    }

    /// Finishes the future as cancelled, unless it is finished.
    void cancel()
    {
        if (auto const state = state_.state())
        {
            state->abandon();
        }
    }

    /// Has `handler` called once when `Future::cancel()` ends the future; at once if that has happened already.
    void onCancel(std::function<void()> handler)
    {
        if (state_)
        {
            state_->setCancelHandler(impl::Task(std::move(handler)));
        }
    }

private:
    impl::Hold<T> state_;
};

/// A future that is finished with `value`.
template <class T>
Future<T> makeReadyFuture(T value)
{
    Promise<T> promise;
    promise.setValue(std::move(value));
    return promise.future();
}

/// A future that finishes when all of `futures` are finished, cancelled ones included, and holds them in their order.
/// Cancelling it leaves them alone.
template <class T>
Future<std::vector<Future<T>>> whenAll(std::vector<Future<T>> futures)
{
    struct Gathering
    {
        Promise<std::vector<Future<T>>> promise;
        std::vector<Future<T>> futures;
        std::atomic<std::size_t> missing;

        void countDown()
        {
            if (missing.fetch_sub(1) == 1)
            {
                std::move(promise).setValue(std::move(futures));
            }
        }
    };
    auto gathering = std::make_shared<Gathering>();
    auto result = gathering->promise.future();
    gathering->futures = futures;
    // The extra one keeps the value together until every continuation is attached.
    gathering->missing = futures.size() + 1;
    for (Future<T> const& future : futures)
    {
        future.then([gathering](Future<T> const&) { gathering->countDown(); });
    }
    gathering->countDown();
    return result;
}

} // namespace threading
