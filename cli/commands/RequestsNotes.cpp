#include "cli/commands/Commands.h"

#include "cli/Arguments.h"
#include "cli/Context.h"
#include "cli/Input.h"
#include "cli/Listing.h"
#include "cli/RequestLookup.h"
#include "cli/RequestView.h"

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
