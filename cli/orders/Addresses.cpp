#include "cli/Commands.h"

#include "cli/shell/Context.h"
#include "cli/shell/Listing.h"

namespace cli
{

using namespace Qt::Literals::StringLiterals;

Action addresses(Arguments& /*arguments*/)
{
    return [](Context const& context)
    {
        auto const list = context.valueOf(context.connection().getShippingAddresses(context.installation()));
        showTable(
            context.output(), described(list.addresses),
            {{u"Identifier"_s, u"ADDRESS"_s, Cells::Copied},
             {u"Name"_s, u"NAME"_s},
             {u"Street"_s, u"STREET"_s},
             {u"PostalCode"_s, u"POSTAL CODE"_s},
             {u"City"_s, u"CITY"_s},
             {u"Country"_s, u"COUNTRY"_s}});
    };
}

} // namespace cli
