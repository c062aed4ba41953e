#include "cli/commands/Commands.h"

#include "cli/Context.h"
#include "cli/Listing.h"

namespace cli
{

using namespace Qt::Literals::StringLiterals;

Action software(Arguments& /*arguments*/)
{
    return [](Context const& context)
    {
        auto const release = context.valueOf(context.connection().getSoftwareUpdateInfo(context.installation()));
        showObject(
            context.output(), {{u"Version"_s, release.getUpdateVersion().toString()},
                               {u"ForcedUpdate"_s, release.hasMandatoryUpdate()},
                               {u"DirectDownloadUrl"_s, release.getDownloadUrl()},
                               {u"InformationUrl"_s, release.getInformationUrl()},
                               {u"ReleaseImageUrl"_s, release.getReleaseImageUrl()}});
    };
}

} // namespace cli
