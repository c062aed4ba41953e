#include "cli/Commands.h"

#include "cli/shell/Context.h"
#include "cli/shell/Listing.h"

namespace cli
{

using namespace Qt::Literals::StringLiterals;

Action studies(Arguments& /*arguments*/)
{
    return [](Context const& context)
    {
        auto const list = context.valueOf(context.connection().getStudiesForLicense(context.installation()));
        showTable(
            context.output(), described(list.getStudyInfos()),
            {{u"Id"_s, u"STUDY"_s, Cells::Copied}, {u"Name"_s, u"NAME"_s}, {u"ClinicalPartners"_s, u"CLINICIANS"_s}});
    };
}

} // namespace cli
