#pragma once

#include <QJsonObject>
#include <QString>

#include <KeloCommunicationLib/connection/Operation.h>

namespace cli
{

/// The whole service as an OpenAPI 3.1 document, made from the library's operations and the tables of its records.
/// Operations that share method and path are one entry, which names each of them.
QJsonObject openApi();

/// Where an operation's request goes, without the query: "/Installations/{installationId}/users".
QString pathOf(operations::Route const& route);

} // namespace cli
