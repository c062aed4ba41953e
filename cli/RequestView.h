#pragma once

#include <vector>

#include <QJsonArray>
#include <QJsonObject>
#include <QString>
#include <QStringList>

#include <KeloCommunicationLib/collaboration/ExtendedRequestDetails.h>

/// How requests look, for programs and for people. JSON members are named as in the service's own replies; "Type" is
/// added to every "RequestType" as its name.
namespace cli
{

QJsonArray listJson(std::vector<collaboration::RequestInfo> const& requests);
QString listText(std::vector<collaboration::RequestInfo> const& requests);

QJsonObject detailsJson(collaboration::ExtendedRequestDetails const& request);
/// Everything about one request on many lines.
QString detailsText(collaboration::ExtendedRequestDetails const& request);

/// A request as a row of a table with these columns.
QStringList const& summaryHeader();
QStringList summaryRow(collaboration::ExtendedRequestDetails const& request);

QJsonArray notesJson(std::vector<collaboration::NoteInfo> const& notes);
QString notesText(std::vector<collaboration::NoteInfo> const& notes);

} // namespace cli
