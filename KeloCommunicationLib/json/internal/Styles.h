#pragma once

#include <array>
#include <cstddef>
#include <utility>

#include <QJsonValue>
#include <QLatin1String>
#include <QString>

#include <KeloCommunicationLib/Export.h>
#include <KeloCommunicationLib/json/internal/Value.h>

/// The oddities of the wire, each a style that a row names behind its key. `On<T>` reads and writes a member of type T.
namespace jsonSerializer::implementation
{

/// As the member's type stands on the wire.
struct Plain
{
    template <class T>
    using On = Value<T>;
};
inline constexpr Plain plain{};

/// An integer or enumeration as a string that holds its decimal digits.
struct DecimalText
{
    template <class T>
    struct On
    {
        static void read(T& value, QJsonValueConstRef json) { value = static_cast<T>(json.toString().toInt()); }

        static QJsonValue write(T const& value) { return QString::number(static_cast<int>(value)); }
    };
};
inline constexpr DecimalText decimalText{};

/// An integer or enumeration that is left out when it holds -1.
struct LeftOutWhenUnset
{
    template <class T>
    struct On : Value<T>
    {
        static QJsonValue write(T const& value)
        {
            return static_cast<int>(value) == -1 ? QJsonValue(QJsonValue::Undefined) : Value<T>::write(value);
        }
    };
};
inline constexpr LeftOutWhenUnset leftOutWhenUnset{};

/// The nearest 32-bit integer towards zero of any number.
KELO_EXPORT int nearestInt(double number);

/// A 32-bit integer that the service sends as any number: fractions are cut off, numbers out of range read as the
/// nearest.
struct TruncatedNumber
{
    template <class T>
    struct On : Value<T>
    {
        static void read(T& value, QJsonValueConstRef json) { value = nearestInt(json.toDouble()); }
    };
};
inline constexpr TruncatedNumber truncatedNumber{};

/// An enumeration whose numbers and texts both read as 0.
struct AlwaysZero
{
    template <class T>
    struct On : Value<T>
    {
        static void read(T& value, QJsonValueConstRef) { value = T{}; }
    };
};
inline constexpr AlwaysZero alwaysZero{};

/// A time that is null on the wire when the member is null.
struct NullWhenNull
{
    template <class T>
    struct On : Value<T>
    {
        static QJsonValue write(T const& value)
        {
            return value.isNull() ? QJsonValue(QJsonValue::Null) : Value<T>::write(value);
        }
    };
};
inline constexpr NullWhenNull nullWhenNull{};

template <std::size_t Size>
constexpr QLatin1String latin1(char const (&text)[Size])
{
    return QLatin1String(text, static_cast<qsizetype>(Size) - 1);
}

/// The texts of an enumeration, with the value of any other text.
template <class Enumeration, std::size_t Size>
struct TextTable
{
    std::array<std::pair<QLatin1String, Enumeration>, Size> rows;
    Enumeration otherwise;

    /// Exact and case-sensitive; the first row that matches.
    constexpr Enumeration valueOf(QString const& text) const
    {
        for (auto const& [name, value] : rows)
        {
            if (text == name)
            {
                return value;
            }
        }
        return otherwise;
    }

    /// Empty for a value that has no row.
    QString textOf(Enumeration wanted) const
    {
        for (auto const& [name, value] : rows)
        {
            if (value == wanted)
            {
                return name;
            }
        }
        return QString();
    }
};

/// An enumeration that travels as one of the texts of `Table`.
template <auto const& Table>
struct Texts
{
    template <class T>
    struct On
    {
        static void read(T& value, QJsonValueConstRef json) { value = Table.valueOf(json.toString()); }

        static QJsonValue write(T const& value) { return Table.textOf(value); }
    };
};
template <auto const& Table>
inline constexpr Texts<Table> texts{};

/// A member that is only written, as what `Convert` makes of it.
template <auto Convert>
struct WrittenBy
{
    template <class T>
    struct On
    {
        static QJsonValue write(T const& value) { return Convert(value); }
    };
};
template <auto Convert>
inline constexpr WrittenBy<Convert> writtenBy{};

/// A member that is only read, as what `Convert` makes of the value.
template <auto Convert>
struct ReadBy
{
    template <class T>
    struct On
    {
        static void read(T& value, QJsonValueConstRef json) { value = Convert(json); }
    };
};
template <auto Convert>
inline constexpr ReadBy<Convert> readBy{};

} // namespace jsonSerializer::implementation
