#include "cli/requests/RequestLookup.h"

#include <algorithm>
#include <array>
#include <optional>

#include <platform/core/HostInfo.h>

#include "cli/shell/Context.h"

namespace cli
{

namespace
{

using namespace Qt::Literals::StringLiterals;
using collaboration::ExtendedRequestDetails;
using collaboration::RequestInfo;

using Details = std::optional<ExtendedRequestDetails>;

template <auto operation>
Details fetch(Context const& context, RequestInfo const& wanted)
{
    GetRequestDetailsInfo const info(
        false, CollaborationRequestVersion::getVersion(), {wanted.requestId}, collaboration::RequestType::Unset);
    for (auto const& group : context.valueOf((context.connection().*operation)(context.installation(), info)))
    {
        for (auto const& entry : group.collaborationRequestDetailInfos)
        {
            auto request = extendedDetails(group.partner, entry, wanted.requestType);
            if (request.requestDetails.id == wanted.requestId)
            {
                return request;
            }
        }
    }
    return std::nullopt;
}

// The place in the table is the number of the request type.
using Fetch = Details (*)(Context const& context, RequestInfo const& wanted);
constexpr std::array<Fetch, 8> fetchers{
    fetch<&TessalyConnection::getDentalScanRequestDetails>,
    fetch<&TessalyConnection::getLabDesignRequestDetails>,
    fetch<&TessalyConnection::getTempShellRequestDetails>,
    fetch<&TessalyConnection::getTemplateRequestDetails>,
    fetch<&TessalyConnection::getRestorationRequestDetails>,
    fetch<&TessalyConnection::getSurgeryPlanRequestDetails>,
    fetch<&TessalyConnection::getCentralizedRestorationRequestDetails>,
    fetch<&TessalyConnection::getReferralRequestDetails>};

} // namespace

ExtendedRequestDetails requestDetails(Context const& context, QString const& requestId)
{
    auto const list = context.valueOf(context.connection().getRequests(context.installation(), false));
    auto const found = std::find_if(
        list.begin(), list.end(), [&requestId](RequestInfo const& request) { return request.requestId == requestId; });
    auto const type = found == list.end() ? std::size_t(0) : static_cast<std::size_t>(found->requestType);
    auto const details = found != list.end() && type < fetchers.size() ? fetchers[type](context, *found) : std::nullopt;
    if (!details)
    {
        throw Failure(ExitCode::ServiceError, u"The installation has no request \"%1\"."_s.arg(requestId));
    }
    return *details;
}

} // namespace cli
