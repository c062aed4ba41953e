#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <KeloCommunicationLib/connection/KeloErrorParser.h>
#include <KeloCommunicationLib/connection/KeloErrors.h>

#include "tests/fuzz/Fuzzing.h"

// The input's first line is the HTTP status, 0 for a call without an answer; the rest is the body, or the transport's
// text.

namespace
{

using fuzz::require;

rest::JsonReply replyOf(int httpStatus, QByteArray const& rest)
{
    int const classification = httpStatus == 0 ? 2 : httpStatus / 100 == 2 ? 0 : 1;
    return std::make_shared<rest::NetworkReply<QJsonDocument>>(
        httpStatus, classification, httpStatus, classification == 2 ? QString::fromUtf8(rest) : QString(),
        QJsonDocument::fromJson(rest));
}

void checkServiceError(rest::RestReplyStatus const& status, QJsonDocument const& body)
{
    QJsonObject const first = body.array().at(0).toObject();
    bool isReadable = false;
    int const code = first.value(QLatin1String("Code")).toString().toInt(&isReadable);
    require(status.code == (isReadable ? code : 1000), "the code is the body's, or 1000");
    require(status.message == first.value(QLatin1String("Message")).toString(), "the message is the body's, or none");
    require(kelo::errorCode(status) == static_cast<KeloErrorCode>(status.code), "the service's code is passed on");
}

void check(rest::JsonReply const& reply)
{
    rest::RestReplyStatus const status = KeloErrorParser().parse(reply);
    require(status.httpStatus == reply->httpStatusCode(), "the HTTP status is kept");
    require(status.serverResponseStatus.isEmpty(), "there is no further status");
    switch (reply->classification())
    {
    case 0:
        require(status.kind == 0 && status.code == 0 && status.message.isEmpty(), "success is no error");
        require(kelo::errorCode(status) == KeloErrorCode::Success, "success has its code");
        break;
    case 1:
        require(status.kind == 2, "an answer with an error status is a service error");
        checkServiceError(status, reply->body());
        break;
    default:
        require(status.kind == 1 && status.code == 0, "no answer is no service error");
        require(status.message == reply->errorText(), "the transport's text is passed on");
        require(kelo::errorCode(status) == KeloErrorCode::NoConnection, "no answer has its code");
    }
    QString const expected = u'(' + QString::number(status.code) + QLatin1String(") ") + status.message;
    require(kelo::errorMessage(status) == expected, "the line is the code and the message, unchanged");
}

} // namespace

int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    QByteArray const input(reinterpret_cast<char const*>(data), static_cast<qsizetype>(size));
    qsizetype const lineEnd = input.indexOf('\n');
    if (lineEnd < 0)
    {
        return 0;
    }
    check(replyOf(input.left(lineEnd).toInt(), input.mid(lineEnd + 1)));
    return 0;
}
