#include "cli/commands/Commands.h"

#include "cli/Arguments.h"
#include "cli/Context.h"
#include "cli/Input.h"
#include "cli/Listing.h"
#include "cli/RequestLookup.h"
#include "cli/RequestView.h"

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
