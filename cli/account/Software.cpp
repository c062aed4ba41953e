#include "cli/Commands.h"

#include "cli/shell/Context.h"
#include "cli/shell/Listing.h"

namespace cli
{

Action software(Arguments& /*arguments*/)
{
    return [](Context const& context)
    {
        auto const release = context.valueOf(context.connection().getSoftwareUpdateInfo(context.installation()));
        showObject(context.output(), jsonSerializer::describe(release));
    };
}

} // namespace cli
