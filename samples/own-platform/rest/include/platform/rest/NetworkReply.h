#pragma once

#include <memory>
#include <utility>

#include <QByteArray>
#include <QJsonDocument>
#include <QString>

#include <platform/threading/Future.h>

namespace rest
{

/// The finished reply of one exchange.
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

    int httpStatusCode() const { return httpStatusCode_; }

    /// 0 HTTP 2xx, 1 any other HTTP status, 2 no usable answer.
    int classification() const { return classification_; }

    /// 0, the HTTP status, or Qt's error number, in the order of the classes.
    int errorCode() const { return errorCode_; }

    QString const& errorText() const { return errorText_; }

    Body const& body() const { return body_; }

private:
    int httpStatusCode_ = 0;
    int classification_ = 0;
    int errorCode_ = 0;
    QString errorText_;
    Body body_;
};

template <class Body>
bool isNetworkError(std::shared_ptr<NetworkReply<Body>> const& reply)
{
    return reply == nullptr || reply->classification() == 2;
}

using JsonReply = std::shared_ptr<NetworkReply<QJsonDocument>>;
using BinaryReply = std::shared_ptr<NetworkReply<QByteArray>>;
using FutureJsonReply = threading::Future<JsonReply>;

} // namespace rest
