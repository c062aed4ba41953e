#include "tests/soak/Storm.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace soak
{

namespace
{

/// Milliseconds that it may last.
int longest(test::Fault const& fault)
{
    return fault.text == "down" ? 20 : fault.hangs || fault.isSlow ? 1200 : 250;
}

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
    : service_(service), ledger_(ledger), faults_(test::allFaults("http://127.0.0.1:1")), random_(seed)
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
    int time = std::numeric_limits<int>::max();
    for (int count = between(1, 2); count > 0; --count)
    {
        auto const& fault = faults_[static_cast<std::size_t>(between(0, static_cast<int>(faults_.size()) - 1))];
        bool const isSpoiler = fault.effect == test::Effect::Spoilt || fault.effect == test::Effect::Refused;
        if (isSpoiler && !std::exchange(isSpoiling_, true))
        {
            ledger_.setSpoiling(true);
        }
        auto const text = test::extended(fault.text, fault.mixed);
        auto const times = "times=" + std::to_string(between(1, 20));
        service_.addFault(fault.source == test::Source::Service ? test::extended(text, times) : text);
        time = std::min(time, longest(fault));
    }
    return time;
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
