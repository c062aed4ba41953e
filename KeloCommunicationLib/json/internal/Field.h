#pragma once

#include <array>
#include <cstddef>
#include <limits>
#include <span>
#include <string_view>
#include <type_traits>
#include <vector>

#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QString>
#include <QStringView>

#include <KeloCommunicationLib/Export.h>
#include <KeloCommunicationLib/json/RecordSchema.h>

namespace jsonSerializer::implementation
{

/// A value of the wire that is neither a record nor a list, whichever way it came in.
struct Scalar
{
    enum class Is : int
    {
        Other, ///< an object or an array where none belongs, or null in a list
        Text,
        Boolean,
        Integer, ///< any number without a fraction that fits into 64 bits
        Number
    };

    Is is = Is::Other;
    bool boolean = false;
    qint64 integer = 0;
    double number = 0; ///< also of an integer
    QString text{};    ///< null unless it is a text

    /// The integer if it has 32 bits, else 0.
    int toInt() const
    {
        bool const fits = integer >= std::numeric_limits<int>::min() && integer <= std::numeric_limits<int>::max();
        return fits ? static_cast<int>(integer) : 0;
    }
};

/// Takes the address of a value that lives as long as the call.
template <class Pointer>
class AddressTaker
{
public:
    template <class Function>
    AddressTaker(Function& function) // NOLINT(google-explicit-constructor): a lambda goes where one is wanted
        : context_(const_cast<void*>(static_cast<void const*>(&function))),
          call_([](void* context, Pointer value) { (*static_cast<Function*>(context))(value); })
    {
    }

    void operator()(Pointer value) const { call_(context_, value); }

private:
    void* context_;
    void (*call_)(void* context, Pointer value);
};

using Change = AddressTaker<void*>;
using Look = AddressTaker<void const*>;

/// One row of a record's table, without the record's type: which key a member has, how one gets at it, and what it is.
struct Field
{
    QStringView key{};               ///< null: an embedded record, whose members stand beside the outer record's own
    std::array<char, 40> keyBytes{}; ///< the same, as it stands in a text
    Type const* type = nullptr;
    /// Where the member is, for one that is there: the short way of `change`. Null for members with accessors.
    void* (*address)(void* record) = nullptr;
    /// Calls back with the member, or with a new value that the setter then takes. Null: the member is only written.
    void (*change)(void* record, Change with) = nullptr;
    /// Calls back with the member, unless it is an unset optional one.
    void (*look)(void const* record, Look with) = nullptr;
    bool isOptional = false;

    bool isEmbedded() const { return key.isNull(); }
};

using Table = std::span<Field const>;

/// One type of value, without its C++ type.
struct Type
{
    ValueKind kind = ValueKind::Text;
    WireForm form = WireForm::Usual;
    std::vector<NamedValue> (*names)() = nullptr;

    // Neither record nor list; `read` is only called for what is there and not null. What is written as undefined is
    // left out.
    void (*read)(void* value, Scalar& scalar) = nullptr;
    QJsonValue (*write)(void const* value) = nullptr;

    // Record
    std::string_view name{};
    Table rows{};

    // List
    Type const* items = nullptr;
    void (*clear)(void* list) = nullptr;
    std::size_t entrySize = 0;
    void (*reserve)(void* list, std::size_t size) = nullptr;
    void* (*append)(void* list) = nullptr;
    void (*each)(void const* list, Look with) = nullptr;
};

/// Reads a value that is there and not null.
KELO_EXPORT void readValue(Type const& type, void* value, QJsonValueConstRef json);
/// Every element gives an entry.
KELO_EXPORT void readList(Type const& type, void* list, QJsonArray const& array);
/// Reads every member that the object has; a key that is missing or null leaves its member alone.
KELO_EXPORT void readRecord(void* record, Table table, QJsonObject const& object);

KELO_EXPORT QJsonValue writeValue(Type const& type, void const* value);
/// The record as an object.
KELO_EXPORT QJsonObject writeRecord(void const* record, Table table);

/// A row that belongs to one record type, so that a table cannot hold another record's rows.
template <class Record>
struct FieldOf : Field
{
};

/// Makes a table of rows.
template <class Record, std::size_t Size>
constexpr std::array<Field, Size> fields(FieldOf<Record> const (&rows)[Size])
{
    std::array<Field, Size> table{};
    for (std::size_t index = 0; index < Size; ++index)
    {
        table[index] = rows[index];
    }
    return table;
}

/// The table of a record, specialised beside it: the only place that knows the record's keys.
template <class Record>
inline constexpr std::nullptr_t fieldsOf = nullptr;

template <class Record>
concept HasFields = !std::is_same_v<std::remove_cv_t<decltype(fieldsOf<Record>)>, std::nullptr_t>;

} // namespace jsonSerializer::implementation
