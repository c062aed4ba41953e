#include "tests/soak/Storm.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace soak
{

namespace
{

enum class Source : int
{
    Line,    ///< the proxy in front of the service
    Service, ///< the service, which answers as it should in the end or not at all
    Spoiler  ///< the service, which answers as it should not
};

constexpr int usualTime = 250;

struct Fault
{
    Source source = Source::Line;
    char const* text = "";   ///< as at the simulator's shell prompt
    int longest = usualTime; ///< milliseconds that it may last
};

using enum Source;

// One row a fault. Those of the service strike a random number of calls, those of the line all connections or, with a
// toxicity, some.
constexpr Fault faults[] = {
    {Line, "latency:latency=20,jitter=20"},
    {Line, "latency:latency=10,jitter=10,stream=upstream"},
    {Line, "latency:latency=1000,toxicity=0.3", 1200},
    {Line, "bandwidth:rate=300"},
    {Line, "bandwidth:rate=300,stream=upstream"},
    {Line, "slicer:average_size=500,size_variation=490,delay=200"},
    {Line, "slicer:average_size=500,size_variation=490,delay=200,stream=upstream"},
    {Line, "timeout:timeout=0,toxicity=0.4", 1200},
    {Line, "timeout:timeout=0,toxicity=0.4,stream=upstream", 1200},
    {Line, "timeout:timeout=30,toxicity=0.5"},
    {Line, "reset_peer:toxicity=0.3"},
    {Line, "reset_peer:timeout=20,toxicity=0.5"},
    {Line, "reset_peer:toxicity=0.3,stream=upstream"},
    {Line, "limit_data:bytes=0,toxicity=0.5"},
    {Line, "limit_data:bytes=60,toxicity=0.5"},
    {Line, "limit_data:bytes=3000"},
    {Line, "limit_data:bytes=100000"},
    {Line, "limit_data:bytes=250,toxicity=0.5,stream=upstream"},
    {Line, "limit_data:bytes=20000,stream=upstream"},
    {Line, "slow_close:delay=50"},
    {Line, "down", 20},
    {Service, "delay:milliseconds=20"},
    {Service, "delay:milliseconds=1000", 1200},
    {Service, "earlyHints"},
    {Service, "drop"},
    {Service, "truncatedBody"},
    {Service, "cutChunk"},
    {Service, "gzipBomb:mebibytes=2"},
    {Service, "endlessHeaders"},
    {Spoiler, "status:status=400"},
    {Spoiler, "status"},
    {Spoiler, "unauthorized"},
    {Spoiler, "tooManyRequests"},
    {Spoiler, "redirect:location=http://127.0.0.1:1/"},
    {Spoiler, "redirect:status=302,location=http://127.0.0.1:1/"},
    {Spoiler, "html"},
    // A page in the place of a write's answer would count as its success.
    {Spoiler, "html:status=200,operation=getShippingAddresses"},
    {Spoiler, "emptyBody"},
    {Spoiler, "wrongType"},
    {Spoiler, "wrongType:member="},
    {Spoiler, "missingMember"},
    {Spoiler, "nullMember"},
    {Spoiler, "unknownText"},
};

} // namespace

void Stop::set()
{
    std::lock_guard const lock(mutex_);
    isSet_ = true;
    changed_.notify_all();
}

bool Stop::isSet() const
{
    std::lock_guard const lock(mutex_);
    return isSet_;
}

bool Stop::waitFor(std::chrono::milliseconds time) const
{
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, time, [this] { return isSet_; });
}

Storm::Storm(test::FaultedService& service, Ledger& ledger, quint64 seed)
    : service_(service), ledger_(ledger), random_(seed)
{
}

void Storm::blow(Stop const& stop)
{
    while (!stop.waitFor(std::chrono::milliseconds(between(0, 60))))
    {
        stop.waitFor(std::chrono::milliseconds(between(10, begin())));
        end();
    }
}

int Storm::begin()
{
    int longest = usualTime;
    for (int count = between(1, 2); count > 0; --count)
    {
        auto const& fault = faults[between(0, static_cast<int>(std::size(faults)) - 1)];
        std::string text = fault.text;
        if (fault.source == Spoiler && !std::exchange(isSpoiling_, true))
        {
            ledger_.setSpoiling(true);
        }
        if (fault.source != Line)
        {
            text += (text.find(':') == std::string::npos ? ":" : ",") + ("times=" + std::to_string(between(1, 20)));
        }
        service_.addFault(text);
        longest = std::min(longest, fault.longest);
    }
    return longest;
}

void Storm::end()
{
    count(service_.proxy().toJson(), "Type");
    count(service_.simulator().control("GET", "faults").array(), "Kind");
    service_.clearFaults();
    if (std::exchange(isSpoiling_, false))
    {
        ledger_.setSpoiling(false);
    }
}

void Storm::count(QJsonArray const& faultList, char const* nameKey)
{
    for (auto const& fault : faultList)
    {
        auto const object = fault.toObject();
        fired_[object[QLatin1String(nameKey)].toString().toStdString()] +=
            static_cast<quint64>(object["Fired"].toInt());
    }
}

} // namespace soak
