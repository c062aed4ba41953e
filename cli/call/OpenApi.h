#pragma once

#include <QJsonObject>

namespace cli
{

/// The whole service as an OpenAPI 3.1 document, made from the library's operations and the tables of its records.
/// Operations that share method and path are one entry, which names each of them.
QJsonObject openApi();

} // namespace cli
