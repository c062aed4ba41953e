#include <KeloCommunicationLib/json/internal/Field.h>

#include <QJsonArray>

namespace jsonSerializer::implementation
{

namespace
{

Scalar scalarOf(QJsonValueConstRef json)
{
    Scalar scalar;
    switch (json.type())
    {
    case QJsonValue::String:
        scalar.is = Scalar::Is::Text;
        scalar.text = json.toString();
        break;
    case QJsonValue::Bool:
        scalar.is = Scalar::Is::Boolean;
        scalar.boolean = json.toBool();
        break;
    case QJsonValue::Double:
        scalar.integer = json.toInteger(0);
        // Qt does not tell a number that is no integer from the default.
        scalar.is = scalar.integer == json.toInteger(1) ? Scalar::Is::Integer : Scalar::Is::Number;
        scalar.number = json.toDouble();
        break;
    default:
        break;
    }
    return scalar;
}

void writeInto(QJsonObject& object, void const* record, Table table)
{
    for (Field const& field : table)
    {
        auto const write = [&object, &field](void const* value)
        {
            if (field.isEmbedded())
            {
                writeInto(object, value, field.type->rows);
            }
            else
            {
                // Inserting an undefined value leaves the key out.
                object.insert(field.key, writeValue(*field.type, value));
            }
        };
        field.look(record, write);
    }
}

} // namespace

void readList(Type const& type, void* list, QJsonArray const& array)
{
    type.clear(list);
    type.reserve(list, static_cast<std::size_t>(array.size()));
    for (QJsonValueConstRef const element : array)
    {
        readValue(*type.items, type.append(list), element);
    }
}

void readValue(Type const& type, void* value, QJsonValueConstRef json)
{
    switch (type.kind)
    {
    case ValueKind::Record:
        readRecord(value, type.rows, json.toObject());
        break;
    case ValueKind::List:
        readList(type, value, json.toArray());
        break;
    default:
        Scalar scalar = scalarOf(json);
        type.read(value, scalar);
    }
}

void readRecord(void* record, Table table, QJsonObject const& object)
{
    for (Field const& field : table)
    {
        if (field.isEmbedded())
        {
            auto const read = [&](void* part) { readRecord(part, field.type->rows, object); };
            field.change(record, read);
            continue;
        }
        auto const member = object.constFind(field.key);
        if (member != object.constEnd() && !member->isNull() && field.change != nullptr)
        {
            auto const read = [&](void* value) { readValue(*field.type, value, *member); };
            field.change(record, read);
        }
    }
}

QJsonValue writeValue(Type const& type, void const* value)
{
    if (type.kind == ValueKind::Record)
    {
        return writeRecord(value, type.rows);
    }
    if (type.kind != ValueKind::List)
    {
        return type.write(value);
    }
    QJsonArray array;
    auto const append = [&](void const* entry) { array.append(writeValue(*type.items, entry)); };
    type.each(value, append);
    return array;
}

QJsonObject writeRecord(void const* record, Table table)
{
    QJsonObject object;
    writeInto(object, record, table);
    return object;
}

} // namespace jsonSerializer::implementation
