#include "cli/shell/HarTrace.h"

#include <algorithm>
#include <utility>

#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringDecoder>
#include <QUrlQuery>

#include "cli/shell/Exchange.h"
#include "cli/shell/Listing.h"

namespace cli
{

namespace
{

using namespace Qt::Literals::StringLiterals;

/// The format's mark for a phase that the exchange did not pass is -1.
double optionalMilliseconds(std::chrono::microseconds duration)
{
    return duration.count() == 0 ? -1 : milliseconds(duration);
}

/// The phrases of the statuses that a service answers with; another one has none, as over HTTP/2.
QString phraseOf(int status)
{
    static QHash<int, QString> const phrases{
        {200, u"OK"_s},
        {201, u"Created"_s},
        {202, u"Accepted"_s},
        {204, u"No Content"_s},
        {206, u"Partial Content"_s},
        {301, u"Moved Permanently"_s},
        {302, u"Found"_s},
        {303, u"See Other"_s},
        {304, u"Not Modified"_s},
        {307, u"Temporary Redirect"_s},
        {308, u"Permanent Redirect"_s},
        {400, u"Bad Request"_s},
        {401, u"Unauthorized"_s},
        {403, u"Forbidden"_s},
        {404, u"Not Found"_s},
        {405, u"Method Not Allowed"_s},
        {408, u"Request Timeout"_s},
        {409, u"Conflict"_s},
        {410, u"Gone"_s},
        {413, u"Content Too Large"_s},
        {422, u"Unprocessable Content"_s},
        {429, u"Too Many Requests"_s},
        {500, u"Internal Server Error"_s},
        {501, u"Not Implemented"_s},
        {502, u"Bad Gateway"_s},
        {503, u"Service Unavailable"_s},
        {504, u"Gateway Timeout"_s}};
    return phrases.value(status);
}

/// The only one that is spoken; nobody knows of an answer that never came.
QString versionOf(bool isKnown)
{
    return isKnown ? u"HTTP/1.1"_s : u"unknown"_s;
}

QJsonArray headersJson(rest::Headers const& headers)
{
    QJsonArray array;
    for (auto const& [name, value] : headers)
    {
        array.append(QJsonObject{{u"name"_s, QString::fromLatin1(name)}, {u"value"_s, QString::fromLatin1(value)}});
    }
    return array;
}

void addText(QJsonObject& json, QByteArray const& bytes)
{
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString const text = decoder(bytes);
    json.insert(u"text"_s, decoder.hasError() ? QString::fromLatin1(bytes.toBase64()) : text);
    if (decoder.hasError())
    {
        json.insert(u"encoding"_s, u"base64"_s);
    }
}

QByteArray redacted(QByteArray const& body)
{
    QJsonValue const mark = u"[redacted]"_s;
    auto const json = QJsonDocument::fromJson(body);
    if (json.isNull())
    {
        // Half an answer may tell a secret as well as a whole one.
        bool const mayTell = std::any_of(
            secretKeys().begin(), secretKeys().end(),
            [&body](QString const& key) { return body.contains(key.toLatin1()); });
        return mayTell ? mark.toString().toLatin1() : body;
    }
    QJsonValue const value = json.isArray() ? QJsonValue(json.array()) : QJsonValue(json.object());
    auto const shown = withoutSecrets(value, mark);
    auto const document = shown.isArray() ? QJsonDocument(shown.toArray()) : QJsonDocument(shown.toObject());
    return shown == value ? body : document.toJson(QJsonDocument::Compact);
}

QJsonObject requestJson(rest::TraceData const& exchange)
{
    QJsonArray query;
    for (auto const& [name, value] : QUrlQuery(exchange.url).queryItems(QUrl::FullyDecoded))
    {
        query.append(QJsonObject{{u"name"_s, name}, {u"value"_s, value}});
    }
    QJsonObject json{
        {u"method"_s, QString::fromLatin1(exchange.method)},
        {u"url"_s, exchange.url.toString(QUrl::FullyEncoded)},
        {u"httpVersion"_s, versionOf(true)},
        {u"cookies"_s, QJsonArray()},
        {u"headers"_s, headersJson(exchange.requestHeaders)},
        {u"queryString"_s, query},
        {u"headersSize"_s, -1},
        {u"bodySize"_s, bodySize(exchange.requestHeaders, exchange.requestBody)}};
    if (!exchange.requestBody.isEmpty())
    {
        QJsonObject body{{u"mimeType"_s, headerValue(exchange.requestHeaders, "Content-Type")}};
        addText(body, exchange.requestBody);
        json.insert(u"postData"_s, body);
    }
    return json;
}

QJsonObject responseJson(rest::TraceData const& exchange)
{
    QJsonObject content{
        {u"size"_s, bodySize(exchange.responseHeaders, exchange.responseBody)},
        {u"mimeType"_s, headerValue(exchange.responseHeaders, "Content-Type")}};
    bool const isRecorded = !exchange.responseBody.isEmpty() || content[u"size"_s].toInteger() == 0;
    if (isRecorded)
    {
        addText(content, exchange.responseBody);
    }
    return {
        {u"status"_s, exchange.httpStatus},
        {u"statusText"_s, phraseOf(exchange.httpStatus)},
        {u"httpVersion"_s, versionOf(exchange.httpStatus != 0)},
        {u"cookies"_s, QJsonArray()},
        {u"headers"_s, headersJson(exchange.responseHeaders)},
        {u"content"_s, content},
        {u"redirectURL"_s, headerValue(exchange.responseHeaders, "Location")},
        {u"headersSize"_s, -1},
        {u"bodySize"_s, -1},
        {u"_error"_s, exchange.error}};
}

QJsonObject timingsJson(rest::TraceData::Phases const& phases)
{
    return {
        {u"blocked"_s, milliseconds(phases.queued)},
        {u"dns"_s, optionalMilliseconds(phases.nameLookUp)},
        {u"connect"_s,
         optionalMilliseconds(phases.connect + phases.tlsHandshake)}, // the format counts TLS in here, too
        {u"ssl"_s, optionalMilliseconds(phases.tlsHandshake)},
        {u"send"_s, milliseconds(phases.send)},
        {u"wait"_s, milliseconds(phases.wait)},
        {u"receive"_s, milliseconds(phases.receive)}};
}

QJsonObject entryJson(rest::TraceData const& exchange)
{
    return {
        {u"startedDateTime"_s, exchange.startTime.toString(Qt::ISODateWithMs)},
        {u"time"_s, milliseconds(durationOf(exchange))},
        {u"request"_s, requestJson(exchange)},
        {u"response"_s, responseJson(exchange)},
        {u"cache"_s, QJsonObject()},
        {u"timings"_s, timingsJson(exchange.phases)}};
}

QJsonObject toHar(std::vector<rest::TraceData> exchanges)
{
    std::stable_sort(
        exchanges.begin(), exchanges.end(),
        [](auto const& left, auto const& right) { return left.startTime < right.startTime; });
    QJsonArray entries;
    for (auto const& exchange : exchanges)
    {
        entries.append(entryJson(exchange));
    }
    QJsonObject const creator{{u"name"_s, u"kelo"_s}, {u"version"_s, QStringLiteral(KELO_VERSION)}};
    return {{u"log"_s, QJsonObject{{u"version"_s, u"1.2"_s}, {u"creator"_s, creator}, {u"entries"_s, entries}}}};
}

} // namespace

HarFile::HarFile(QString const& path) : file_("trace file", path) {}

void HarFile::add(rest::TraceData const& exchange)
{
    std::lock_guard const lock(mutex_);
    exchanges_.push_back(exchange);
}

void HarFile::keepSecrets()
{
    std::lock_guard const lock(mutex_);
    keepsSecrets_ = true;
}

void HarFile::write()
{
    std::lock_guard const writing(writing_);
    if (std::exchange(isWritten_, true))
    {
        return;
    }
    std::unique_lock lock(mutex_);
    auto exchanges = std::exchange(exchanges_, {});
    bool const keepsSecrets = keepsSecrets_;
    lock.unlock();
    for (auto& exchange : exchanges)
    {
        if (!keepsSecrets)
        {
            exchange.requestBody = redacted(exchange.requestBody);
            exchange.responseBody = redacted(exchange.responseBody);
        }
    }
    file_.write(QJsonDocument(toHar(std::move(exchanges))).toJson());
}

} // namespace cli
