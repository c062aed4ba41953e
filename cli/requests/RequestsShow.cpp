#include "cli/Commands.h"

#include "cli/requests/RequestLookup.h"
#include "cli/requests/RequestView.h"
#include "cli/shell/Arguments.h"
#include "cli/shell/Context.h"
#include "cli/shell/Input.h"
#include "cli/shell/Listing.h"

namespace cli
{

Action requestsShow(Arguments& arguments)
{
    auto const id = arguments.requiredText("REQUEST", "The request's id");
    return [=](Context const& context)
    {
        auto const request = requestDetails(context, identifier("request id", *id));
        context.output().show(described(request), detailsText(request));
    };
}

} // namespace cli
