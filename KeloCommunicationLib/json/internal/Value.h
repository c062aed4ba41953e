#pragma once

#include <cstddef>
#include <string_view>
#include <type_traits>
#include <vector>

#include <QDate>
#include <QDateTime>
#include <QJsonValue>
#include <QList>
#include <QString>
#include <QUrl>
#include <QVersionNumber>

#include <KeloCommunicationLib/Export.h>
#include <KeloCommunicationLib/json/internal/Field.h>

namespace jsonSerializer::implementation
{

/// How one type of value stands on the wire. `read` is only called for a value that is there and not null.
template <class T>
struct Value;

#define KELO_SCALAR_VALUE(CppType, Kind)                                                                               \
    template <>                                                                                                        \
    struct KELO_EXPORT Value<CppType>                                                                                  \
    {                                                                                                                  \
        static constexpr ValueKind kind = ValueKind::Kind;                                                             \
        static void read(CppType& value, Scalar& scalar);                                                              \
        static QJsonValue write(CppType const& value);                                                                 \
    }

KELO_SCALAR_VALUE(QString, Text);
KELO_SCALAR_VALUE(bool, Boolean);
KELO_SCALAR_VALUE(int, Integer);  // one that is no 32-bit integer reads as 0
KELO_SCALAR_VALUE(quint64, Size); // fractions are cut off, numbers out of range read as the nearest
KELO_SCALAR_VALUE(double, Number);
KELO_SCALAR_VALUE(QDate, Date);             // unreadable text is an invalid date
KELO_SCALAR_VALUE(QDateTime, DateTime);     // unreadable text is an invalid time
KELO_SCALAR_VALUE(QVersionNumber, Version); // a text without leading numbers is a null version
KELO_SCALAR_VALUE(QUrl, Url);

#undef KELO_SCALAR_VALUE

/// The names of an enumeration that travels as a number; specialised beside the table that needs it.
template <class Enumeration>
inline constexpr std::nullptr_t namesOf = nullptr;

/// Enumerations travel as integers; a number without a name is kept.
template <class T>
    requires std::is_enum_v<T>
struct Value<T>
{
    static constexpr ValueKind kind = ValueKind::Enumeration;

    static void read(T& value, Scalar& scalar) { value = static_cast<T>(scalar.toInt()); }

    static QJsonValue write(T const& value) { return QJsonValue(static_cast<int>(value)); }

    static std::vector<NamedValue> names()
    {
        if constexpr (std::is_null_pointer_v<std::remove_cv_t<decltype(namesOf<T>)>>)
        {
            return {};
        }
        else
        {
            return namesOf<T>.names();
        }
    }
};

/// The name of a type as C++ writes it.
template <class T>
constexpr std::string_view typeName()
{
    constexpr std::string_view function = __PRETTY_FUNCTION__;
    constexpr std::string_view before = "T = ";
    constexpr std::size_t begin = function.find(before) + before.size();
    return function.substr(begin, function.find_first_of(";]", begin) - begin);
}

/// Records are objects; anything else reads as an empty one.
template <HasFields T>
struct Value<T>
{
    static constexpr Type type()
    {
        Type record;
        record.kind = ValueKind::Record;
        record.name = typeName<T>();
        record.rows = fieldsOf<T>;
        return record;
    }
};

/// Lists are arrays; anything else reads as an empty one. Every element gives an entry, whatever its type.
template <class List>
constexpr Type listOf(Type const& items)
{
    Type list;
    list.kind = ValueKind::List;
    list.items = &items;
    list.clear = [](void* value) { static_cast<List*>(value)->clear(); };
    list.entrySize = sizeof(typename List::value_type);
    list.reserve = [](void* value, std::size_t size)
    { static_cast<List*>(value)->reserve(static_cast<typename List::size_type>(size)); };
    list.append = [](void* value) -> void* { return &static_cast<List*>(value)->emplace_back(); };
    list.each = [](void const* value, Look with)
    {
        for (auto const& entry : *static_cast<List const*>(value))
        {
            with(&entry);
        }
    };
    return list;
}

/// How `T` stands on the wire by the rules of `Conversion`, with its type taken away.
template <class T, class Conversion>
constexpr Type makeType()
{
    if constexpr (requires { Conversion::type(); })
    {
        return Conversion::type();
    }
    else
    {
        Type type;
        type.kind = Conversion::kind;
        type.read = [](void* value, Scalar& scalar) { Conversion::read(*static_cast<T*>(value), scalar); };
        type.write = [](void const* value) -> QJsonValue { return Conversion::write(*static_cast<T const*>(value)); };
        if constexpr (requires { Conversion::form; })
        {
            type.form = Conversion::form;
        }
        if constexpr (requires { Conversion::names(); })
        {
            type.names = &Conversion::names;
        }
        return type;
    }
}

template <class T, class Conversion = Value<T>>
inline constexpr Type typeOf = makeType<T, Conversion>();

template <class T>
struct Value<std::vector<T>>
{
    static constexpr Type type() { return listOf<std::vector<T>>(typeOf<T>); }
};

template <class T>
struct Value<QList<T>>
{
    static constexpr Type type() { return listOf<QList<T>>(typeOf<T>); }
};

} // namespace jsonSerializer::implementation
