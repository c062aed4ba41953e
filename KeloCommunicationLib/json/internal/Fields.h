#pragma once

#include <array>
#include <cstddef>
#include <optional>
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

template <class T>
struct OptionalTraits : std::false_type
{
    using Type = T;
};

template <class T>
struct OptionalTraits<std::optional<T>> : std::true_type
{
    using Type = T;
};

/// A row without a way to get at its member. Keys are ASCII in UTF-16 literals: Qt finds those fastest.
template <class Record, std::size_t Size>
constexpr FieldOf<Record> rowUnder(char16_t const (&key)[Size], Type const& type)
{
    FieldOf<Record> row;
    static_assert(Size <= std::tuple_size_v<decltype(row.keyBytes)>);
    row.key = QStringView(key, static_cast<qsizetype>(Size) - 1);
    for (std::size_t index = 0; index < Size; ++index)
    {
        row.keyBytes[index] = static_cast<char>(key[index]);
    }
    row.type = &type;
    return row;
}

template <class Record, class T, class Style, std::size_t Size>
constexpr FieldOf<Record> rowFor(char16_t const (&key)[Size])
{
    auto row = rowUnder<Record>(key, typeOf<T, typename Style::template On<T>>);
    row.isOptional = requires
    {
        Style::isOptional;
    };
    return row;
}

/// A public member under its key: `field<&R::member>(u"Key")`. An unset optional one is left out. A style may follow
/// the key.
template <auto Member, std::size_t Size, class Style = Plain>
    requires std::is_member_object_pointer_v<decltype(Member)>
constexpr FieldOf<RecordOf<Member>> field(char16_t const (&key)[Size], Style = {})
{
    using Record = RecordOf<Member>;
    using Optional = OptionalTraits<TypeOf<Member>>;
    auto row = rowFor<Record, typename Optional::Type, Style>(key);
    if constexpr (Optional::value)
    {
        row.isOptional = true;
        row.change = [](void* record, Change with) { with(&(static_cast<Record*>(record)->*Member).emplace()); };
        row.look = [](void const* record, Look with)
        {
            if (auto const& value = static_cast<Record const*>(record)->*Member)
            {
                with(&*value);
            }
        };
    }
    else
    {
        row.address = [](void* record) -> void* { return &(static_cast<Record*>(record)->*Member); };
        row.change = [](void* record, Change with) { with(&(static_cast<Record*>(record)->*Member)); };
        row.look = [](void const* record, Look with) { with(&(static_cast<Record const*>(record)->*Member)); };
    }
    return row;
}

/// A member that is only written, through its getter: `field<&R::getX>(u"Key")`.
template <auto Get, std::size_t Size, class Style = Plain>
    requires std::is_member_function_pointer_v<decltype(Get)>
constexpr FieldOf<RecordOf<Get>> field(char16_t const (&key)[Size], Style = {})
{
    auto row = rowFor<RecordOf<Get>, TypeOf<Get>, Style>(key);
    row.look = [](void const* record, Look with)
    {
        auto const& value = (static_cast<RecordOf<Get> const*>(record)->*Get)();
        with(&value);
    };
    return row;
}

/// A member with accessors under its key: `field<&R::getX, &R::setX>(u"Key")`.
template <auto Get, auto Set, std::size_t Size, class Style = Plain>
    requires std::is_member_function_pointer_v<decltype(Set)>
constexpr FieldOf<RecordOf<Set>> field(char16_t const (&key)[Size], Style style = {})
{
    FieldOf<RecordOf<Set>> row = field<Get>(key, style);
    row.change = [](void* record, Change with)
    {
        TypeOf<Get> value{};
        with(&value);
        // Some setters take an enumeration as its number.
        (static_cast<RecordOf<Set>*>(record)->*Set)(static_cast<TypeOf<Set>>(std::move(value)));
    };
    return row;
}

/// An embedded record whose members stand beside the outer record's own.
template <auto Member>
constexpr FieldOf<RecordOf<Member>> flat()
{
    auto row = field<Member>(u"");
    row.key = QStringView();
    return row;
}

/// What a table gives for a record or, in a list, for an element, as a type of its own.
template <auto const& Rows>
constexpr Type partOf()
{
    Type part;
    part.kind = ValueKind::Record;
    part.rows = Rows;
    return part;
}

template <auto const& Rows>
inline constexpr Type partType = partOf<Rows>();

/// A record that is its only member on the wire, without an object around it: a list.
template <auto Member>
constexpr Type bareList()
{
    using Record = RecordOf<Member>;
    constexpr Type const& member = typeOf<TypeOf<Member>>;
    Type list = member;
    list.clear = [](void* record) { member.clear(&(static_cast<Record*>(record)->*Member)); };
    list.reserve = [](void* record, std::size_t size)
    { member.reserve(&(static_cast<Record*>(record)->*Member), size); };
    list.append = [](void* record) { return member.append(&(static_cast<Record*>(record)->*Member)); };
    list.each = [](void const* record, Look with)
    { member.each(&(static_cast<Record const*>(record)->*Member), with); };
    return list;
}

/// The record itself under a key.
template <class Record, std::size_t Size>
constexpr FieldOf<Record> itself(char16_t const (&key)[Size], Type const& type)
{
    auto row = rowUnder<Record>(key, type);
    row.change = [](void* record, Change with) { with(record); };
    row.look = [](void const* record, Look with) { with(record); };
    return row;
}

/// Rows of the same record that stand in an object under the key.
template <class Record, auto const& Rows, std::size_t Size>
constexpr FieldOf<Record> within(char16_t const (&key)[Size])
{
    return itself<Record>(key, partType<Rows>);
}

/// A list of values that stand on the wire as objects, each by the rows of a table.
template <auto const& Rows>
struct ObjectsOf
{
    template <class T>
    struct On
    {
        static constexpr Type type() { return listOf<T>(partType<Rows>); }
    };
};
template <auto const& Rows>
inline constexpr ObjectsOf<Rows> objectsOf{};

} // namespace jsonSerializer::implementation
