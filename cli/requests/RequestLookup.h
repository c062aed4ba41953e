#pragma once

#include <QString>

#include <KeloCommunicationLib/collaboration/ExtendedRequestDetails.h>

namespace cli
{

class Context;

/// The details of one request of whatever kind, own referrals included. Throws a Failure when the installation has no
/// such request.
collaboration::ExtendedRequestDetails requestDetails(Context const& context, QString const& requestId);

} // namespace cli
