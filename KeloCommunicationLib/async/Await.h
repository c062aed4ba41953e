#pragma once

#include <atomic>
#include <coroutine>
#include <exception>
#include <memory>
#include <optional>
#include <type_traits>
#include <utility>

#include <QObject>
#include <QPointer>
#include <QThread>

#include <KeloCommunicationLib/async/Bridge.h>
#include <platform/threading/Future.h>

/// Coroutines over the library's futures. This header is for those who use them; no other brings it in.
///
/// A function that returns `threading::Future<R>` may be a coroutine. It runs at once, up to the first future that is
/// not finished, and its own future finishes when the body has ended and its locals are gone:
///
/// - `co_await future` gives the value of a `threading::Future`. If that was cancelled, or the object below is gone,
///   the coroutine ends there: its locals are destroyed and its own future is cancelled.
/// - Cancelling the coroutine's future cancels the one that it waits for.
/// - If it is a member function of a QObject, it goes on in that object's thread, through its event loop, and not at
///   all once the object is destroyed. Otherwise the first parameter that points or refers to a QObject counts in the
///   same way. Without any, it goes on where the awaited future finishes. What the object's end takes with it is
///   destroyed in `~QObject`, when the members of derived classes are gone.
/// - What the body throws is logged and cancels its future, as in a continuation.
///
/// g++ 12 errs, whatever is awaited, where `co_await` stands in the condition of an `if`, a loop or a `switch`, in an
/// operand of `?:`, `&&` or `||`, or in one expression with a lambda that captures or with `Aggregate{...}`. Make the
/// call first, then `auto const reply = co_await std::move(call);`.
///
/// Coroutines of other types may await futures, too. To them a cancelled one is a `Canceled` that is thrown where they
/// wait. Whoever has such a coroutine may destroy it while it waits, in the thread in which it would go on: with `on`
/// in that of the object; without, only where the future cannot finish at the same time. One that waits with `on` when
/// the object is destroyed is not resumed any more and remains its owner's to destroy.

namespace KeloCommunicationLib
{

/// Thrown by `co_await` in a coroutine of another type than `threading::Future` if the future was cancelled.
class Canceled : public std::exception
{
public:
    char const* what() const noexcept override { return "The call was cancelled."; }
};

namespace internal
{

/// Where a coroutine goes on: on whichever thread, or in the thread of an object while that exists.
class Place
{
public:
    Place() = default;
    explicit Place(QObject* object) : object_(object), isBound_(true) {}

    bool isHere() const { return !isBound_ || (object_ && object_->thread() == QThread::currentThread()); }

    /// Has `continuation` called there with the finished future; destroys it if that is not possible any more.
    template <class T, class F>
    void then(threading::Future<T> const& future, F continuation) const
    {
        if (!isBound_)
        {
            future.then(std::move(continuation));
        }
        else if (QObject* const object = object_)
        {
            future.then(object, std::move(continuation));
        }
    }

private:
    QPointer<QObject> object_;
    bool isBound_ = false;
};

class CoroutineBase;

/// Waits for a future on behalf of a coroutine. Lives in the coroutine's frame.
template <class T>
class Awaiter
{
public:
    Awaiter(threading::Future<T> future, Place place) : future_(std::move(future)), place_(std::move(place)) {}

    Awaiter(Awaiter const&) = delete;
    Awaiter& operator=(Awaiter const&) = delete;

    ~Awaiter()
    {
        if (auto const wayBack = wayBack_.lock())
        {
            wayBack->awaiter = nullptr;
        }
    }

    bool await_ready() const { return future_.isFinished() && !future_.isCanceled() && place_.isHere(); }

    // Not inlined: clang might then keep the locals in the coroutine's frame, which may be gone before this returns.
    template <class P>
    [[gnu::noinline]] void await_suspend(std::coroutine_handle<P> coroutine)
    {
        constexpr bool isOurs = std::is_base_of_v<CoroutineBase, P>;
        auto wayBack = std::make_shared<WayBack>(this, coroutine, isOurs);
        wayBack_ = wayBack;
        std::shared_ptr<CancelRelay> relay;
        auto const place = place_;
        auto const future = std::move(future_);
        if constexpr (isOurs)
        {
            relay = coroutine.promise().relay();
            relay->reach(future);
        }
        // From here on another thread may resume or destroy the coroutine, and with it this object.
        place.then(
            future,
            [wayBack = std::move(wayBack), relay = std::move(relay)](threading::Future<T> finished)
            {
                if (relay)
                {
                    relay->forget();
                }
                wayBack->take(std::move(finished));
            });
    }

    T await_resume()
    {
        if (future_.isCanceled())
        {
            throw Canceled();
        }
        return valueOf(std::move(future_));
    }

private:
    /// What the future's continuation has of the coroutine. If the continuation is destroyed without having run, so is
    /// the coroutine, provided that it is one of ours.
    struct WayBack
    {
        WayBack(Awaiter* waiting, std::coroutine_handle<> suspended, bool ours)
            : awaiter(waiting), coroutine(suspended), isOurs(ours)
        {
        }

        WayBack(WayBack const&) = delete;
        WayBack& operator=(WayBack const&) = delete;

        ~WayBack()
        {
            if (isOurs && awaiter != nullptr)
            {
                coroutine.destroy();
            }
        }

        void take(threading::Future<T> finished)
        {
            Awaiter* const waiting = awaiter.exchange(nullptr);
            if (waiting == nullptr)
            {
                return;
            }
            if (isOurs && finished.isCanceled())
            {
                coroutine.destroy();
                return;
            }
            waiting->future_ = std::move(finished);
            coroutine.resume();
        }

        std::atomic<Awaiter*> awaiter; ///< null once the coroutine was resumed or is gone
        std::coroutine_handle<> coroutine;
        bool isOurs;
    };

    threading::Future<T> future_;
    Place place_;
    std::weak_ptr<WayBack> wayBack_;
};

/// A future, and where its value is wanted.
template <class T>
struct Placed
{
    threading::Future<T> future;
    Place place;
};

template <class T>
Awaiter<T> operator co_await(Placed<T> placed)
{
    return {std::move(placed.future), std::move(placed.place)};
}

/// The object that `argument` is or points to.
template <class T>
QObject* objectIn(T const& argument)
{
    QObject const* object = nullptr;
    if constexpr (std::is_convertible_v<T const*, QObject const*>)
    {
        object = &argument;
    }
    else if constexpr (std::is_pointer_v<T> && std::is_convertible_v<T, QObject const*>)
    {
        object = argument;
    }
    return const_cast<QObject*>(object);
}

/// What coroutines have in common, whatever they return.
class CoroutineBase
{
public:
    /// Gets what the coroutine is called with, the object whose member it is in front.
    template <class... Arguments>
    explicit CoroutineBase(Arguments const&... arguments)
    {
        QObject* object = nullptr;
        ((object = object != nullptr ? object : objectIn(arguments)), ...);
        if (object != nullptr)
        {
            place_ = Place(object);
        }
    }

    CoroutineBase(CoroutineBase const&) = delete;
    CoroutineBase& operator=(CoroutineBase const&) = delete;

    std::shared_ptr<CancelRelay> const& relay() const { return relay_; }

    std::suspend_never initial_suspend() const noexcept { return {}; }

    template <class T>
    Awaiter<T> await_transform(threading::Future<T> future) const
    {
        return {std::move(future), place_};
    }

    template <class T>
    Awaiter<T> await_transform(Placed<T> placed) const
    {
        return {std::move(placed.future), std::move(placed.place)};
    }

    template <class Awaitable>
    Awaitable&& await_transform(Awaitable&& awaitable) const noexcept
    {
        return std::forward<Awaitable>(awaitable);
    }

    void unhandled_exception() const noexcept { logException("An exception left a coroutine:"); }

protected:
    ~CoroutineBase() = default;

private:
    Place place_;
    std::shared_ptr<CancelRelay> relay_ = std::make_shared<CancelRelay>();
};

/// The outcome of a coroutine's body: nothing if it has thrown.
template <class R>
class Outcome
{
public:
    void return_value(R value) { value_.emplace(std::move(value)); }

    void giveTo(threading::Promise<R> promise) &&
    {
        if (value_)
        {
            std::move(promise).setValue(std::move(*value_));
        }
    }

private:
    std::optional<R> value_;
};

template <>
class Outcome<void>
{
public:
    void return_void() { hasReturned_ = true; }

    void giveTo(threading::Promise<void> promise) &&
    {
        if (hasReturned_)
        {
            promise.setValue();
        }
    }

private:
    bool hasReturned_ = false;
};

/// The promise of a coroutine that returns `threading::Future<R>`.
template <class R>
class Coroutine final : public CoroutineBase, public Outcome<R>
{
public:
    template <class... Arguments>
    explicit Coroutine(Arguments const&... arguments) : CoroutineBase(arguments...)
    {
        promise_.onCancel([relay = relay()] { relay->cancel(); });
    }

    /// The locals are gone, and whoever waits for the future finds it so.
    ~Coroutine()
    {
        try
        {
            std::move(*this).giveTo(std::move(promise_));
        }
        catch (...)
        {
            unhandled_exception();
        }
    }

    threading::Future<R> get_return_object() const { return promise_.future(); }

    std::suspend_never final_suspend() const noexcept { return {}; }

private:
    threading::Promise<R> promise_;
};

} // namespace internal

/// To be awaited: the value of `future`, in the thread of `object`, through its event loop, whatever the coroutine's
/// own object is.
template <class T>
internal::Placed<T> on(QObject* object, threading::Future<T> future)
{
    return {std::move(future), internal::Place(object)};
}

} // namespace KeloCommunicationLib

namespace threading
{

/// For coroutines of other types; those of ours wait in their object's thread.
template <class T>
KeloCommunicationLib::internal::Awaiter<T> operator co_await(Future<T> future)
{
    return {std::move(future), {}};
}

} // namespace threading

/// @cond Doxygen does not find the place of a specialisation in std.
template <class R, class... Arguments>
struct std::coroutine_traits<threading::Future<R>, Arguments...>
{
    using promise_type = KeloCommunicationLib::internal::Coroutine<R>;
};
/// @endcond
