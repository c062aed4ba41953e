#include <testkit/Replies.h>

#include <KeloCommunicationLib/connection/KeloErrorCode.h>

namespace testkit
{

namespace
{

FailedReply failure(quint32 kind, qint32 code, qint32 httpStatus, QString const& message)
{
    FailedReply reply;
    reply.status.kind = kind;
    reply.status.code = code;
    reply.status.httpStatus = httpStatus;
    reply.status.message = message;
    return reply;
}

} // namespace

rest::RestReplyStatus succeeded()
{
    return failure(0, 0, 200, {}).status;
}

threading::Future<rest::RestReply<void>> ready()
{
    return threading::makeReadyFuture(rest::RestReply<void>{succeeded()});
}

FailedReply refused(qint32 code, QString const& message, qint32 httpStatus)
{
    return failure(2, code, httpStatus, message);
}

FailedReply httpError(qint32 httpStatus, std::optional<std::chrono::seconds> retryAfter)
{
    FailedReply reply = failure(2, static_cast<qint32>(KeloErrorCode::UnreadableError), httpStatus, {});
    reply.status.retryAfter = retryAfter;
    return reply;
}

FailedReply noConnection(QString const& message)
{
    return failure(1, 0, 0, message.isEmpty() ? QStringLiteral("The connection was lost.") : message);
}

} // namespace testkit
