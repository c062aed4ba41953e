#include "simulator/replay/Recording.h"

#include <QJsonDocument>

#include <algorithm>
#include <array>
#include <cctype>
#include <string_view>

namespace simulator
{

namespace
{

/// What went wrong in an archive, without the file's name.
class BadArchive : public std::invalid_argument
{
public:
    explicit BadArchive(QString const& what) : std::invalid_argument(what.toStdString()) {}
};

void require(bool fits, QString const& what)
{
    if (!fits)
    {
        throw BadArchive(what);
    }
}

// Headers of an answer that speak of how it came over the line then, or that the server writes by itself.
constexpr std::array<std::string_view, 13> headersOfTheLine = {
    "connection",         "content-encoding", "content-length", "content-type",      "date",    "keep-alive",
    "proxy-authenticate", "server",           "trailer",        "transfer-encoding", "upgrade", "via",
    "www-authenticate"};

bool isReplayed(QByteArray const& name, QByteArray const& value)
{
    auto const known = std::find(headersOfTheLine.begin(), headersOfTheLine.end(), name.toLower().toStdString());
    // Browsers write the pseudo-headers of HTTP/2, ":status".
    return known == headersOfTheLine.end() && !name.startsWith(':') && value != "[redacted]";
}

/// A member of an entry, with its place for the messages.
struct Part
{
    QJsonValue value;
    QString place;

    Part operator[](char const* key) const { return {value[QLatin1String(key)], place + '.' + QLatin1String(key)}; }
    QByteArray text() const
    {
        require(value.isString(), place + " is no text");
        return value.toString().toUtf8();
    }
    QJsonObject object() const
    {
        require(value.isObject(), place + " is no object");
        return value.toObject();
    }
};

QByteArray decodedBody(Part const& body)
{
    auto const text = body["text"].text();
    if (body.value["encoding"].toString() != QLatin1String("base64"))
    {
        return text;
    }
    auto const decoded = QByteArray::fromBase64Encoding(text, QByteArray::AbortOnBase64DecodingErrors);
    require(static_cast<bool>(decoded), body.place + ".text is no base64");
    return decoded.decoded;
}

std::optional<QByteArray> requestBody(Part const& request)
{
    auto const data = request["postData"];
    if (data.value["text"].isString())
    {
        return decodedBody(data);
    }
    return request.value["bodySize"].toDouble() > 0 ? std::nullopt : std::optional(QByteArray());
}

/// Empty if there is none.
QByteArray headerOf(Part const& response, char const* wanted)
{
    for (auto const& header : response["headers"].value.toArray())
    {
        if (header[QLatin1String("name")].toString().compare(QLatin1String(wanted), Qt::CaseInsensitive) == 0)
        {
            return header[QLatin1String("value")].toString().toUtf8();
        }
    }
    return {};
}

void readHeaders(Part const& response, Answer& answer)
{
    auto const type = headerOf(response, "Content-Type");
    answer.contentType = type.isEmpty() ? response["content"].value["mimeType"].toString().toUtf8() : type;
    for (auto const& header : response["headers"].value.toArray())
    {
        auto const name = header[QLatin1String("name")].toString().toUtf8();
        auto const value = header[QLatin1String("value")].toString().toUtf8();
        if (isReplayed(name, value))
        {
            answer.headers.emplace_back(name, value);
        }
    }
}

void readAnswer(Part const& response, Exchange& exchange)
{
    response.object();
    auto const status = response["status"].value.toInt(-1);
    require(
        status == 0 || (status >= 200 && status <= 599), response.place + ".status is neither 0 nor from 200 to 599");
    if (status == 0)
    {
        exchange.answer = Answer::drop();
        return;
    }
    exchange.answer.status = status;
    exchange.isCut = !response.value["_error"].toString().isEmpty();
    readHeaders(response, exchange.answer);
    auto const content = response["content"];
    if (content.value["text"].isString())
    {
        exchange.answer.body = decodedBody(content);
        exchange.isText = content.value["encoding"].toString().isEmpty();
    }
    auto const have = exchange.answer.body.size();
    if (exchange.isCut)
    {
        exchange.missingBytes = std::max(headerOf(response, "Content-Length").toLongLong() - have, qint64(1));
    }
    else if (have == 0)
    {
        exchange.missingBytes = std::max(content["size"].value.toInteger(), qint64(0));
        require(exchange.missingBytes <= RecordedFile::mostBytes, content.place + ".size is too large");
    }
}

/// What the service itself took; looking up names and connecting is done anew.
std::chrono::milliseconds timeOf(QJsonValue const& timings)
{
    constexpr double aDay = 86'400'000;
    auto const sum = std::max(timings["wait"].toDouble(), 0.0) + std::max(timings["receive"].toDouble(), 0.0);
    return std::chrono::milliseconds(static_cast<qint64>(std::min(sum, aDay)));
}

QUrl addressOf(Part const& request)
{
    auto const url = QUrl::fromEncoded(request["url"].text());
    auto const isHttp = url.scheme() == QLatin1String("http") || url.scheme() == QLatin1String("https");
    require(url.isValid() && isHttp && !url.host().isEmpty(), request.place + ".url is no address of HTTP");
    return url;
}

QByteArray targetOf(QUrl const& url)
{
    auto const path = url.path(QUrl::FullyEncoded).toUtf8();
    auto const query = url.query(QUrl::FullyEncoded).toUtf8();
    return (path.isEmpty() ? QByteArray("/") : path) + (query.isEmpty() ? QByteArray() : '?' + query);
}

QByteArray originOf(QUrl const& url)
{
    return (url.scheme() + "://" + url.authority(QUrl::FullyEncoded)).toUtf8();
}

/// How much of the target stands before the path of an operation of the service; none if it calls none.
std::optional<QByteArray> baseOf(Router const& contract, QByteArray const& method, QByteArray const& target)
{
    auto const path = Target(target).path;
    for (auto at = path.indexOf('/'); at >= 0; at = path.indexOf('/', at + 1))
    {
        if (!operationOf(contract, method, target.mid(at), {}).isEmpty())
        {
            return target.left(at);
        }
    }
    return std::nullopt;
}

/// An entry on its way into the recording.
struct Entry
{
    qint64 started = 0;
    QUrl url = {};
    Exchange exchange;
};

Entry entryOf(QJsonValue const& json, QString const& place)
{
    Part const entry = {json, place};
    Part const request = entry["request"];
    request.object();
    auto const url = addressOf(request);
    Entry read = {
        .started = QDateTime::fromString(json["startedDateTime"].toString(), Qt::ISODateWithMs).toMSecsSinceEpoch(),
        .url = url,
        .exchange = {.place = place, .method = request["method"].text(), .target = Target(targetOf(url))}};
    auto& exchange = read.exchange;
    exchange.body = requestBody(request);
    exchange.json = jsonOf(exchange.body.value_or(QByteArray()));
    exchange.time = timeOf(json["timings"]);
    readAnswer(entry["response"], exchange);
    return read;
}

QJsonArray entriesOf(QByteArray const& har)
{
    require(har.size() <= RecordedFile::mostBytes, QStringLiteral("longer than %1 bytes").arg(RecordedFile::mostBytes));
    QJsonParseError error;
    auto const document = QJsonDocument::fromJson(har, &error);
    auto const line = har.left(error.offset).count('\n') + 1;
    require(!document.isNull(), QStringLiteral("no JSON: line %1: %2").arg(line).arg(error.errorString()));
    auto const entries = document["log"]["entries"];
    require(entries.isArray(), "no HTTP archive: it has no log.entries");
    require(!entries.toArray().isEmpty(), "no entries: nothing was recorded");
    return entries.toArray();
}

std::vector<Entry> entriesOf(std::vector<RecordedFile> const& files)
{
    std::vector<Entry> all;
    for (auto const& file : files)
        try
        {
            auto const entries = entriesOf(file.har);
            for (qsizetype at = 0; at < entries.size(); ++at)
            {
                auto entry = entryOf(entries.at(at), QStringLiteral("entry %1").arg(at));
                entry.exchange.place.prepend(files.size() > 1 ? file.name + ' ' : QString());
                all.push_back(std::move(entry));
            }
        }
        catch (BadArchive const& error)
        {
            throw std::invalid_argument(file.name.toStdString() + ": " + error.what());
        }
    std::stable_sort(
        all.begin(), all.end(), [](Entry const& left, Entry const& right) { return left.started < right.started; });
    return all;
}

/// The installation that the path names.
QString installationIn(Target const& target)
{
    auto const at = target.segments.indexOf(QLatin1String("Installations"), 0);
    return at < 0 ? QString() : target.segments.value(at + 1);
}

/// An address in a Location that names no origin.
void moveLocation(Answer& answer, QByteArray const& recordedBase, QByteArray const& base)
{
    for (auto& [name, value] : answer.headers)
    {
        if (name.compare("location", Qt::CaseInsensitive) == 0 && value.startsWith(recordedBase + '/'))
        {
            value = base + value.mid(recordedBase.size());
        }
    }
}

} // namespace

void Addresses::add(QByteArray const& origin, QByteArray const& recordedBase, QByteArray const& base)
{
    auto const isKnown = [this](QByteArray const& from)
    { return std::any_of(rows_.begin(), rows_.end(), [&from](Row const& row) { return row.from == from; }); };
    auto const addForms = [&](QByteArray from, QByteArray path)
    {
        if (!isKnown(from))
        {
            rows_.push_back({from, path});
            rows_.push_back({from.replace('/', "\\/"), path.replace('/', "\\/")});
        }
    };
    addForms(origin + recordedBase, base);
    addForms(origin, {});
    std::stable_sort(
        rows_.begin(), rows_.end(),
        [](Row const& left, Row const& right) { return left.from.size() > right.from.size(); });
}

QByteArray Addresses::mapped(QByteArray const& text, QByteArray const& origin) const
{
    QByteArray result;
    qsizetype done = 0;
    for (auto at = text.indexOf("http"); at >= 0; at = text.indexOf("http", at + 1))
    {
        auto const rest = QByteArrayView(text).sliced(at);
        auto const isMeant = [&rest](Row const& row)
        {
            // "http://kelo.example" is not in "http://kelo.example.org", nor "/api" in "/apis".
            auto const next = rest.size() > row.from.size() ? rest[row.from.size()] : ' ';
            return rest.startsWith(row.from) && !std::isalnum(static_cast<unsigned char>(next))
                   && !QByteArrayView("-._~%:@").contains(next);
        };
        if (auto const row = std::find_if(rows_.begin(), rows_.end(), isMeant); row != rows_.end())
        {
            auto const isEscaped = row->from.contains('\\');
            result +=
                text.mid(done, at - done) + (isEscaped ? QByteArray(origin).replace('/', "\\/") : origin) + row->path;
            done = at + row->from.size();
        }
    }
    return result + text.mid(done);
}

Recording::Recording(std::vector<RecordedFile> const& files, Router const& contract, QByteArray const& wantedBase)
{
    auto entries = entriesOf(files);
    QHash<QByteArray, QByteArray> bases; // by the origin
    for (auto const& [started, url, exchange] : entries)
    {
        auto const base = baseOf(contract, exchange.method, targetOf(url));
        if (base && !bases.contains(originOf(url)))
        {
            bases.insert(originOf(url), *base);
            basePath = bases.size() == 1 ? *base : basePath;
        }
    }
    if (bases.isEmpty())
    {
        auto const& [started, url, first] = entries.front();
        auto const what = QStringLiteral("%1: of another service: no entry asks for an operation; %2 is %3 %4");
        throw std::invalid_argument(
            what.arg(files.front().name, first.place, first.method, url.toString()).toStdString());
    }
    basePath = wantedBase.isEmpty() ? basePath : wantedBase;
    for (auto& [started, url, exchange] : entries)
    {
        take(std::move(exchange), url, bases);
    }
    installations.removeAll(QString());
    installations.removeDuplicates();
}

void Recording::take(Exchange exchange, QUrl const& url, QHash<QByteArray, QByteArray> const& bases)
{
    auto const origin = originOf(url);
    auto const target = targetOf(url);
    auto const base = bases.value(origin);
    if (bases.contains(origin) && target.startsWith(base + '/'))
    {
        exchange.target = Target(basePath + target.mid(base.size()));
        installations << installationIn(exchange.target);
        moveLocation(exchange.answer, base, basePath);
    }
    addresses.add(origin, base, bases.contains(origin) ? basePath : QByteArray());
    exchanges.push_back(std::move(exchange));
}

QString operationOf(Router const& contract, QByteArray const& method, QByteArray const& target, QByteArray const& body)
try
{
    return QLatin1String(Router::choose(contract.candidates(method, Target(target)), body).operation);
}
catch (Refusal const&)
{
    return {};
}

QJsonValue jsonOf(QByteArray const& text)
{
    auto const document = QJsonDocument::fromJson(text);
    return document.isObject()  ? QJsonValue(document.object())
           : document.isArray() ? QJsonValue(document.array())
                                : QJsonValue(QJsonValue::Undefined);
}

} // namespace simulator
