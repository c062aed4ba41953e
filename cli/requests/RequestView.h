#pragma once

#include <vector>

#include <QString>
#include <QStringList>

#include <KeloCommunicationLib/collaboration/ExtendedRequestDetails.h>

#include "cli/shell/Output.h"

/// How requests look for people.
namespace cli
{

QString listText(std::vector<collaboration::RequestInfo> const& requests);

/// Everything about one request on many lines.
QString detailsText(collaboration::ExtendedRequestDetails const& request);

/// A request as a row of a table with these columns.
std::vector<Heading> summaryHeader();
QStringList summaryRow(collaboration::ExtendedRequestDetails const& request);

QString notesText(std::vector<collaboration::NoteInfo> const& notes);

} // namespace cli
