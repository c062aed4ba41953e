#include "cli/Commands.h"

#include "cli/shell/Arguments.h"
#include "cli/shell/Context.h"
#include "cli/shell/Listing.h"

namespace cli
{

using namespace Qt::Literals::StringLiterals;

Action users(Arguments& arguments)
{
    auto const withSecrets = arguments.flag("--with-secrets", "Shows password hashes and two-factor keys, too");
    return [=](Context const& context)
    {
        std::vector<Column> columns{
            {u"Reference"_s, u"USER"_s, Cells::Copied},
            {u"UserName"_s, u"USER NAME"_s},
            {u"FirstName"_s, u"FIRST NAME"_s},
            {u"LastName"_s, u"LAST NAME"_s},
            {u"Email"_s, u"EMAIL"_s}};
        if (*withSecrets)
        {
            context.recordSecrets();
            columns.push_back({u"PasswordHash"_s, u"PASSWORD HASH"_s});
            columns.push_back({u"TwoFactorKey"_s, u"TWO-FACTOR KEY"_s});
        }
        auto const list = described(context.valueOf(context.connection().getUsersForLicense(context.installation())));
        showTable(context.output(), *withSecrets ? list : withoutSecrets(list), columns);
    };
}

} // namespace cli
