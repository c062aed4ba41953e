#pragma once

#include <chrono>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

#include <QByteArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>
#include <QString>
#include <QUrl>

#include <KeloCommunicationLib/connection/TessalyConnection.h>
#include <KeloCommunicationLib/json/JsonSerializer.h>
#include <platform/rest/HttpRequestData.h>
#include <platform/rest/NetReplyErrorParser.h>
#include <platform/rest/RestReply.h>
#include <platform/threading/Future.h>

/// The one way from an operation to the wire and back. An operation names its path, its body and its reply; everything
/// else happens here.
namespace pipeline
{

/// Fills all placeholders in one pass, so that a value that looks like a placeholder stays as it is. Values are not
/// percent-encoded.
template <class... Values>
QString path(char const* pathTemplate, Values const&... values)
{
    return QString::fromLatin1(pathTemplate).arg(values...);
}

/// Reads a reply's body into its value.
template <class T>
struct Body
{
    static T read(QJsonDocument const& document)
    {
        return document.isObject() ? jsonSerializer::fromJson<T>(document.object()) : T();
    }
};

template <class T>
struct Body<std::vector<T>>
{
    static std::vector<T> read(QJsonDocument const& document)
    {
        return jsonSerializer::implementation::FromJSON<std::vector<T>, 1>::convert(document);
    }
};

/// Classifies a reply and, if it is a success, reads its body with `Reader`.
template <class T, class Reader = Body<T>>
rest::RestReply<T> typedReply(rest::NetReplyErrorParser const& parser, rest::JsonReply const& reply)
{
    rest::RestReply<T> typed;
    typed.status = parser.parse(reply);
    if constexpr (!std::is_void_v<T>)
    {
        if (typed.status.kind == 0)
        {
            typed.value = Reader::read(reply->body());
        }
    }
    return typed;
}

/// Sends the request. The returned future finishes with the typed reply on the thread that finishes the exchange;
/// cancelling it aborts the exchange. The continuation holds the parser, never the connection.
template <class T, class Reader = Body<T>>
threading::Future<rest::RestReply<T>> send(rest::Connection const& connection, rest::HttpRequestData request)
{
    // Once the request is out, another thread may see its effect and destroy the connection.
    auto parser = connection.getErrorParser();
    rest::FutureJsonReply const exchange = connection.request(std::move(request));
    threading::Promise<rest::RestReply<T>> promise;
    auto const result = promise.future();
    promise.onCancel([exchange] { exchange.cancel(); });
    exchange.then(
        [parser = std::move(parser), promise = std::move(promise)](rest::FutureJsonReply const& finished) mutable
        {
            if (finished.isCanceled())
            {
                promise.cancel();
            }
            else
            {
                promise.setValue(typedReply<T, Reader>(*parser, finished.get()));
            }
        });
    return result;
}

/// Fetches the bytes at the path; they are empty unless the answer is HTTP 200. Cancelling the returned future aborts
/// the transfer.
inline threading::Future<QByteArray> download(rest::Connection const& connection, QString const& path)
{
    auto promise = std::make_shared<threading::Promise<QByteArray>>();
    threading::Future<QByteArray> const result = promise->future();
    threading::Future<void> const transfer = connection.downloadBinary(
        QUrl(path, QUrl::TolerantMode),
        [promise](rest::BinaryReply const& reply)
        { promise->setValue(reply->httpStatusCode() == 200 ? reply->body() : QByteArray()); },
        std::chrono::milliseconds(0));
    promise->onCancel([transfer] { transfer.cancel(); });
    // Aborted on the connection's side (closed, destroyed) there is no reply, and nothing is left that could finish the
    // promise.
    transfer.then([promise](threading::Future<void> const&) { promise->cancel(); });
    return result;
}

} // namespace pipeline

template <class T>
TessalyConnectionInterface::Reply<T> TessalyConnection::get(QString const& path) const
{
    return pipeline::send<T>(
        *this, rest::RequestDataCreator::makeRequest(rest::HttpMethod::Get, QUrl(path, QUrl::TolerantMode)));
}

template <class T>
TessalyConnectionInterface::Reply<T> TessalyConnection::post(
    QString const& path, QJsonValue const& body, std::chrono::milliseconds timeout) const
{
    return pipeline::send<T>(
        *this, rest::RequestDataCreator::makeRequestData(
                   rest::HttpMethod::Post, QUrl(path, QUrl::TolerantMode), body, timeout, true));
}

template <class T>
TessalyConnectionInterface::Reply<T> TessalyConnection::put(QString const& path, QJsonValue const& body) const
{
    return pipeline::send<T>(
        *this, rest::RequestDataCreator::makeRequestData(
                   rest::HttpMethod::Put, QUrl(path, QUrl::TolerantMode), body, std::chrono::milliseconds(0), true));
}
