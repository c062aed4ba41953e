#include "cli/commands/Commands.h"

#include "cli/Context.h"
#include "cli/Listing.h"

namespace cli
{

using namespace Qt::Literals::StringLiterals;

Action partnersAccounts(Arguments& /*arguments*/)
{
    return [](Context const& context)
    {
        using Account = PartnerAccountInfo;
        auto const accounts = context.valueOf(context.connection().getPartnerAccounts(context.installation()));
        showList<Account>(
            context.output(), accounts,
            {{u"PartnerConnectionId"_s, u"CONNECTION"_s, &Account::getId},
             {u"DisplayName"_s, u"NAME"_s, &Account::getDisplayName},
             {u"UserName"_s, u"USER"_s, &Account::getUserName},
             {u"PartnerId"_s, u"PARTNER"_s, &Account::getPartnerId},
             {u"PartnerName"_s, u"PARTNER NAME"_s, &Account::getPartnerName},
             {u"IsConnected"_s, u"CONNECTED"_s, &Account::getConnectedStatus},
             {u"ManagePartnerConnectionUrl"_s, u"MANAGED AT"_s, &Account::getManagePartnerConnectionUrl}});
    };
}

} // namespace cli
