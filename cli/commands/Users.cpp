#include "cli/commands/Commands.h"

#include "cli/Arguments.h"
#include "cli/Context.h"
#include "cli/Listing.h"

namespace cli
{

using namespace Qt::Literals::StringLiterals;

Action users(Arguments& arguments)
{
    auto const withSecrets = arguments.flag("--with-secrets", "Shows password hashes and two-factor keys, too");
    return [=](Context const& context)
    {
        using User = TessalyUser;
        std::vector<Column<User>> columns{
            {u"Reference"_s, u"USER"_s, &User::getReference},
            {u"UserName"_s, u"USER NAME"_s, &User::getUserName},
            {u"FirstName"_s, u"FIRST NAME"_s, &User::getFirstName},
            {u"LastName"_s, u"LAST NAME"_s, &User::getLastName},
            {u"Email"_s, u"EMAIL"_s, &User::getEmail}};
        if (*withSecrets)
        {
            columns.push_back({u"PasswordHash"_s, u"PASSWORD HASH"_s, &User::getPasswordHash});
            columns.push_back({u"TwoFactorKey"_s, u"TWO-FACTOR KEY"_s, &User::getEncryptedTwoFactorKey});
        }
        showList(
            context.output(), context.valueOf(context.connection().getUsersForLicense(context.installation())),
            columns);
    };
}

} // namespace cli
