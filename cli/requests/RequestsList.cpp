#include "cli/Commands.h"

#include <platform/core/HostInfo.h>

#include "cli/requests/RequestView.h"
#include "cli/shell/Arguments.h"
#include "cli/shell/Context.h"
#include "cli/shell/Input.h"
#include "cli/shell/Listing.h"

namespace cli
{

Action requestsList(Arguments& arguments)
{
    auto const types = arguments.texts("--type", "Only these types, by name or number", requestTypeNames);
    auto const all = arguments.flag("--all", "Closed requests, too");
    return [=](Context const& context)
    {
        GetRequestsInfo info;
        info.setOnlyActiveRequests(!*all);
        info.setVersionNumber(CollaborationRequestVersion::getVersion());
        info.setSelectedTypes(requestTypes(*types));
        auto const requests = context.valueOf(context.connection().getRequests(context.installation(), info));
        context.output().show(described(requests), listText(requests));
    };
}

} // namespace cli
