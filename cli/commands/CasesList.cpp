#include "cli/commands/Commands.h"

#include "cli/Arguments.h"
#include "cli/Context.h"
#include "cli/Input.h"
#include "cli/Listing.h"

namespace cli
{

using namespace Qt::Literals::StringLiterals;

Action casesList(Arguments& arguments)
{
    auto const patient = arguments.requiredText("--patient", "The patient's id");
    return [=](Context const& context)
    {
        using Case = PartnerCaseInfo;
        auto const cases = context.valueOf(
            context.connection().getPartnerCases(context.installation(), identifier("patient id", *patient)));
        showList<Case>(
            context.output(), cases,
            {{u"CaseId"_s, u"CASE"_s, &Case::getId},
             {u"Status"_s, u"STATUS"_s, [](Case const& one) { return Case::stringFromStatus(one.getStatus()); }},
             {u"CreatedAt"_s, u"CREATED"_s,
              [](Case const& one) { return one.getCreationTime().toString(Qt::ISODate); }},
             {u"PartnerId"_s, u"PARTNER"_s, &Case::getPartnerId},
             {u"PartnerName"_s, u"PARTNER NAME"_s, &Case::getPartnerName},
             {u"PartnerConnectionId"_s, u"CONNECTION"_s, &Case::getConnectionId},
             {u"PartnerConnectionUserName"_s, u"USER"_s, &Case::getConnectionUserName},
             {u"AllowCaseUpdates"_s, u"UPDATES"_s, &Case::areCaseUpdatesAllowed},
             {u"PartnerPlatformCaseId"_s, u"CASE THERE"_s, &Case::getPlatformCaseId}});
    };
}

} // namespace cli
