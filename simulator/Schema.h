#pragma once

#include <QJsonObject>

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

/// One member that a body may have. `items` describes the elements of a list of objects.
struct Member
{
    char const* key;
    Kind kind;
    bool required = true;
    std::span<Member const> items = {};
};

using Schema = std::span<Member const>;

/// Throws a Refusal that names the first member that is missing, mistyped or unknown.
void check(Schema schema, QJsonObject const& body);

} // namespace simulator
