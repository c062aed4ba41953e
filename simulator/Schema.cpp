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
        throw Refusal(Reason::WrongType, member.key);
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
            throw Refusal(Reason::UnknownMember, key);
        }
    }
}

} // namespace simulator
