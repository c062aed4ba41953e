#pragma once

#include <chrono>
#include <concepts>
#include <memory>
#include <mutex>
#include <optional>
#include <utility>

#include <QByteArray>
#include <QJsonDocument>
#include <QString>

#include <platform/threading/Future.h>

namespace rest
{

/// Bytes of memory that the transport leaves behind the text of a reply, for readers that look ahead in wide steps.
/// They may be read, not written, where `text().capacity() - text().size() >= replyPadding`. That does not hold for
/// every reply: not for one that a host made, nor for an empty one.
inline constexpr qsizetype replyPadding = 64;

namespace impl
{

/// A JSON document, or the text that it is made of when it is first asked for.
class LazyDocument
{
public:
    LazyDocument() = default;
    explicit LazyDocument(QJsonDocument document) : document_(std::move(document)) {}
    explicit LazyDocument(QByteArray text) : text_(std::move(text)) {}
    LazyDocument(LazyDocument const& other) : text_(other.text_), document_(other.made()) {}
    ~LazyDocument() = default;

    LazyDocument& operator=(LazyDocument const& other)
    {
        text_ = other.text_;
        document_ = other.made();
        return *this;
    }

    QByteArray const& text() const { return text_; }

    /// May be called from any thread; the document stays where it is.
    QJsonDocument const& document() const
    {
        std::lock_guard const lock(mutex_);
        if (!document_)
        {
            document_ = QJsonDocument::fromJson(text_);
        }
        return *document_;
    }

private:
    std::optional<QJsonDocument> made() const
    {
        std::lock_guard const lock(mutex_);
        return document_;
    }

    QByteArray text_;
    mutable std::mutex mutex_;
    mutable std::optional<QJsonDocument> document_;
};

} // namespace impl

/// What every finished reply tells, whatever its body is.
class NetworkReplyOutcome
{
public:
    NetworkReplyOutcome() = default;

    NetworkReplyOutcome(int httpStatusCode, int classification, int errorCode, QString errorText)
        : httpStatusCode_(httpStatusCode),
          classification_(classification),
          errorCode_(errorCode),
          errorText_(std::move(errorText))
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

    /// How long the server asks to be left alone, counted from its answer (Retry-After of 429 and 503).
    std::optional<std::chrono::seconds> retryAfter() const { return retryAfter_; }

    void setRetryAfter(std::optional<std::chrono::seconds> duration) { retryAfter_ = duration; }

private:
    int httpStatusCode_ = 0;
    int classification_ = 0;
    int errorCode_ = 0;
    QString errorText_;
    std::optional<std::chrono::seconds> retryAfter_;
};

/// The finished reply of one HTTP exchange, not yet interpreted.
template <class Body>
class NetworkReply : public NetworkReplyOutcome
{
public:
    NetworkReply() = default;

    NetworkReply(int httpStatusCode, int classification, int errorCode, QString errorText, Body body)
        : NetworkReplyOutcome(httpStatusCode, classification, errorCode, std::move(errorText)), body_(std::move(body))
    {
    }

    Body const& body() const { return body_; }

private:
    Body body_;
};

/// A reply that is read as JSON: from its text, or from the document that `body` makes of it. All members may be called
/// from any thread.
template <>
class NetworkReply<QJsonDocument> : public NetworkReplyOutcome
{
public:
    NetworkReply() = default;

    NetworkReply(int httpStatusCode, int classification, int errorCode, QString errorText, QJsonDocument body)
        : NetworkReplyOutcome(httpStatusCode, classification, errorCode, std::move(errorText)), body_(std::move(body))
    {
    }

    /// Takes the body as it was received. For a `QByteArray` only, so that `{}` remains an empty document.
    template <std::same_as<QByteArray> Text>
    NetworkReply(int httpStatusCode, int classification, int errorCode, QString errorText, Text text)
        : NetworkReplyOutcome(httpStatusCode, classification, errorCode, std::move(errorText)), body_(std::move(text))
    {
    }

    /// The body as it was received, decompressed; null when the reply was made from a document.
    QByteArray const& text() const { return body_.text(); }

    /// The document in the body, empty when it is not JSON. It is made of the text when it is first asked for, once.
    QJsonDocument const& body() const { return body_.document(); }

private:
    impl::LazyDocument body_;
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
