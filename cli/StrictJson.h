#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>

namespace cli
{

/// The object that the text of a file holds. Throws a Failure that names the file and the place when the text is not
/// JSON, holds anything but an object, or names a member twice: of two values one would get lost silently.
QJsonObject strictObject(QString const& fileName, QByteArray const& text);

} // namespace cli
