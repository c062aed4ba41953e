#pragma once

#include <cstddef>
#include <mutex>
#include <vector>

#include <platform/rest/TraceData.h>

namespace cli
{

/// Every HTTP exchange of this run, in the order in which they ended, without the bytes of uploaded files: they would
/// stay in memory until the end. May be used from any thread.
class ExchangeLog
{
public:
    void add(rest::TraceData const& exchange);
    std::vector<rest::TraceData> all() const;
    /// Those that ended since the last call of this function.
    std::vector<rest::TraceData> takeNew();

private:
    mutable std::mutex mutex_;
    std::vector<rest::TraceData> exchanges_;
    std::size_t taken_ = 0;
};

} // namespace cli
