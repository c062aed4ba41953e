#include <platform/rest/internal/Failure.h>

#include <QUrl>

#include <platform/rest/internal/FileTarget.h>

namespace rest
{

namespace
{

QString timeoutText(Request const& request, QString const& host)
{
    QString const text = request.timeoutKind == Request::TimeoutKind::Total
                             ? QStringLiteral("Time-out: the exchange with %1 was not complete within %2 ms.")
                             : QStringLiteral("Time-out: the transfer with %1 made no progress for %2 ms.");
    return text.arg(host).arg(request.timeout.count());
}

} // namespace

int errorNumber(Failure failure, CURLcode result)
{
    switch (failure)
    {
    case Failure::None:
        return result;
    case Failure::TimedOut:
    case Failure::NeverSent:
        return CURLE_OPERATION_TIMEDOUT;
    case Failure::ReplyTooLarge:
    case Failure::HeadersTooLarge:
        return CURLE_FILESIZE_EXCEEDED;
    case Failure::BadCompression:
        return CURLE_BAD_CONTENT_ENCODING;
    case Failure::OutOfMemory:
        return CURLE_OUT_OF_MEMORY;
    case Failure::FileUnreadable:
    case Failure::FileShortened:
        return CURLE_READ_ERROR;
    case Failure::NotStored:
        return static_cast<int>(LocalError::NotStored);
    case Failure::WouldRepeatWrite:
        break;
    }
    return CURLE_SEND_FAIL_REWIND;
}

QString describeFailure(Failure failure, Request const& request)
{
    QString const host = QUrl::fromEncoded(request.origin).host();
    switch (failure)
    {
    case Failure::TimedOut:
        return timeoutText(request, host);
    case Failure::NeverSent:
        return QStringLiteral("Time-out: the request to %1 did not get its turn within %2 ms and was not sent.")
            .arg(host)
            .arg(request.timeout.count());
    case Failure::ReplyTooLarge:
        return QStringLiteral("The answer of %1 is larger than %2 bytes.").arg(host).arg(request.replySizeLimit);
    case Failure::HeadersTooLarge:
        return QStringLiteral("The headers of the answer of %1 are too large.").arg(host);
    case Failure::BadCompression:
        return QStringLiteral("The answer of %1 could not be decompressed.").arg(host);
    case Failure::OutOfMemory:
        return QStringLiteral("There is not enough memory for the answer of %1.").arg(host);
    case Failure::WouldRepeatWrite:
        return QStringLiteral("The connection to %1 was lost before the answer was complete.").arg(host);
    case Failure::FileUnreadable:
        return QStringLiteral("The file that was being sent to %1 could not be read.").arg(host);
    case Failure::FileShortened:
        return QStringLiteral("The file that was being sent to %1 has become shorter meanwhile.").arg(host);
    case Failure::NotStored:
        return request.target->failureText();
    case Failure::None:
        break;
    }
    return {};
}

Outcome neverSent(Request const& request)
{
    Outcome outcome;
    outcome.error = static_cast<int>(errorNumber(Failure::NeverSent, CURLE_OK));
    outcome.errorText = describeFailure(Failure::NeverSent, request);
    return outcome;
}

} // namespace rest
