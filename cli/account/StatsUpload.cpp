#include "cli/Commands.h"

#include <KeloCommunicationLib/account/VantorStatsConnection.h>
#include <platform/core/HostEnvironment.h>

#include "cli/shell/Arguments.h"
#include "cli/shell/Context.h"
#include "cli/shell/Input.h"
#include "cli/shell/Listing.h"

namespace cli
{

using namespace Qt::Literals::StringLiterals;

Action statsUpload(Arguments& arguments)
{
    auto const path = arguments.requiredText("FILE", "The statistics file; - is standard input", Offer::Kind::Files);
    auto const id = arguments.requiredText("--id", "What the statistics are called");
    auto const address = arguments.text("--stats-url", "Address of the statistics service; else KELO_STATS_URL");
    return [=](Context const& context)
    {
        auto const url = serviceUrl(
            address->isNull() ? qEnvironmentVariable("KELO_STATS_URL") : *address,
            u"give --stats-url or set KELO_STATS_URL"_s);
        VantorStats const stats(*id, given("statistics file", *path).content);
        auto environment = core::hostEnvironment();
        environment.statsUrl = url;
        core::setHostEnvironment(environment);

        VantorStatsConnection connection;
        context.configure(connection);
        auto const result = connection.uploadVantorStats(stats);
        if (!result.succeeded)
        {
            QString const reason = context.untoldStatus(Purpose::Change).message;
            throw Failure(ExitCode::NoConnection, u"No answer from %1: %2"_s.arg(url.toDisplayString(), reason));
        }
        if (result.code != 0)
        {
            throw Failure(
                ExitCode::ServiceError,
                u"%1 refused the statistics with HTTP status %2."_s.arg(url.toDisplayString()).arg(result.code));
        }
        showObject(
            context.output(), {{u"Id"_s, *id}, {u"Size"_s, stats.getData().size()}, {u"Url"_s, url.toDisplayString()}});
    };
}

} // namespace cli
