#pragma once

#include <QByteArray>
#include <QJsonDocument>

#include <KeloCommunicationLib/Export.h>
#include <KeloCommunicationLib/json/internal/Field.h>

namespace jsonSerializer::implementation
{

/// Reads a record from the object, or a list from the array, that the whole of `text` is; a list may also stand alone
/// in an object. Gives what `readValue` gives for the same text in a QJsonDocument, in a fraction of the time and
/// without the document.
///
/// False for everything out of the ordinary, and for what is not JSON: the document decides then, and `value`, of which
/// a part may have been read, is to be thrown away. So the two ways never differ in what they make of a text.
///
/// Best with 64 bytes of capacity behind the text, which is else copied. Any thread may call this.
KELO_EXPORT bool readText(Type const& type, void* value, QByteArray const& text);

/// Reads the same from a document; leaves the value alone if that is of another shape, with a warning for an object
/// where a list belongs.
KELO_EXPORT void readDocument(Type const& type, void* value, QJsonDocument const& document);

} // namespace jsonSerializer::implementation
