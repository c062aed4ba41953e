#pragma once

#include <array>
#include <cstddef>
#include <utility>
#include <vector>

#include <QByteArray>
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

/// An integer or enumeration as a string that holds its decimal digits.
struct DecimalText
{
    template <class T>
    struct On : Value<T>
    {
        static constexpr WireForm form = WireForm::DecimalText;

        static void read(T& value, Scalar& scalar) { value = static_cast<T>(scalar.text.toInt()); }

        static QJsonValue write(T const& value) { return QString::number(static_cast<int>(value)); }
    };
};
inline constexpr DecimalText decimalText{};

/// An integer or enumeration that is left out when it holds -1.
struct LeftOutWhenUnset
{
    static constexpr bool isOptional = true;

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
        static void read(T& value, Scalar& scalar) { value = nearestInt(scalar.number); }
    };
};
inline constexpr TruncatedNumber truncatedNumber{};

/// An enumeration whose numbers and texts both read as 0.
struct AlwaysZero
{
    template <class T>
    struct On : Value<T>
    {
        static void read(T& value, Scalar&) { value = T{}; }
    };
};
inline constexpr AlwaysZero alwaysZero{};

/// A time that is null on the wire when the member is null.
struct NullWhenNull
{
    template <class T>
    struct On : Value<T>
    {
        static constexpr WireForm form = WireForm::NullOrUsual;

        static QJsonValue write(T const& value)
        {
            return value.isNull() ? QJsonValue(QJsonValue::Null) : Value<T>::write(value);
        }
    };
};
inline constexpr NullWhenNull nullWhenNull{};

/// Bytes as text in standard Base64.
struct Base64
{
    template <class T>
    struct On
    {
        static constexpr ValueKind kind = ValueKind::Text;
        static constexpr WireForm form = WireForm::Base64;

        static void read(T& value, Scalar& scalar) { value = QByteArray::fromBase64(scalar.text.toLatin1()); }

        static QJsonValue write(T const& value) { return QString::fromLatin1(value.toBase64()); }
    };
};
inline constexpr Base64 base64{};

/// A file as its name without the directory.
struct FileName
{
    template <class T>
    struct On
    {
        static constexpr ValueKind kind = ValueKind::Text;

        static void read(T& value, Scalar& scalar) { value = T(scalar.text); }

        static QJsonValue write(T const& value) { return value.fileName(); }
    };
};
inline constexpr FileName fileName{};

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

    std::vector<NamedValue> names() const
    {
        std::vector<NamedValue> all;
        for (auto const& [name, value] : rows)
        {
            all.push_back({name, static_cast<int>(value)});
        }
        return all;
    }
};

/// An enumeration that travels as one of the texts of `Table`.
template <auto const& Table>
struct Texts
{
    template <class T>
    struct On
    {
        static constexpr ValueKind kind = ValueKind::Enumeration;
        static constexpr WireForm form = WireForm::Texts;

        static void read(T& value, Scalar& scalar) { value = Table.valueOf(scalar.text); }

        static QJsonValue write(T const& value) { return Table.textOf(value); }

        static std::vector<NamedValue> names() { return Table.names(); }
    };
};
template <auto const& Table>
inline constexpr Texts<Table> texts{};

/// An enumeration from 0 to `Last` that travels as the words that `wordOf` has for it; any other word is 0.
template <auto wordOf, auto Last>
struct Words
{
    template <class T>
    struct On
    {
        static constexpr ValueKind kind = ValueKind::Enumeration;
        static constexpr WireForm form = WireForm::Texts;

        static void read(T& value, Scalar& scalar)
        {
            value = T{};
            for (NamedValue const& candidate : names())
            {
                value = candidate.name == scalar.text ? static_cast<T>(candidate.value) : value;
            }
        }

        static QJsonValue write(T const& value) { return wordOf(value); }

        static std::vector<NamedValue> names()
        {
            std::vector<NamedValue> all;
            for (int value = 0; value <= static_cast<int>(Last); ++value)
            {
                all.push_back({wordOf(static_cast<T>(value)), value});
            }
            return all;
        }
    };
};
template <auto wordOf, auto Last>
inline constexpr Words<wordOf, Last> words{};

} // namespace jsonSerializer::implementation
