#include "cli/Commands.h"

#include "cli/shell/Arguments.h"
#include "cli/shell/Context.h"
#include "cli/shell/Input.h"
#include "cli/shell/Listing.h"

namespace cli
{

using namespace Qt::Literals::StringLiterals;

Action casesPortal(Arguments& arguments)
{
    auto const patient = arguments.requiredText("--patient", "The patient's id");
    return [=](Context const& context)
    {
        auto const cases = context.valueOf(
            context.connection().getMiraShareCases(identifier("patient id", *patient), context.installation()),
            Shape::Object);
        showTable(
            context.output(), described(cases),
            {{u"Name"_s, u"CASE"_s},
             {u"Status"_s, u"STATUS"_s},
             {u"CreatedBy"_s, u"CREATED BY"_s},
             {u"IsCreator"_s, u"OURS"_s},
             {u"CreationTimestamp"_s, u"CREATED"_s},
             {u"SharedWithSites"_s, u"SHARED WITH"_s},
             {u"CaseUrl"_s, u"URL"_s}});
    };
}

} // namespace cli
