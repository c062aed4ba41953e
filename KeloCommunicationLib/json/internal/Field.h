#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <type_traits>

#include <QJsonObject>
#include <QJsonValue>
#include <QStringView>

#include <KeloCommunicationLib/Export.h>

namespace jsonSerializer::implementation
{

/// One row of a record's table, without the record's type: which key a member has and how it is read and written.
struct Field
{
    enum class Placement : int
    {
        Member, ///< under its key
        Flat,   ///< an embedded record whose members stand beside the outer record's own
        Within  ///< rows of the same record that stand in an object under the key
    };

    QStringView key{};
    Placement placement = Placement::Member;
    /// Member: takes the value, which is there and not null. Null for a row that is only written.
    void (*read)(void* record, QJsonValueConstRef json) = nullptr;
    /// Member: undefined leaves the key out. Flat: an object whose members are spread. Null for a row that is only
    /// read.
    QJsonValue (*write)(void const* record) = nullptr;
    void* (*part)(void* record) = nullptr; ///< Flat: the embedded record
    std::span<Field const> rows{};         ///< Flat: the embedded record's; Within: those in the object
};

using Table = std::span<Field const>;

/// Reads every member that the object has; a key that is missing or null leaves its member alone.
KELO_EXPORT void readRecord(void* record, Table table, QJsonObject const& object);

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
