#pragma once

#include <memory>
#include <utility>

#include <QByteArray>
#include <QJsonDocument>
#include <QString>

#include <platform/threading/Future.h>

namespace rest
{

/// The finished reply of one HTTP exchange, not yet interpreted.
template <class Body>
class NetworkReply
{
public:
    NetworkReply() = default;

    NetworkReply(int httpStatusCode, int classification, int errorCode, QString errorText, Body body)
        : httpStatusCode_(httpStatusCode),
          classification_(classification),
          errorCode_(errorCode),
          errorText_(std::move(errorText)),
          body_(std::move(body))
    {
    }

    /// HTTP status of the answer; 0 when there was none.
    int httpStatusCode() const { return httpStatusCode_; }

    /// 0 answered with success (HTTP 2xx), 1 answered with an error (any other HTTP status), 2 no usable HTTP answer.
    int classification() const { return classification_; }

    /// 0 on success, the HTTP status when the server answered with an error, else the transport's error number.
    int errorCode() const { return errorCode_; }

    /// What went wrong, in a sentence without secrets; empty on success.
    QString const& errorText() const { return errorText_; }

    Body const& body() const { return body_; }

private:
    int httpStatusCode_ = 0;
    int classification_ = 0;
    int errorCode_ = 0;
    QString errorText_;
    Body body_;
};

/// True when there was no usable HTTP answer: no connection, a time-out, an answer cut short.
template <class Body>
bool isNetworkError(std::shared_ptr<NetworkReply<Body>> const& reply)
{
    return reply == nullptr || reply->classification() == 2;
}

using JsonReply = std::shared_ptr<NetworkReply<QJsonDocument>>;
using BinaryReply = std::shared_ptr<NetworkReply<QByteArray>>;
using FutureJsonReply = threading::Future<JsonReply>;

} // namespace rest
