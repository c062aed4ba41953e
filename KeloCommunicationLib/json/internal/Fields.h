#pragma once

#include <cstddef>
#include <type_traits>
#include <utility>

#include <KeloCommunicationLib/json/internal/Field.h>
#include <KeloCommunicationLib/json/internal/Styles.h>
#include <KeloCommunicationLib/json/internal/Value.h>

/// The rows that a table is made of.
namespace jsonSerializer::implementation
{

template <class Member>
struct MemberTraits;

template <class R, class T>
struct MemberTraits<T R::*>
{
    using Record = R;
    using Type = T;
};

template <class R, class T>
struct MemberTraits<T (R::*)() const>
{
    using Record = R;
    using Type = std::remove_cvref_t<T>;
};

template <class R, class T>
struct MemberTraits<void (R::*)(T)>
{
    using Record = R;
    using Type = std::remove_cvref_t<T>;
};

template <auto Member>
using RecordOf = typename MemberTraits<decltype(Member)>::Record;
template <auto Member>
using TypeOf = typename MemberTraits<decltype(Member)>::Type;

template <class Conversion, class T>
concept Reads = requires(T& value, QJsonValueConstRef json)
{
    Conversion::read(value, json);
};
template <class Conversion, class T>
concept Writes = requires(T const& value)
{
    Conversion::write(value);
};

// Keys are UTF-16 literals: Qt finds those fastest.
template <std::size_t Size>
constexpr QStringView keyView(char16_t const (&text)[Size])
{
    return QStringView(text, static_cast<qsizetype>(Size) - 1);
}

template <auto Member, class Style>
constexpr void addDataMember(Field& row)
{
    using T = TypeOf<Member>;
    using Conversion = typename Style::template On<T>;
    if constexpr (Reads<Conversion, T>)
    {
        row.read = [](void* record, QJsonValueConstRef json)
        { Conversion::read(static_cast<RecordOf<Member>*>(record)->*Member, json); };
    }
    if constexpr (Writes<Conversion, T>)
    {
        row.write = [](void const* record) -> QJsonValue
        { return Conversion::write(static_cast<RecordOf<Member> const*>(record)->*Member); };
    }
}

template <auto Get, class Style>
constexpr void addGetter(Field& row)
{
    row.write = [](void const* record) -> QJsonValue
    { return Style::template On<TypeOf<Get>>::write((static_cast<RecordOf<Get> const*>(record)->*Get)()); };
}

template <auto Set, class Style>
constexpr void addSetter(Field& row)
{
    row.read = [](void* record, QJsonValueConstRef json)
    {
        TypeOf<Set> value{};
        Style::template On<TypeOf<Set>>::read(value, json);
        (static_cast<RecordOf<Set>*>(record)->*Set)(std::move(value));
    };
}

/// A member under its key: `field<&R::member>(u"Key")` for a public one, `field<&R::getX>(u"Key")` for one that is only
/// written. A style may follow the key.
template <auto Member, std::size_t Size, class Style = Plain>
constexpr FieldOf<RecordOf<Member>> field(char16_t const (&key)[Size], Style = {})
{
    FieldOf<RecordOf<Member>> row;
    row.key = keyView(key);
    if constexpr (std::is_member_object_pointer_v<decltype(Member)>)
    {
        addDataMember<Member, Style>(row);
    }
    else
    {
        addGetter<Member, Style>(row);
    }
    return row;
}

/// A member with accessors under its key: `field<&R::getX, &R::setX>(u"Key")`.
template <auto Get, auto Set, std::size_t Size, class Style = Plain>
    requires(!std::is_null_pointer_v<decltype(Get)>)
constexpr FieldOf<RecordOf<Set>> field(char16_t const (&key)[Size], Style = {})
{
    FieldOf<RecordOf<Set>> row;
    row.key = keyView(key);
    addGetter<Get, Style>(row);
    addSetter<Set, Style>(row);
    return row;
}

/// A member that is only read, through its setter: `readField<&R::setX>(u"Key")`.
template <auto Set, std::size_t Size, class Style = Plain>
constexpr FieldOf<RecordOf<Set>> readField(char16_t const (&key)[Size], Style = {})
{
    FieldOf<RecordOf<Set>> row;
    row.key = keyView(key);
    addSetter<Set, Style>(row);
    return row;
}

/// An embedded record whose members stand beside the outer record's own.
template <auto Member>
constexpr FieldOf<RecordOf<Member>> flat()
{
    FieldOf<RecordOf<Member>> row;
    row.placement = Field::Placement::Flat;
    row.write = [](void const* record) -> QJsonValue
    { return Value<TypeOf<Member>>::write(static_cast<RecordOf<Member> const*>(record)->*Member); };
    row.part = [](void* record) -> void* { return &(static_cast<RecordOf<Member>*>(record)->*Member); };
    row.rows = fieldsOf<TypeOf<Member>>;
    return row;
}

/// Rows of the same record that stand in an object under the key.
template <class Record, auto const& Rows, std::size_t Size>
constexpr FieldOf<Record> within(char16_t const (&key)[Size])
{
    FieldOf<Record> row;
    row.key = keyView(key);
    row.placement = Field::Placement::Within;
    row.rows = Rows;
    return row;
}

} // namespace jsonSerializer::implementation
