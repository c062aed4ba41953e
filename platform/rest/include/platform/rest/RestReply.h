#pragma once

#include <chrono>
#include <optional>

#include <QString>
#include <QtGlobal>

namespace rest
{

/// The outcome of one call.
struct RestReplyStatus
{
    quint32 kind = 0;             ///< 0 success, 1 no usable HTTP answer, 2 the server answered with an error
    qint32 code = 0;              ///< the service's error code when `kind` is 2, else 0
    qint32 httpStatus = 0;        ///< HTTP status of the answer, 0 when there was none
    QString message;              ///< the service's message, or the transport's when `kind` is 1
    QString serverResponseStatus; ///< a further status text of the service, if it sends one
    /// How long the service asks to be left alone, counted from its answer (Retry-After of 429 and 503).
    std::optional<std::chrono::seconds> retryAfter{};
};

/// The typed reply of one call: its status, and the value, which is default-constructed when the call failed.
template <class T>
struct RestReply
{
    RestReplyStatus status;
    T value{};
};

/// The reply of a call whose answer carries no data.
template <>
struct RestReply<void>
{
    RestReplyStatus status;
};

} // namespace rest
