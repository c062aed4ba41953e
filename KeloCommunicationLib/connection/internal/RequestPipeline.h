#pragma once

#include <initializer_list>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

#include <QByteArray>
#include <QJsonDocument>
#include <QJsonValue>
#include <QString>
#include <QUrl>

#include <KeloCommunicationLib/connection/Operation.h>
#include <KeloCommunicationLib/connection/TessalyConnection.h>
#include <KeloCommunicationLib/connection/internal/PlatformExtras.h>
#include <KeloCommunicationLib/json/JsonSerializer.h>
#include <KeloCommunicationLib/json/internal/TextReader.h>
#include <KeloCommunicationLib/json/internal/Value.h>
#include <platform/rest/HttpRequestData.h>
#include <platform/rest/NetReplyErrorParser.h>
#include <platform/rest/RestReply.h>
#include <platform/threading/Future.h>

/// The one way from an operation to the wire and back. An operation names its route, its body and its reply; everything
/// else happens here.
namespace KeloCommunicationLib::internal
{

using Values = std::initializer_list<QString>;

/// The path with the route's values, in the order in which the route names them. They are filled in in one pass, so
/// that one that looks like a placeholder stays as it is, and are not percent-encoded.
QString pathOf(operations::Route const& route, Values values);
QUrl urlOf(operations::Route const& route, Values values);

/// A request without a body.
rest::HttpRequestData requestTo(operations::Route const& route, Values values);

/// What the reply's type is on the wire.
template <class T>
jsonSerializer::implementation::Type const& wireType(T*)
{
    return jsonSerializer::implementation::recordType<T>();
}

template <class T>
jsonSerializer::implementation::Type const& wireType(std::vector<T>*)
{
    static auto const type = jsonSerializer::implementation::listOf<std::vector<T>>(wireType(static_cast<T*>(nullptr)));
    return type;
}

/// Reads a reply's body: its text if the platform's reply has it, else its document.
template <class T, class Reply>
T readBody(Reply const& reply)
{
    auto const& type = wireType(static_cast<T*>(nullptr));
    auto const& text = textOf(reply);
    if (!text.isEmpty())
    {
        T value{};
        if (jsonSerializer::implementation::readText(type, &value, text))
        {
            return value;
        }
    }
    T value{};
    jsonSerializer::implementation::readDocument(type, &value, reply.body());
    return value;
}

/// Classifies a reply and, if it is a success, reads its body.
template <class T>
rest::RestReply<T> typedReply(rest::NetReplyErrorParser const& parser, rest::JsonReply const& reply)
{
    rest::RestReply<T> typed;
    typed.status = parser.parse(reply);
    if constexpr (!std::is_void_v<T>)
    {
        if (typed.status.kind == 0)
        {
            typed.value = readBody<T>(*reply);
        }
    }
    return typed;
}

/// The status of a call that changes nothing: whether the service has carried it out is no matter.
void forgetWhetherProcessed(rest::RestReplyStatus& status);

/// Sends the request. On the thread that finishes the exchange, `complete` gets the typed reply and the promise of the
/// returned future, which it keeps; cancelling that future aborts the exchange. The continuation holds the parser,
/// never the connection.
template <class T, class Result, class Complete>
threading::Future<Result> sendFor(rest::Connection const& connection, rest::HttpRequestData request, Complete complete)
{
    // Once the request is out, another thread may see its effect and destroy the connection.
    auto parser = connection.getErrorParser();
    rest::FutureJsonReply const exchange = connection.request(std::move(request));
    threading::Promise<Result> promise;
    auto const result = promise.future();
    promise.onCancel([exchange] { exchange.cancel(); });
    exchange.then(
        [parser = std::move(parser), complete = std::move(complete),
         promise = std::move(promise)](rest::FutureJsonReply const& finished) mutable
        {
            if (finished.isCanceled())
            {
                promise.cancel();
            }
            else
            {
                complete(typedReply<T>(*parser, finished.get()), std::move(promise));
            }
        });
    return result;
}

/// Sends the request for its typed reply.
template <class T>
threading::Future<rest::RestReply<T>> send(
    rest::Connection const& connection, rest::HttpRequestData request, bool isQuery = false)
{
    return sendFor<T, rest::RestReply<T>>(
        connection, std::move(request),
        [isQuery](rest::RestReply<T>&& reply, threading::Promise<rest::RestReply<T>> promise)
        {
            if (isQuery)
            {
                forgetWhetherProcessed(reply.status);
            }
            std::move(promise).setValue(std::move(reply));
        });
}

/// The request of an operation with a body.
template <class Body, class Reply>
rest::HttpRequestData requestOf(operations::Operation<Body, Reply> const& operation, Values values, Body const& body)
{
    return rest::RequestDataCreator::makeRequestData(
        operation.method, urlOf(operation, values), jsonSerializer::toJson(body), operation.timeout, true);
}

/// Calls an operation without a body.
template <class Reply>
auto call(rest::Connection const& connection, operations::Operation<void, Reply> const& operation, Values values = {})
{
    return send<Reply>(connection, requestTo(operation, values));
}

template <class Body, class Reply>
auto call(
    rest::Connection const& connection, operations::Operation<Body, Reply> const& operation, Values values,
    Body const& body)
{
    return send<Reply>(connection, requestOf(operation, values, body), operation.isQuery);
}

/// Fetches bytes; they are empty unless the answer is HTTP 200. Cancelling the returned future aborts the transfer.
threading::Future<QByteArray> download(rest::Connection const& connection, QUrl const& url);

} // namespace KeloCommunicationLib::internal
