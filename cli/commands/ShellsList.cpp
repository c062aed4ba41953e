#include "cli/commands/Commands.h"

#include "cli/Arguments.h"
#include "cli/Context.h"
#include "cli/Input.h"
#include "cli/Listing.h"
#include "cli/OrderView.h"

namespace cli
{

Action shellsList(Arguments& arguments)
{
    auto const order = arguments.requiredText("ORDER", "The reference of an order");
    return [=](Context const& context)
    {
        auto const shells =
            context.connection().getTempShellCalculationData(identifier("order reference", *order)).getTempShellFile();
        context.check(context.untoldStatus(), Shape::List);
        context.output().show(described(shells), shellsText(shells));
    };
}

} // namespace cli
