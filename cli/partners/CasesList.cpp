#include "cli/Commands.h"

#include "cli/shell/Arguments.h"
#include "cli/shell/Context.h"
#include "cli/shell/Input.h"
#include "cli/shell/Listing.h"

namespace cli
{

using namespace Qt::Literals::StringLiterals;

Action casesList(Arguments& arguments)
{
    auto const patient = arguments.requiredText("--patient", "The patient's id");
    return [=](Context const& context)
    {
        auto const cases = context.valueOf(
            context.connection().getPartnerCases(context.installation(), identifier("patient id", *patient)));
        showTable(
            context.output(), described(cases),
            {{u"CaseId"_s, u"CASE"_s, Cells::Copied},
             {u"CaseStatus"_s, u"STATUS"_s},
             {u"CreatedAt"_s, u"CREATED"_s},
             {u"PartnerId"_s, u"PARTNER"_s, Cells::Copied},
             {u"PartnerName"_s, u"PARTNER NAME"_s},
             {u"PartnerConnectionId"_s, u"CONNECTION"_s, Cells::Copied},
             {u"PartnerConnectionUserName"_s, u"USER"_s},
             {u"AllowCaseUpdates"_s, u"UPDATES"_s},
             {u"PartnerPlatformCaseId"_s, u"CASE THERE"_s, Cells::Copied}});
    };
}

} // namespace cli
