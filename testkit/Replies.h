#pragma once

#include <chrono>
#include <optional>
#include <type_traits>
#include <utility>
#include <variant>

#include <QString>

#include <platform/rest/RestReply.h>
#include <platform/threading/Future.h>

/// What the operations of a double answer. Those that return a plain `threading::Future<T>` take a
/// `threading::makeReadyFuture(value)`.
namespace testkit
{

/// The status of a success, as the library tells it for HTTP status 200.
rest::RestReplyStatus succeeded();

/// A reply that is there.
template <class T>
threading::Future<rest::RestReply<T>> ready(T value)
{
    return threading::makeReadyFuture(rest::RestReply<T>{succeeded(), std::move(value)});
}

/// The same for an operation whose answer carries no data.
threading::Future<rest::RestReply<void>> ready();

/// The reply of a call that failed, in the place of a reply of any type.
struct FailedReply
{
    rest::RestReplyStatus status;

    template <class T>
    operator rest::RestReply<T>() const
    {
        rest::RestReply<T> reply;
        reply.status = status;
        return reply;
    }

    template <class T>
    operator threading::Future<rest::RestReply<T>>() const
    {
        return threading::makeReadyFuture<rest::RestReply<T>>(*this);
    }
};

/// The service refuses the call with an error of its own (status kind 2).
FailedReply refused(qint32 code, QString const& message, qint32 httpStatus = 400);

/// An HTTP error without an error of the service in it, say from something on the way there (status kind 2, code 1000).
/// `retryAfter`: how long the caller is asked to wait.
FailedReply httpError(qint32 httpStatus, std::optional<std::chrono::seconds> retryAfter = {});

/// No answer: there is no network, nobody listens, time is up, or the line dropped (status kind 1). `message` is the
/// transport's; empty: some text.
FailedReply noConnection(QString const& message = {});

/// A reply to come: the test ends it when it pleases, from any thread. The first end counts; destroyed without one it
/// is cancelled.
template <class T>
class PendingReply
{
public:
    using Value = std::conditional_t<std::is_void_v<T>, std::monostate, T>;

    /// What an operation returns; `isCanceled()` tells whether the code under test has given it up.
    threading::Future<rest::RestReply<T>> future() const { return promise_.future(); }

    void finish(rest::RestReply<T> reply) { promise_.setValue(std::move(reply)); }

    void succeed(Value value = {})
    {
        rest::RestReply<T> reply;
        reply.status = succeeded();
        if constexpr (!std::is_void_v<T>)
        {
            reply.value = std::move(value);
        }
        finish(std::move(reply));
    }

    void fail(FailedReply const& failure) { finish(failure); }

    /// As if the connection were deleted.
    void cancel() { promise_.cancel(); }

private:
    threading::Promise<rest::RestReply<T>> promise_;
};

} // namespace testkit
