#pragma once

#include <optional>
#include <vector>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>

#include <KeloCommunicationLib/Export.h>

/// Conversion between the service's JSON and the records of this library. Nothing here throws: what is missing or null
/// leaves a member at its default, what has the wrong type or an unreadable text gives the empty value of its type.
namespace jsonSerializer
{

/// Reads a record. Every record that the service sends has this for `QJsonObject`; a record that is only written has
/// none, and using it fails to link.
template <class T, class Json = QJsonObject>
T fromJson(Json const& json);

/// Writes a record as the JSON object that is a request's body. Every record that is sent to the service has this, no
/// other.
template <class T>
QJsonValue toJson(T const& record);

namespace implementation
{

/// The array that a list reply holds: the document's own, or that of an object whose only member is one. Nothing for
/// any other document; an object among those is worth a warning.
KELO_EXPORT std::optional<QJsonArray> listIn(QJsonDocument const& document);

template <class T, int Kind>
struct FromJSON;

/// Reads a list reply.
template <class T>
struct FromJSON<std::vector<T>, 1>
{
    /// One entry for each element of the list, in order; an element that is no object gives a default-constructed
    /// entry. Empty when the document holds no list.
    static std::vector<T> convert(QJsonDocument const& document)
    {
        std::vector<T> records;
        if (std::optional<QJsonArray> const list = listIn(document))
        {
            records.reserve(static_cast<std::size_t>(list->size()));
            for (QJsonValueConstRef const element : *list)
            {
                records.push_back(element.isObject() ? fromJson<T>(element.toObject()) : T());
            }
        }
        return records;
    }
};

} // namespace implementation

} // namespace jsonSerializer
