#pragma once

#include <vector>

#include <QJsonObject>
#include <QString>
#include <QStringView>

#include <KeloCommunicationLib/Export.h>

/// What the records of this library are made of, asked from the tables that read and write them.
namespace jsonSerializer
{

/// What a value is.
enum class ValueKind : int
{
    Text,
    Boolean,
    Integer,     ///< of 32 bits
    Size,        ///< an integer from 0, of 64 bits
    Number,      ///< with fractions
    Date,        ///< ISO 8601 text, a day
    DateTime,    ///< ISO 8601 text with milliseconds
    Version,     ///< dotted text
    Url,         ///< text
    Enumeration, ///< a number or, in the form `Texts`, one of its names
    Record,      ///< an object
    List         ///< an array
};

/// How a value departs from its kind's usual form on the wire.
enum class WireForm : int
{
    Usual,
    DecimalText, ///< an integer as text
    Base64,      ///< bytes as text
    Texts,       ///< an enumeration as one of its names
    NullOrUsual  ///< null when there is none
};

namespace implementation
{
struct Field;
struct Type;

template <class T>
Type const& recordType();

KELO_EXPORT QJsonObject describeRecord(Type const& type, void const* record);
KELO_EXPORT void fillRecord(Type const& type, void* record, QJsonObject const& json);
} // namespace implementation

/// One value of an enumeration.
struct NamedValue
{
    QString name;
    int value = 0;
};

class MemberSchema;

/// What stands under a key, in a list, or is a whole record. Cheap to copy; valid for ever.
class KELO_EXPORT ValueSchema
{
public:
    explicit ValueSchema(implementation::Type const& type) : type_(&type) {}

    /// A list of what this is.
    ValueSchema asList() const;

    ValueKind kind() const;
    WireForm form() const;
    /// What each element of a list is.
    ValueSchema items() const;
    /// The record's type as C++ names it, e.g. "collaboration::FileInfo"; empty for a part of a record that stands in
    /// an object of its own.
    QString recordName() const;
    /// The members of a record with those of embedded records in their places, in the table's order.
    std::vector<MemberSchema> members() const;
    /// The values of an enumeration that have names; empty where the service has none.
    std::vector<NamedValue> names() const;

private:
    implementation::Type const* type_;
    bool isListOf_ = false;
};

/// One member of a record.
class KELO_EXPORT MemberSchema : public ValueSchema
{
public:
    explicit MemberSchema(implementation::Field const& field);

    QStringView key() const { return key_; }

    /// Whether the member is left out when it holds nothing.
    bool isOptional() const { return isOptional_; }

private:
    QStringView key_;
    bool isOptional_;
};

/// What the record `T` is made of. There for every record of the wire, whether the service sends or takes it.
template <class T>
ValueSchema schemaOf()
{
    return ValueSchema(implementation::recordType<T>());
}

/// Every member of the record as it stands on the wire, also of a record that is only read; unset optional ones are
/// left out. For output and comparison: what is sent to the service is made by `toJson`.
template <class T>
QJsonObject describe(T const& record)
{
    return implementation::describeRecord(implementation::recordType<T>(), &record);
}

/// The record that `describe` shows as this object, also one that is only written. As lenient as `fromJson`.
template <class T>
T fromDescription(QJsonObject const& json)
{
    T record{};
    implementation::fillRecord(implementation::recordType<T>(), &record, json);
    return record;
}

} // namespace jsonSerializer
