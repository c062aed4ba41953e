#include "simulator/Schema.h"

#include "simulator/Http.h"

#include <QDateTime>

#include <algorithm>
#include <cmath>

namespace simulator
{

namespace
{

bool isInteger(QJsonValue const& value)
{
    return value.isDouble() && std::trunc(value.toDouble()) == value.toDouble();
}

bool isDate(QJsonValue const& value)
{
    auto const text = value.toString();
    return value.isString() && (text.isEmpty() || QDate::fromString(text, Qt::ISODate).isValid());
}

bool isDecimalText(QJsonValue const& value)
{
    auto const text = value.toString();
    auto const isDigit = [](QChar c) { return c >= QLatin1Char('0') && c <= QLatin1Char('9'); };
    bool fits = false;
    text.toLongLong(&fits);
    return fits && std::all_of(text.begin(), text.end(), isDigit);
}

bool isTimeOrNull(QJsonValue const& value)
{
    return value.isNull() || QDateTime::fromString(value.toString(), Qt::ISODateWithMs).isValid();
}

template <typename Predicate>
bool isListOf(QJsonValue const& value, Predicate predicate)
{
    auto const elements = value.toArray();
    return value.isArray() && std::all_of(elements.begin(), elements.end(), predicate);
}

bool hasKind(QJsonValue const& value, Kind kind)
{
    switch (kind)
    {
    case Kind::Text:
        return value.isString();
    case Kind::Date:
        return isDate(value);
    case Kind::DecimalText:
        return isDecimalText(value);
    case Kind::TimeOrNull:
        return isTimeOrNull(value);
    case Kind::Integer:
        return isInteger(value);
    case Kind::Boolean:
        return value.isBool();
    case Kind::Texts:
        return isListOf(value, [](QJsonValue const& element) { return element.isString(); });
    case Kind::Integers:
        return isListOf(value, isInteger);
    case Kind::Objects:
        return isListOf(value, [](QJsonValue const& element) { return element.isObject(); });
    case Kind::Any:
        return true;
    }
    return false;
}

QString rangeText(Member const& member, QJsonValue const& value)
{
    return QStringLiteral("%1: %2; from %3 to %4")
        .arg(QLatin1String(member.key), QString::number(value.toDouble(), 'g', 15))
        .arg(member.least)
        .arg(member.most);
}

QStringList keysOf(Schema schema)
{
    QStringList keys;
    for (auto const& member : schema)
    {
        keys << QLatin1String(member.key);
    }
    return keys;
}

char const* nameOf(Kind kind)
{
    // In the order of the enumeration.
    constexpr char const* names[] = {
        "text",
        "day",
        "number of 0 or more, as text",
        "time or null",
        "integer",
        "boolean",
        "list of texts",
        "list of integers",
        "list of objects",
        "any"};
    return names[static_cast<int>(kind)];
}

QJsonValue usualOf(Member const& member)
{
    auto const text = QString::fromUtf8(member.usual);
    return member.kind == Kind::Integer ? QJsonValue(text.toLongLong()) : QJsonValue(text);
}

QJsonObject describe(Member const& member)
{
    QJsonObject json = {{"Name", member.key}, {"Type", nameOf(member.kind)}, {"Required", member.required}};
    if (member.least != Member().least)
    {
        json["From"] = member.least;
        json["To"] = member.most;
    }
    if (member.usual != nullptr)
    {
        json["Default"] = usualOf(member);
    }
    if (*member.meaning != '\0')
    {
        json["Meaning"] = QString::fromUtf8(member.meaning);
    }
    if (!member.items.empty())
    {
        json["Items"] = simulator::describe(member.items);
    }
    return json;
}

void checkMember(Member const& member, QJsonValue const& value)
{
    if (value.isUndefined())
    {
        if (member.required)
        {
            throw Refusal(Reason::MissingMember, member.key);
        }
        return;
    }
    if (!hasKind(value, member.kind))
    {
        throw Refusal(
            Reason::WrongType, QLatin1String(member.key) + QStringLiteral("; wanted: ") + nameOf(member.kind));
    }
    if (member.kind == Kind::Integer
        && !(value.toDouble() >= double(member.least) && value.toDouble() <= double(member.most)))
    {
        throw Refusal(Reason::BadValue, rangeText(member, value));
    }
    if (member.kind == Kind::Objects)
    {
        auto const elements = value.toArray();
        for (auto const& element : elements)
        {
            check(member.items, element.toObject());
        }
    }
}

} // namespace

void check(Schema schema, QJsonObject const& body)
{
    for (auto const& member : schema)
    {
        checkMember(member, body.value(QLatin1String(member.key)));
    }
    for (auto const& key : body.keys())
    {
        auto const isKnown = [&key](Member const& member) { return key == QLatin1String(member.key); };
        if (std::none_of(schema.begin(), schema.end(), isKnown))
        {
            throw Refusal(Reason::UnknownMember, oneOf(key, keysOf(schema)));
        }
    }
}

QJsonObject completed(Schema schema, QJsonObject body)
{
    for (auto const& member : schema)
    {
        if (auto const key = QLatin1String(member.key); member.usual != nullptr && !body.contains(key))
        {
            body.insert(key, usualOf(member));
        }
    }
    return body;
}

QJsonArray describe(Schema schema)
{
    QJsonArray array;
    for (auto const& member : schema)
    {
        array.append(describe(member));
    }
    return array;
}

QString oneOf(QString const& given, QStringList const& valid)
{
    return valid.isEmpty() ? given + "; there are none" : given + "; one of " + valid.join(", ");
}

} // namespace simulator
