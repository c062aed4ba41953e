#include "simulator/replay/Difference.h"

#include <QCryptographicHash>
#include <QJsonDocument>
#include <QSet>

namespace simulator
{

namespace
{

constexpr auto redacted = "[redacted]";

/// A value as JSON, as much of it as a line can take.
QString shown(QJsonValue const& value)
{
    constexpr qsizetype most = 60;
    auto const text = QString::fromUtf8(QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact));
    auto const inner = text.mid(1, text.size() - 2);
    return inner.size() > most ? inner.left(most) + "..." : inner;
}

QString instead(QString const& place, QJsonValue const& given, QJsonValue const& recorded)
{
    return given.isUndefined()      ? place + " is missing"
           : recorded.isUndefined() ? place + " was not there: " + shown(given)
                                    : place + ' ' + shown(given) + " instead of " + shown(recorded);
}

QString bodyDifference(QJsonValue const& given, QJsonValue const& recorded, QString const& place);

QString memberDifference(QJsonObject const& given, QJsonObject const& recorded, QString const& place)
{
    auto const keys = recorded.keys() + given.keys();
    for (auto const& key : keys)
    {
        auto const at = place.isEmpty() ? key : place + '.' + key;
        if (auto const text = bodyDifference(given[key], recorded[key], at); !text.isEmpty())
        {
            return text;
        }
    }
    return {};
}

QString elementDifference(QJsonArray const& given, QJsonArray const& recorded, QString const& place)
{
    for (qsizetype at = 0; at < std::max(given.size(), recorded.size()); ++at)
    {
        auto const where = QStringLiteral("%1[%2]").arg(place).arg(at);
        if (auto const text = bodyDifference(given[at], recorded[at], where); !text.isEmpty())
        {
            return text;
        }
    }
    return {};
}

/// The first difference, with its place; empty if there is none.
QString bodyDifference(QJsonValue const& given, QJsonValue const& recorded, QString const& place)
{
    if (given == recorded || recorded == QJsonValue(redacted))
    {
        return {};
    }
    if (given.isObject() && recorded.isObject())
    {
        return memberDifference(given.toObject(), recorded.toObject(), place);
    }
    return given.isArray() && recorded.isArray() ? elementDifference(given.toArray(), recorded.toArray(), place)
                                                 : instead(place, given, recorded);
}

QString bodyDifference(Question const& question, Exchange const& recorded)
{
    auto const& request = question.request;
    if (!recorded.body || *recorded.body == redacted)
    {
        return {};
    }
    auto const isJson = !question.json.isUndefined() && !recorded.json.isUndefined();
    if (isJson)
    {
        auto const text = bodyDifference(question.json, recorded.json, {});
        return text.isEmpty() ? text : "body: " + text;
    }
    auto const isSame =
        request.bodySize == recorded.body->size()
        && (request.bodySize == 0
            || request.bodyMd5 == QCryptographicHash::hash(*recorded.body, QCryptographicHash::Md5).toHex());
    return isSame ? QString()
                  : QStringLiteral("body: %1 bytes instead of %2%3")
                        .arg(request.bodySize)
                        .arg(recorded.body->size())
                        .arg(QLatin1String(request.bodySize == recorded.body->size() ? " others" : ""));
}

QString queryDifference(QHash<QString, QString> const& given, QHash<QString, QString> const& recorded)
{
    auto const valueOf = [](QHash<QString, QString> const& query, QString const& key)
    { return query.contains(key) ? QJsonValue(query[key]) : QJsonValue(QJsonValue::Undefined); };
    auto keys = recorded.keys() + given.keys();
    keys.sort();
    for (auto const& key : keys)
    {
        if (auto const value = valueOf(given, key), was = valueOf(recorded, key); value != was)
        {
            return instead("query: " + key, value, was);
        }
    }
    return {};
}

/// How many segments are not the same.
int pathDifference(QStringList const& given, QStringList const& recorded)
{
    auto const most = std::max(given.size(), recorded.size());
    int count = 0;
    for (qsizetype at = 0; at < most; ++at)
    {
        count += given.value(at) == recorded.value(at) && (at < given.size()) == (at < recorded.size()) ? 0 : 1;
    }
    return count;
}

} // namespace

Question::Question(HttpRequest const& asked) : request(asked), target(asked.target), json(jsonOf(asked.body)) {}

Difference difference(Question const& question, Exchange const& recorded)
{
    constexpr int ofPath = 1000;
    constexpr int ofMethod = 100;
    constexpr int ofQuery = 10;
    Difference found;
    QStringList texts;
    auto const add = [&](int size, QString const& text)
    {
        found.size += size;
        texts << text;
    };
    if (auto const count = pathDifference(question.target.segments, recorded.target.segments); count > 0)
    {
        // The line names both paths already.
        add(count * ofPath, "another path");
    }
    if (question.request.method != recorded.method)
    {
        add(ofMethod, "another method");
    }
    if (auto const text = queryDifference(question.target.query, recorded.target.query); !text.isEmpty())
    {
        add(ofQuery, text);
    }
    // That what was asked for elsewhere had another body tells nothing.
    if (auto const text = found.size < ofMethod ? bodyDifference(question, recorded) : QString(); !text.isEmpty())
    {
        add(1, text);
    }
    found.text = texts.join("; ");
    return found;
}

} // namespace simulator
