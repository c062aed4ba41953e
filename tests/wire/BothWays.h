#pragma once

#include <cmath>

#include <QJsonArray>
#include <QJsonDocument>
#include <QString>

#include <KeloCommunicationLib/json/internal/TextReader.h>
#include <tests/wire/AllRecords.h>

/// The two ways from a text to a record or list: straight from the text, and through a document.
namespace test
{

/// All that a value holds. Unlike the form on the wire it tells null from empty texts and the zeros from each other.
inline QJsonValue contentOf(jsonSerializer::implementation::Type const& type, void const* value)
{
    using namespace jsonSerializer;
    QJsonArray content;
    if (type.kind == ValueKind::List)
    {
        auto const add = [&](void const* entry) { content.append(contentOf(*type.items, entry)); };
        type.each(value, add);
        return content;
    }
    for (implementation::Field const& field : type.rows)
    {
        auto const add = [&](void const* member) {
            content.append(QJsonArray{field.key.toString(), contentOf(*field.type, member)});
        };
        field.look(value, add);
    }
    if (type.write != nullptr)
    {
        content.append(type.write(value));
        content.append(
            &type == &implementation::typeOf<QString>  ? static_cast<QString const*>(value)->isNull()
            : &type == &implementation::typeOf<double> ? std::signbit(*static_cast<double const*>(value))
                                                       : false);
    }
    return content;
}

/// A value that was read.
struct Reading
{
    std::shared_ptr<void> value;
    QJsonValue content;
    bool isFromText; ///< and not from the document, though it was allowed
};

inline Reading readFromDocument(WireType const& type, QJsonDocument const& document)
{
    std::shared_ptr<void> const value = type.make();
    readDocument(*type.type, value.get(), document);
    return {value, contentOf(*type.type, value.get()), false};
}

/// As the body of a reply is read: from the document if the text is out of the ordinary.
inline Reading readFromText(WireType const& type, QByteArray const& text)
{
    std::shared_ptr<void> const value = type.make();
    return readText(*type.type, value.get(), text) ? Reading{value, contentOf(*type.type, value.get()), true}
                                                   : readFromDocument(type, QJsonDocument::fromJson(text));
}

} // namespace test
