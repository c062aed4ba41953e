#pragma once

#include <chrono>
#include <optional>

#include <QByteArray>
#include <QJsonValue>
#include <QUrl>

#include <platform/rest/HttpMethod.h>

namespace rest
{

/// A request that has not been sent yet.
struct HttpRequestData
{
    HttpMethod method = HttpMethod::Get;
    QUrl url; ///< relative to the connection's base URL
    std::optional<QByteArray> body;
    bool isJson = false;
    std::chrono::milliseconds timeout{0}; ///< 0 means the connection's own
    bool authenticated = true;
};

class RequestDataCreator
{
public:
    static HttpRequestData makeRequest(HttpMethod method, QUrl const& url);
    static HttpRequestData makeRequest(
        HttpMethod method, QUrl const& url, QByteArray const& body, std::chrono::milliseconds timeout);
    static HttpRequestData makeRequestData(
        HttpMethod method, QUrl const& url, QJsonValue const& body, std::chrono::milliseconds timeout,
        bool authenticated);
};

} // namespace rest
