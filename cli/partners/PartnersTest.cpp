#include "cli/Commands.h"

#include "cli/shell/Arguments.h"
#include "cli/shell/Context.h"
#include "cli/shell/Input.h"
#include "cli/shell/Listing.h"

namespace cli
{

using namespace Qt::Literals::StringLiterals;

Action partnersTest(Arguments& arguments)
{
    auto const id =
        arguments.requiredText("CONNECTION", "The partner connection's id, as kelo partners accounts shows it");
    return [=](Context const& context)
    {
        auto const result = context.valueOf(context.connection().testAccountConnection(
            context.installation(), identifier("partner connection id", *id)));
        auto json = jsonSerializer::describe(result);
        json.insert(u"PartnerConnectionId"_s, *id);
        showObject(context.output(), json);
    };
}

} // namespace cli
