#pragma once

#include <chrono>

#include <QByteArray>
#include <QString>

#include <platform/rest/TraceData.h>

namespace cli
{

double milliseconds(std::chrono::microseconds duration);

/// From the moment an exchange was asked for to its end.
std::chrono::microseconds durationOf(rest::TraceData const& exchange);

/// The value of a header, in whatever case its name is; empty if there is none.
QString headerValue(rest::Headers const& headers, QByteArray const& wanted);

/// How many bytes a body has; that of what goes from a file or into one is not in the trace.
qint64 bodySize(rest::Headers const& headers, QByteArray const& body);

/// What became of an exchange, in one line without secrets: method, path, status, time and bytes, or why it failed.
QString summaryOf(rest::TraceData const& exchange);

} // namespace cli
