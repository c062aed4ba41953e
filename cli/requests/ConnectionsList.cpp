#include "cli/Commands.h"

#include "cli/shell/Context.h"
#include "cli/shell/Input.h"
#include "cli/shell/Listing.h"

namespace cli
{

using namespace Qt::Literals::StringLiterals;

Action connectionsList(Arguments& /*arguments*/)
{
    return [](Context const& context)
    {
        auto const partners = context.valueOf(context.connection().getConnectionsForLicense(context.installation()));
        auto const rowOf = [](ConnectionInfo const& partner) -> QStringList
        {
            return {
                partner.getId(), partner.getName(), partner.getZipCode(), nameOf(partner.getState()),
                partner.isInitiator() ? u"us"_s : u"them"_s};
        };
        context.output().show(
            described(partners),
            tableOf(
                {{u"CONNECTION"_s, Cells::Copied}, u"PARTNER"_s, u"ZIP CODE"_s, u"STATUS"_s, u"STARTED BY"_s}, partners,
                rowOf));
    };
}

} // namespace cli
