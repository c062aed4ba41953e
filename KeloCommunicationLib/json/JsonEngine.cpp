#include <KeloCommunicationLib/json/internal/Field.h>

namespace jsonSerializer::implementation
{

void readRecord(void* record, Table table, QJsonObject const& object)
{
    for (Field const& field : table)
    {
        if (field.placement == Field::Placement::Flat)
        {
            readRecord(field.part(record), field.rows, object);
            continue;
        }
        auto const member = object.constFind(field.key);
        if (member == object.constEnd() || member->isNull())
        {
            continue;
        }
        if (field.placement == Field::Placement::Within)
        {
            readRecord(record, field.rows, member->toObject());
        }
        else if (field.read != nullptr)
        {
            field.read(record, *member);
        }
    }
}

namespace
{

void writeInto(QJsonObject& object, void const* record, Table table);

void spread(QJsonObject& object, QJsonObject const& part)
{
    for (auto member = part.constBegin(); member != part.constEnd(); ++member)
    {
        object.insert(member.key(), member.value());
    }
}

void writeField(QJsonObject& object, void const* record, Field const& field)
{
    switch (field.placement)
    {
    case Field::Placement::Member:
        if (field.write != nullptr)
        {
            // Inserting an undefined value leaves the key out.
            object.insert(field.key, field.write(record));
        }
        break;
    case Field::Placement::Flat:
        spread(object, field.write(record).toObject());
        break;
    case Field::Placement::Within:
    {
        QJsonObject inner = object.value(field.key).toObject();
        writeInto(inner, record, field.rows);
        object.insert(field.key, inner);
        break;
    }
    }
}

void writeInto(QJsonObject& object, void const* record, Table table)
{
    for (Field const& field : table)
    {
        writeField(object, record, field);
    }
}

} // namespace

QJsonObject writeRecord(void const* record, Table table)
{
    QJsonObject object;
    writeInto(object, record, table);
    return object;
}

} // namespace jsonSerializer::implementation
