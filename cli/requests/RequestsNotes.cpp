#include "cli/Commands.h"

#include "cli/requests/RequestLookup.h"
#include "cli/requests/RequestView.h"
#include "cli/shell/Arguments.h"
#include "cli/shell/Context.h"
#include "cli/shell/Input.h"
#include "cli/shell/Listing.h"

namespace cli
{

Action requestsNotes(Arguments& arguments)
{
    auto const id = arguments.requiredText("REQUEST", "The request's id");
    return [=](Context const& context)
    {
        auto const notes = requestDetails(context, identifier("request id", *id)).requestDetails.noteInfos;
        context.output().show(described(notes), notesText(notes));
    };
}

} // namespace cli
