#pragma once

#include <algorithm>
#include <string>

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QUrlQuery>

namespace test
{

/// The service's OpenAPI document; one that cannot be read allows nothing.
class ServiceDocument
{
public:
    explicit ServiceDocument(char const* path)
    {
        QFile file(path);
        document_ = file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).object() : QJsonObject();
    }

    /// What of an exchange the document does not allow: "operation", "parameters", "body" or "reply"; empty if all is.
    std::string refused(
        QByteArray const& method, QString const& target, QByteArray const& body, QByteArray const& reply) const
    {
        QJsonObject operation;
        QJsonObject values;
        QJsonObject const paths = document_["paths"].toObject();
        for (auto path = paths.begin(); path != paths.end(); ++path)
        {
            QString const segments = path.key().replace('{', "(?<").replace('}', ">[^/]*)");
            QRegularExpression const pattern(QRegularExpression::anchoredPattern(segments));
            auto const match = pattern.match(target.section('?', 0, 0));
            QJsonValue const own = path.value()[QString(method.toLower())];
            // Of several paths the one with the fewest open segments counts.
            if (match.hasMatch() && own.isObject()
                && (operation.isEmpty() || match.lastCapturedIndex() < values.size()))
            {
                operation = own.toObject();
                values = {};
                for (QString const& name : pattern.namedCaptureGroups().sliced(1))
                {
                    values.insert(name, match.captured(name));
                }
            }
        }
        for (auto const& [name, value] : QUrlQuery(target.section('?', 1)).queryItems())
        {
            values.insert(name, value);
        }
        return operation.isEmpty()                                            ? "operation"
               : !allows(schemaOf(operation["parameters"].toArray()), values) ? "parameters"
               : !allowsContent(operation["requestBody"], body)               ? "body"
               : !allowsContent(operation.value("responses")["2XX"], reply)   ? "reply"
                                                                              : "";
    }

private:
    template <class List, class Test>
    static bool all(List const& list, Test test)
    {
        return std::all_of(list.begin(), list.end(), test);
    }

    static QJsonObject schemaOf(QJsonArray const& parameters)
    {
        QJsonObject properties;
        QJsonArray required;
        for (QJsonValue const parameter : parameters)
        {
            properties.insert(parameter["name"].toString(), parameter["schema"]);
            if (parameter["required"].toBool())
            {
                required.append(parameter["name"]);
            }
        }
        return {{"properties", properties}, {"required", required}, {"additionalProperties", false}};
    }

    bool allowsContent(QJsonValue const& holder, QByteArray const& bytes) const
    {
        QJsonObject const content = holder["content"].toObject();
        QJsonArray const value = QJsonDocument::fromJson('[' + bytes + ']').array();
        return content.isEmpty() ? bytes.isEmpty()
                                 : content.contains("application/octet-stream")
                                       || allows(content["application/json"]["schema"], value.first());
    }

    bool allows(QJsonValue const& schema, QJsonValue const& value) const
    {
        QStringList const words = schema.toObject().keys();
        return !words.isEmpty() && all(words, [&](QString const& word) { return wordAllows(word, schema, value); });
    }

    /// A word that is not known here allows nothing.
    bool wordAllows(QString const& word, QJsonValue const& schema, QJsonValue const& value) const
    {
        static QStringList const types{"null", "boolean", "number", "string", "array", "object"};
        QJsonValue const rule = schema[word];
        QJsonArray const rules = rule.toArray();
        QStringList const members = value.toObject().keys();
        bool const isInteger = value.isDouble() && value.toInteger(0) == value.toInteger(1);
        auto const isType = [&](QString const& type) { return rule == type || rules.contains(type); };
        auto const refuses = [&](QJsonValue const& one) { return !allows(one, value); };
        auto const isNamed = [&](QString const& key) { return schema["properties"].toObject().contains(key); };
        auto const isGood = [&](QString const& key) { return !isNamed(key) || allows(rule[key], value[key]); };
        auto const isGoodItem = [&](QJsonValue const& item) { return allows(rule, item); };
        auto const isThere = [&](QJsonValue const& key) { return members.contains(key.toString()); };
        return word == "description" || (word == "const" && rule == value) || (word == "enum" && rules.contains(value))
               || (word == "type" && (isType(types.value(value.type())) || (isInteger && isType("integer"))))
               || (word == "minimum" && value.toDouble() >= rule.toDouble())
               || (word == "pattern" && value.toString().contains(QRegularExpression(rule.toString())))
               || (word == "properties" && all(members, isGood)) || (word == "required" && all(rules, isThere))
               || (word == "additionalProperties" && rule == false && all(members, isNamed))
               || (word == "items" && all(value.toArray(), isGoodItem)) || (word == "anyOf" && !all(rules, refuses))
               || (word == "$ref"
                   && allows(document_["components"]["schemas"][rule.toString().section('/', -1)], value));
    }

    QJsonObject document_;
};

} // namespace test
