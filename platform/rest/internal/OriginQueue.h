#pragma once

#include <deque>
#include <memory>

#include <platform/rest/internal/Call.h>
#include <platform/rest/internal/Proxy.h>

namespace rest
{

/// The calls to one origin over one proxy: some in flight, the rest waiting in order. Waiting here and not in libcurl,
/// a call's time-out does not run yet.
struct OriginQueue
{
    static constexpr int connectionLimit = 6;
    static constexpr int streamLimit = 100;

    Proxy proxy;
    std::deque<std::shared_ptr<Call>> waiting;
    int inFlight = 0;
    bool isMultiplexed = false; ///< the origin's last answer came over HTTP/2

    bool hasPlace() const { return inFlight < (isMultiplexed ? streamLimit : connectionLimit); }
};

} // namespace rest
