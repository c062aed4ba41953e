#include "cli/Commands.h"

#include "cli/shell/Arguments.h"
#include "cli/shell/Context.h"
#include "cli/shell/Input.h"
#include "cli/shell/Listing.h"

namespace cli
{

using namespace Qt::Literals::StringLiterals;

Action casesRefresh(Arguments& arguments)
{
    auto const ids = arguments.texts("CASE", "The ids of the cases");
    return [=](Context const& context)
    {
        if (ids->isEmpty())
        {
            throw badInput(u"No case: give the id of at least one."_s);
        }
        mirashare::Cases cases;
        for (QString const& id : *ids)
        {
            cases.caseIds << identifier("case id", id);
        }
        auto const states =
            context.valueOf(context.connection().updatePartnerCasesStatus(context.installation(), cases));
        showTable(
            context.output(), described(states), {{u"CaseId"_s, u"CASE"_s, Cells::Copied}, {u"Status"_s, u"STATUS"_s}});
    };
}

} // namespace cli
