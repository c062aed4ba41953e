#pragma once

#include <chrono>
#include <memory>

#include <platform/rest/Connection.h>

#include "testkit/platform/Threads.h"
#include <testkit/RawServer.h>

namespace platformcheck
{

using namespace testkit;
using namespace std::chrono_literals;
using rest::HttpMethod;

using JsonReply = std::shared_ptr<rest::NetworkReply<QJsonDocument>>;
using BinaryReply = std::shared_ptr<rest::NetworkReply<QByteArray>>;

/// A path, relative to the connection's base URL.
QUrl relative(QByteArray const& path);

/// A connection that is not initialised, with a parser that gives errors code 7 and the message "message".
std::unique_ptr<rest::Connection> makeConnection(std::chrono::milliseconds timeout);
/// A connection to `baseUrl` with user "user" and password "secret". No time-out ends its calls before the row's limit
/// does, unless one is given.
std::unique_ptr<rest::Connection> connectTo(QUrl const& baseUrl, std::chrono::milliseconds timeout = 1h);
/// To a server with a certificate that nobody has signed, which is not checked.
std::unique_ptr<rest::Connection> carelesslyConnectTo(RawServer const& server);

inline constexpr char const* authorization = "Basic dXNlcjpzZWNyZXQ=";

rest::HttpRequestData get(QByteArray const& target = "/x");
/// A PUT or POST of raw bytes to /x.
rest::HttpRequestData write(HttpMethod method, QByteArray const& body, std::chrono::milliseconds timeout = 0ms);
/// A POST of {"a":1} to /x.
rest::HttpRequestData writeJson(std::chrono::milliseconds timeout = 0ms);

/// The reply of a call that is not cancelled, now or soon.
JsonReply replyOf(rest::FutureJsonReply const& call);
JsonReply send(rest::Connection const& connection, rest::HttpRequestData const& data = get());
BinaryReply download(
    rest::Connection const& connection, QByteArray const& target = "/x", std::chrono::milliseconds timeout = 0ms);

template <class Reply>
std::string described(Reply const& reply)
{
    return text(
        "a reply with classification ", reply->classification(), ", HTTP status ", reply->httpStatusCode(),
        " and the error text ", reply->errorText());
}

/// The server's answer was taken, whatever its status is.
template <class Reply>
void requireStatus(Reply const& reply, int status)
{
    require(
        reply->httpStatusCode() == status && reply->classification() == (status / 100 == 2 ? 0 : 1),
        text(described(reply), " in the place of HTTP status ", status));
}

template <class Reply>
void requireNetworkError(Reply const& reply)
{
    require(
        reply->classification() == 2 && rest::isNetworkError(reply),
        text(described(reply), " in the place of a network error (classification 2)"));
}

/// Whether the reply's text says that the server may have processed the request.
bool isSaidToBeProcessedPerhaps(JsonReply const& reply);
/// The document as text without blanks.
QByteArray compact(JsonReply const& reply);
/// How many of the server's requests had that target.
int countOf(RawServer const& server, QByteArray const& target);

} // namespace platformcheck
