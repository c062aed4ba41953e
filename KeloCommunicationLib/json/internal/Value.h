#pragma once

#include <optional>
#include <type_traits>
#include <utility>
#include <vector>

#include <QDate>
#include <QDateTime>
#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QList>
#include <QString>
#include <QUrl>
#include <QVersionNumber>

#include <KeloCommunicationLib/Export.h>
#include <KeloCommunicationLib/json/internal/Field.h>

namespace jsonSerializer::implementation
{

/// How one type of value stands on the wire. `read` is only called for a member that is there and not null.
template <class T>
struct Value;

#define KELO_SCALAR_VALUE(Type)                                                                                        \
    template <>                                                                                                        \
    struct KELO_EXPORT Value<Type>                                                                                     \
    {                                                                                                                  \
        static void read(Type& value, QJsonValueConstRef json);                                                        \
        static QJsonValue write(Type const& value);                                                                    \
    }

KELO_SCALAR_VALUE(QString);        // a string
KELO_SCALAR_VALUE(bool);           // true or false
KELO_SCALAR_VALUE(int);            // a number; one that is no 32-bit integer reads as 0
KELO_SCALAR_VALUE(quint64);        // a number; fractions are cut off, numbers out of range read as the nearest
KELO_SCALAR_VALUE(double);         // a number
KELO_SCALAR_VALUE(QDate);          // ISO 8601 text; unreadable text is an invalid date
KELO_SCALAR_VALUE(QDateTime);      // ISO 8601 text with milliseconds; unreadable text is an invalid time
KELO_SCALAR_VALUE(QVersionNumber); // dotted text; a text without leading numbers is a null version
KELO_SCALAR_VALUE(QUrl);           // text

#undef KELO_SCALAR_VALUE

/// Enumerations travel as integers; a number without a name is kept.
template <class T>
    requires std::is_enum_v<T>
struct Value<T>
{
    static void read(T& value, QJsonValueConstRef json) { value = static_cast<T>(json.toInt(0)); }

    static QJsonValue write(T const& value) { return QJsonValue(static_cast<int>(value)); }
};

/// Records are objects; anything else reads as an empty one.
template <HasFields T>
struct Value<T>
{
    static void read(T& value, QJsonValueConstRef json) { readRecord(&value, fieldsOf<T>, json.toObject()); }

    static QJsonValue write(T const& value) { return writeRecord(&value, fieldsOf<T>); }
};

/// Lists are arrays; anything else reads as an empty one. Every element gives an entry, whatever its type.
template <class List>
struct ListValue
{
    static void read(List& list, QJsonValueConstRef json) { readArray(list, json.toArray()); }

    static void readArray(List& list, QJsonArray const& array)
    {
        list.clear();
        list.reserve(static_cast<typename List::size_type>(array.size()));
        for (QJsonValueConstRef const element : array)
        {
            typename List::value_type entry{};
            Value<typename List::value_type>::read(entry, element);
            list.push_back(std::move(entry));
        }
    }

    static QJsonValue write(List const& list)
    {
        QJsonArray array;
        for (auto const& entry : list)
        {
            array.append(Value<typename List::value_type>::write(entry));
        }
        return array;
    }
};

template <class T>
struct Value<std::vector<T>> : ListValue<std::vector<T>>
{
};

template <class T>
struct Value<QList<T>> : ListValue<QList<T>>
{
};

/// A member that need not be there: left out when it is empty.
template <class T>
struct Value<std::optional<T>>
{
    static void read(std::optional<T>& value, QJsonValueConstRef json) { Value<T>::read(value.emplace(), json); }

    static QJsonValue write(std::optional<T> const& value)
    {
        return value ? Value<T>::write(*value) : QJsonValue(QJsonValue::Undefined);
    }
};

} // namespace jsonSerializer::implementation
