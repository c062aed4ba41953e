#pragma once

#include <QDateTime>

#include "Exchange.h"

namespace rest
{

/// What the host's hook is told of an exchange that has ended.
TraceData traceOf(Exchange const& exchange, Outcome const& outcome, QNetworkReply const& reply, QDateTime startTime);

} // namespace rest
