#pragma once

#include <memory>
#include <mutex>
#include <optional>
#include <utility>

#include <QUrl>

#include <KeloCommunicationLib/connection/Operation.h>
#include <platform/rest/NetworkReply.h>
#include <platform/rest/TraceData.h>

#include "cli/doctor/Finding.h"
#include "cli/doctor/Patience.h"
#include "cli/doctor/Probe.h"
#include "cli/shell/Context.h"

namespace cli
{

/// One call of the library to the service, and what became of it.
struct Exchange
{
    rest::JsonReply reply;
    rest::RestReplyStatus status;
    rest::TraceData trace; ///< of its last exchange; without a start time if nothing was sent

    /// The value of a header of the answer; null if there is none, or its value is none that traces show.
    QByteArray header(QByteArray const& name) const;
    /// Whether the service itself has said this, and nobody in its place.
    bool isOfService() const;
};

/// What the checks have learned of the way to the service, each of those before it.
class Examination
{
public:
    Examination(CommonOptions given, std::chrono::milliseconds step) : options(std::move(given)), patience(step) {}

    /// Makes the library's connection; throws a Failure for the first setting that cannot be used. Nothing is sent.
    void open(CommonOptions const& given);
    /// Calls an operation that reads and has no body. Of the paths' values only the installation is known here.
    Exchange ask(operations::Route const& operation);

    QString host() const { return way.url.host(); }

    CommonOptions const options;
    Patience patience; ///< from `open` on that of the settings
    Way way = {};
    std::optional<Context> context = {}; ///< from `open` on
    bool hasInstallation = true;
    Exchange first = {};   ///< what the service said to a question that needs no installation
    Exchange account = {}; ///< what it said of the installation

private:
    /// Filled on the transport's thread.
    struct Traced
    {
        std::mutex mutex;
        std::optional<rest::TraceData> last;
    };

    std::shared_ptr<Traced> const traced_ = std::make_shared<Traced>();
};

} // namespace cli
