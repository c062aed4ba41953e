#include "cli/call/OpenApi.h"

#include <algorithm>
#include <map>
#include <optional>
#include <utility>
#include <vector>

#include <QJsonArray>
#include <QJsonDocument>
#include <QUrlQuery>

#include "cli/call/Operations.h"

namespace cli
{

namespace
{

using namespace Qt::Literals::StringLiterals;
using jsonSerializer::MemberSchema;
using jsonSerializer::NamedValue;
using jsonSerializer::ValueKind;
using jsonSerializer::ValueSchema;
using jsonSerializer::WireForm;
using operations::OperationSchema;

// What does not come from the operations.
constexpr auto frame = R"({
    "openapi": "3.1.0",
    "info": {
        "title": "KELO service",
        "version": ")" KELO_VERSION R"(",
        "description": "Paths follow the service's address. Replies may lack members and have others. x-operations names the library's functions."
    },
    "security": [{"basic": []}],
    "components": {
        "securitySchemes": {"basic": {"type": "http", "scheme": "basic"}},
        "responses": {"Refused": {
            "description": "Refused: why stands in the first element",
            "content": {"application/json": {"schema": {"type": "array", "items": {
                "type": "object",
                "properties": {"Code": {"type": "string", "pattern": "^-?[0-9]+$"}, "Message": {"type": "string"}}
            }}}}
        }}
    }
})";

QJsonObject ofType(QString const& type, QString const& description = {})
{
    QJsonObject schema{{u"type"_s, type}};
    if (!description.isEmpty())
    {
        schema.insert(u"description"_s, description);
    }
    return schema;
}

QJsonObject enumeration(ValueSchema const& value)
{
    QJsonArray texts;
    QStringList numbers;
    for (NamedValue const& one : value.names())
    {
        texts.append(one.name);
        numbers << u"%1 %2"_s.arg(one.value).arg(one.name);
    }
    return value.form() == WireForm::Texts ? QJsonObject{{u"type"_s, u"string"_s}, {u"enum"_s, texts}}
                                           : ofType(u"integer"_s, numbers.join(u", "_s));
}

QJsonObject scalar(ValueSchema const& value)
{
    if (value.form() == WireForm::DecimalText)
    {
        return {{u"type"_s, u"string"_s}, {u"pattern"_s, u"^-?[0-9]+$"_s}};
    }
    switch (value.kind())
    {
    case ValueKind::Boolean:
        return ofType(u"boolean"_s);
    case ValueKind::Integer:
        return ofType(u"integer"_s);
    case ValueKind::Size:
        return {{u"type"_s, u"integer"_s}, {u"minimum"_s, 0}};
    case ValueKind::Number:
        return ofType(u"number"_s);
    case ValueKind::Date:
        return ofType(u"string"_s, u"ISO 8601 day; empty for none"_s);
    case ValueKind::DateTime:
        return ofType(u"string"_s, u"ISO 8601 with milliseconds; local time unless it names a zone"_s);
    case ValueKind::Version:
        return ofType(u"string"_s, u"Numbers with dots; empty for none"_s);
    case ValueKind::Enumeration:
        return enumeration(value);
    default:
        return ofType(u"string"_s);
    }
}

QString named(char const* value)
{
    return u"{%1}"_s.arg(QLatin1String(value));
}

} // namespace

QString pathOf(operations::Route const& route)
{
    QString path = QString::fromLatin1(route.path).section(u'?', 0, 0);
    for (std::size_t index = 0; index < route.values.size() && route.values[index] != nullptr; ++index)
    {
        path.replace(u"%%1"_s.arg(index + 1), named(route.values[index]));
    }
    if (route.constant != nullptr)
    {
        path.replace("%1"_L1, QLatin1String(route.constant));
    }
    if (route.appended != nullptr)
    {
        path += named(route.appended);
    }
    return path.startsWith(u'/') ? path : u'/' + path;
}

namespace
{

QJsonObject parameter(QString const& name, QString const& place, QJsonObject const& schema)
{
    return {{u"name"_s, name}, {u"in"_s, place}, {u"schema"_s, schema}};
}

QJsonArray parametersOf(operations::Route const& route)
{
    QJsonArray parameters;
    QString const path = pathOf(route);
    for (char const* const name : {route.values[0], route.values[1], route.appended})
    {
        if (name != nullptr && path.contains(named(name)))
        {
            parameters.append(parameter(QString::fromLatin1(name), u"path"_s, ofType(u"string"_s)));
        }
    }
    QUrlQuery const query(QString::fromLatin1(route.path).section(u'?', 1));
    for (auto const& [key, value] : query.queryItems())
    {
        QJsonObject const fixed{{u"const"_s, value}};
        parameters.append(parameter(key, u"query"_s, value.startsWith(u'%') ? ofType(u"string"_s) : fixed));
    }
    return parameters;
}

/// Operations that share method and path.
using Entry = std::vector<OperationSchema>;

/// The parameters of all operations; those that only some of them have are not required.
QJsonArray parametersOf(Entry const& entry)
{
    QJsonArray all;
    for (OperationSchema const& operation : entry)
    {
        for (auto const& each : parametersOf(operation.route))
        {
            QJsonObject parameter = each.toObject();
            auto const takesIt = [&each](OperationSchema const& other)
            { return parametersOf(other.route).contains(each); };
            parameter.insert(u"required"_s, std::all_of(entry.begin(), entry.end(), takesIt));
            if (!all.contains(parameter))
            {
                all.append(parameter);
            }
        }
    }
    return all;
}

class Document
{
public:
    QJsonObject json()
    {
        std::map<std::pair<QString, rest::HttpMethod>, Entry> entries;
        for (Operation const& operation : allOperations())
        {
            entries[{pathOf(operation.schema.route), operation.schema.route.method}].push_back(operation.schema);
        }
        QJsonObject paths;
        for (auto const& [key, entry] : entries)
        {
            static constexpr char const* methods[] = {"get", "put", "post"};
            QJsonObject path = paths[key.first].toObject();
            path.insert(QLatin1String(methods[static_cast<std::size_t>(key.second)]), json(entry));
            paths.insert(key.first, path);
        }
        QJsonObject document = QJsonDocument::fromJson(frame).object();
        QJsonObject components = document[u"components"].toObject();
        components.insert(u"schemas"_s, schemas_);
        document.insert(u"components"_s, components);
        document.insert(u"paths"_s, paths);
        return document;
    }

private:
    /// Which way a record goes; none goes both. The library sends all members of a body, but relies on none of a reply.
    enum class Way : int
    {
        Sent,
        Received
    };

    QJsonObject json(Entry const& entry)
    {
        QJsonArray names;
        for (OperationSchema const& operation : entry)
        {
            names.append(QString::fromLatin1(operation.route.name));
        }
        QJsonObject done{{u"description"_s, u"Done"_s}};
        if (auto const reply =
                contentOf(entry, &OperationSchema::reply, &OperationSchema::receivesBytes, Way::Received);
            !reply.isEmpty())
        {
            done.insert(u"content"_s, reply);
        }
        QJsonObject const refused{{u"$ref"_s, u"#/components/responses/Refused"_s}};
        QJsonObject json{
            {u"operationId"_s, names.first().toString().replace(u':', u'_')},
            {u"x-operations"_s, names},
            {u"parameters"_s, parametersOf(entry)},
            {u"responses"_s, QJsonObject{{u"2XX"_s, done}, {u"default"_s, refused}}}};
        if (auto const body = contentOf(entry, &OperationSchema::body, &OperationSchema::sendsBytes, Way::Sent);
            !body.isEmpty())
        {
            json.insert(u"requestBody"_s, QJsonObject{{u"required"_s, true}, {u"content"_s, body}});
        }
        return json;
    }

    /// What the operations send or receive: one of their records, bytes, or nothing.
    QJsonObject contentOf(
        Entry const& entry, std::optional<ValueSchema> OperationSchema::*value, bool OperationSchema::*isBytes, Way way)
    {
        if (entry.front().*isBytes)
        {
            return {{u"application/octet-stream"_s, QJsonObject()}};
        }
        QJsonArray schemas;
        for (OperationSchema const& operation : entry)
        {
            if (auto const& record = operation.*value)
            {
                QJsonObject const schema = schemaOf(*record, way);
                if (!schemas.contains(schema))
                {
                    schemas.append(schema);
                }
            }
        }
        if (schemas.isEmpty())
        {
            return {};
        }
        QJsonValue const schema = schemas.size() == 1 ? schemas.first() : QJsonObject{{u"anyOf"_s, schemas}};
        return {{u"application/json"_s, QJsonObject{{u"schema"_s, schema}}}};
    }

    QJsonObject schemaOf(ValueSchema const& value, Way way)
    {
        if (value.kind() == ValueKind::List)
        {
            return {{u"type"_s, u"array"_s}, {u"items"_s, schemaOf(value.items(), way)}};
        }
        if (value.kind() == ValueKind::Record)
        {
            QString const name = value.recordName().replace("::"_L1, "."_L1);
            if (name.isEmpty())
            {
                return recordOf(value, way);
            }
            if (!schemas_.contains(name))
            {
                schemas_.insert(name, recordOf(value, way));
            }
            return {{u"$ref"_s, u"#/components/schemas/"_s + name}};
        }
        QJsonObject schema = scalar(value);
        if (value.form() == WireForm::NullOrUsual)
        {
            schema.insert(u"type"_s, QJsonArray{schema[u"type"], u"null"_s});
        }
        return schema;
    }

    QJsonObject recordOf(ValueSchema const& record, Way way)
    {
        QJsonObject properties;
        QJsonArray required;
        for (MemberSchema const& member : record.members())
        {
            QString const key = member.key().toString();
            properties.insert(key, schemaOf(member, way));
            if (!member.isOptional())
            {
                required.append(key);
            }
        }
        QJsonObject schema = ofType(u"object"_s);
        schema.insert(u"properties"_s, properties);
        if (way == Way::Sent)
        {
            schema.insert(u"required"_s, required);
            schema.insert(u"additionalProperties"_s, false);
        }
        return schema;
    }

    QJsonObject schemas_;
};

} // namespace

QJsonObject openApi()
{
    return Document().json();
}

} // namespace cli
