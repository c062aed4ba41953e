#include "cli/Commands.h"

#include "cli/shell/Context.h"
#include "cli/shell/Listing.h"

namespace cli
{

using namespace Qt::Literals::StringLiterals;

Action partnersAccounts(Arguments& /*arguments*/)
{
    return [](Context const& context)
    {
        auto const accounts = context.valueOf(context.connection().getPartnerAccounts(context.installation()));
        showTable(
            context.output(), described(accounts),
            {{u"PartnerConnectionId"_s, u"CONNECTION"_s, Cells::Copied},
             {u"GivenName"_s, u"GIVEN NAME"_s},
             {u"UserName"_s, u"USER"_s},
             {u"PartnerId"_s, u"PARTNER"_s, Cells::Copied},
             {u"PartnerName"_s, u"PARTNER NAME"_s},
             {u"IsConnected"_s, u"CONNECTED"_s},
             {u"ManagePartnerConnectionUrl"_s, u"MANAGED AT"_s}});
    };
}

} // namespace cli
