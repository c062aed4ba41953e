#include "cli/Commands.h"

#include "cli/orders/OrderView.h"
#include "cli/shell/Arguments.h"
#include "cli/shell/Context.h"
#include "cli/shell/Input.h"
#include "cli/shell/Listing.h"

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
