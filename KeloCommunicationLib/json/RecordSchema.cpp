#include <KeloCommunicationLib/json/RecordSchema.h>

#include <KeloCommunicationLib/json/internal/Field.h>

namespace jsonSerializer
{

namespace
{

void addMembers(std::vector<MemberSchema>& members, implementation::Table table)
{
    for (implementation::Field const& field : table)
    {
        if (field.isEmbedded())
        {
            addMembers(members, field.type->rows);
        }
        else
        {
            members.emplace_back(field);
        }
    }
}

} // namespace

ValueSchema ValueSchema::asList() const
{
    ValueSchema list = *this;
    list.isListOf_ = true;
    return list;
}

ValueKind ValueSchema::kind() const
{
    return isListOf_ ? ValueKind::List : type_->kind;
}

WireForm ValueSchema::form() const
{
    return type_->form;
}

ValueSchema ValueSchema::items() const
{
    return ValueSchema(isListOf_ ? *type_ : *type_->items);
}

QString ValueSchema::recordName() const
{
    return QString::fromLatin1(type_->name.data(), static_cast<qsizetype>(type_->name.size()));
}

std::vector<MemberSchema> ValueSchema::members() const
{
    std::vector<MemberSchema> members;
    addMembers(members, type_->rows);
    return members;
}

std::vector<NamedValue> ValueSchema::names() const
{
    return type_->names == nullptr ? std::vector<NamedValue>() : type_->names();
}

MemberSchema::MemberSchema(implementation::Field const& field)
    : ValueSchema(*field.type), key_(field.key), isOptional_(field.isOptional)
{
}

QJsonObject implementation::describeRecord(Type const& type, void const* record)
{
    return writeRecord(record, type.rows);
}

void implementation::fillRecord(Type const& type, void* record, QJsonObject const& json)
{
    readRecord(record, type.rows, json);
}

} // namespace jsonSerializer
