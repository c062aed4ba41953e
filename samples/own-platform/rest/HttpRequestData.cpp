#include <platform/rest/HttpRequestData.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace rest
{

HttpRequestData RequestDataCreator::makeRequest(HttpMethod method, QUrl const& url)
{
    HttpRequestData data;
    data.method = method;
    data.url = url;
    return data;
}

HttpRequestData RequestDataCreator::makeRequest(
    HttpMethod method, QUrl const& url, QByteArray const& body, std::chrono::milliseconds timeout)
{
    HttpRequestData data = makeRequest(method, url);
    data.body = body;
    data.timeout = timeout;
    return data;
}

HttpRequestData RequestDataCreator::makeRequestData(
    HttpMethod method, QUrl const& url, QJsonValue const& body, std::chrono::milliseconds timeout, bool authenticated)
{
    HttpRequestData data = makeRequest(method, url);
    if (body.isObject() || body.isArray())
    {
        QJsonDocument const document = body.isObject() ? QJsonDocument(body.toObject()) : QJsonDocument(body.toArray());
        data.body = document.toJson(QJsonDocument::Compact);
        data.isJson = true;
    }
    data.timeout = timeout;
    data.authenticated = authenticated;
    return data;
}

} // namespace rest
