#pragma once

#include <chrono>

#include <QByteArray>
#include <QJsonDocument>
#include <QJsonValue>
#include <QUrl>

#include <platform/rest/Export.h>
#include <platform/rest/HttpMethod.h>

namespace rest
{

/// One request before it is sent; made by `RequestDataCreator`. At most one of the two bodies is set.
struct HttpRequestData
{
    HttpMethod method = HttpMethod::Get;
    QUrl url;                             ///< relative to the connection's base URL; empty means the base URL itself
    QJsonDocument jsonBody;               ///< sent as application/json unless null
    QByteArray rawBody;                   ///< sent as application/octet-stream
    std::chrono::milliseconds timeout{0}; ///< 0 means the connection's own
    bool authenticated = true;            ///< whether the connection's credentials go with the request
};

/// Makes request descriptors.
class PLATFORM_REST_EXPORT RequestDataCreator
{
public:
    /// A request without a body.
    static HttpRequestData makeRequest(HttpMethod method, QUrl const& url);
    /// A request with raw bytes. `timeout` bounds the time without progress, not the whole transfer.
    static HttpRequestData makeRequest(
        HttpMethod method, QUrl const& url, QByteArray const& body, std::chrono::milliseconds timeout);
    /// A request with a JSON body: an object or an array; any other value means no body.
    static HttpRequestData makeRequestData(
        HttpMethod method, QUrl const& url, QJsonValue const& body, std::chrono::milliseconds timeout,
        bool authenticated);
};

} // namespace rest
