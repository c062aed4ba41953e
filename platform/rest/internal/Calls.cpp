#include <platform/rest/internal/Calls.h>

#include <platform/rest/internal/FileTarget.h>
#include <platform/rest/internal/Session.h>

namespace rest
{

namespace
{

int classify(Outcome const& outcome)
{
    if (outcome.error != 0)
    {
        return 2;
    }
    return outcome.httpStatus >= 200 && outcome.httpStatus < 300 ? 0 : 1;
}

template <class Body>
std::shared_ptr<NetworkReply<Body>> makeReply(Outcome const& outcome, QByteArray body)
{
    int const classification = classify(outcome);
    int const errorCode = classification == 1 ? outcome.httpStatus : outcome.error;
    QString const text = classification == 1
                             ? QStringLiteral("The server answered with HTTP status %1.").arg(outcome.httpStatus)
                             : outcome.errorText;
    auto reply =
        std::make_shared<NetworkReply<Body>>(outcome.httpStatus, classification, errorCode, text, std::move(body));
    reply->setRetryAfter(outcome.retryAfter);
    return reply;
}

template <class T>
void abandonOnCancel(threading::Promise<T>& promise, std::shared_ptr<Call> const& call)
{
    promise.onCancel(
        [weak = std::weak_ptr(call)]
        {
            if (std::shared_ptr<Call> const canceled = weak.lock())
            {
                canceled->session()->abandon(canceled);
            }
        });
}

} // namespace

Call::Call(std::shared_ptr<Session> session, Request request)
    : progress(request.watcher != nullptr, request.body.size()),
      session_(std::move(session)),
      request_(std::move(request))
{
}

Call::~Call() = default;

void JsonCall::complete(Outcome outcome)
{
    QByteArray text = std::move(outcome.body);
    promise_.setValue(makeReply<QJsonDocument>(outcome, std::move(text)));
}

void JsonCall::cancel()
{
    promise_.cancel();
}

void JsonCall::watchCancellation()
{
    abandonOnCancel(promise_, shared_from_this());
}

DownloadCall::DownloadCall(std::shared_ptr<Session> session, Request request, Callback callback)
    : Call(std::move(session), std::move(request)), callback_(std::move(callback))
{
}

void DownloadCall::complete(Outcome outcome)
{
    // What the callback holds is the host's and must not die later, at an odd moment on the I/O thread.
    Callback const callback = std::exchange(callback_, nullptr);
    try
    {
        if (callback && !promise_.future().isFinished())
        {
            QByteArray body = outcome.error == 0 ? std::move(outcome.body) : QByteArray();
            callback(makeReply<QByteArray>(outcome, std::move(body)));
        }
    }
    catch (...)
    {
        threading::impl::reportContinuationException();
    }
    promise_.setValue();
}

void DownloadCall::cancel()
{
    callback_ = nullptr;
    promise_.cancel();
}

void DownloadCall::watchCancellation()
{
    abandonOnCancel(promise_, shared_from_this());
}

void FileCall::complete(Outcome outcome)
{
    FileTarget& target = *request().target;
    bool const isWanted = outcome.error == 0 && outcome.httpStatus == 200 && !promise_.future().isFinished();
    if (!isWanted)
    {
        target.discard();
    }
    else if (!target.commit())
    {
        outcome.httpStatus = 0;
        outcome.error = static_cast<int>(LocalError::NotStored);
        outcome.errorText = target.failureText();
    }
    QByteArray body = outcome.error == 0 ? std::move(outcome.body) : QByteArray();
    promise_.setValue(makeReply<QByteArray>(outcome, std::move(body)));
}

void FileCall::cancel()
{
    promise_.cancel();
}

void FileCall::watchCancellation()
{
    abandonOnCancel(promise_, shared_from_this());
}

} // namespace rest
