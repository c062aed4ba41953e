#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QStringList>

#include <limits>
#include <span>

namespace simulator
{

/// The wire type of a body's member. Date is text: a day as YYYY-MM-DD, or empty. DecimalText is a number of 0 or more
/// written as text. TimeOrNull is text in ISO form, or null.
enum class Kind : int
{
    Text,
    Date,
    DecimalText,
    TimeOrNull,
    Integer,
    Boolean,
    Texts,
    Integers,
    Objects,
    Any
};

/// One member that a body may have. `items` describes the elements of a list of objects. An integer lies from `least`
/// to `most`. A member that is left out counts as `usual`, if there is one. `meaning` is what people are told of it.
struct Member
{
    char const* key = nullptr;
    Kind kind = Kind::Any;
    bool required = true;
    std::span<Member const> items = {};
    char const* meaning = "";
    char const* usual = nullptr;
    qint64 least = std::numeric_limits<qint64>::min();
    qint64 most = std::numeric_limits<qint64>::max();
};

using Schema = std::span<Member const>;

/// Members that may be left out.
constexpr Member integer(char const* key, qint64 least, qint64 most, char const* usual, char const* meaning)
{
    return {key, Kind::Integer, false, {}, meaning, usual, least, most};
}
constexpr Member optional(char const* key, Kind kind, char const* meaning, char const* usual = nullptr)
{
    return {key, kind, false, {}, meaning, usual};
}

/// Throws a Refusal that names the first member that is missing, mistyped, out of range or unknown.
void check(Schema schema, QJsonObject const& body);

/// The body with the usual values of what it leaves out.
QJsonObject completed(Schema schema, QJsonObject body);

/// The schema for people: `[{"Name", "Type", "Required", "From", "To", "Default", "Meaning", "Items"}]`, each as far as
/// it applies.
QJsonArray describe(Schema schema);

/// "nosuch; one of this, that": for a Refusal.
QString oneOf(QString const& given, QStringList const& valid);

} // namespace simulator
