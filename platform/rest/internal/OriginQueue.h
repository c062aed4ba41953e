#pragma once

#include <algorithm>
#include <deque>
#include <memory>
#include <optional>

#include <platform/rest/Proxy.h>
#include <platform/rest/internal/Call.h>
#include <platform/rest/internal/Connections.h>

namespace rest
{

/// The calls to one origin: some in flight, the rest waiting in order, here and not in libcurl.
struct OriginQueue
{
    static constexpr int connectionLimit = 6;

    /// Nothing while it is not known yet which way leads to the origin; its calls wait.
    std::optional<Proxy> proxy;
    std::optional<Clock::time_point> proxyAsked;
    std::deque<std::shared_ptr<Call>> waiting;
    int inFlight = 0;
    Connections connections;
    Clock::time_point lastByte = Clock::time_point::min(); ///< when the origin has last sent something

    bool hasPlace() const { return proxy && inFlight < connectionLimit; }

    /// When a waiting call has waited too long: an origin that goes on answering is only slow.
    Clock::time_point deadline(Call const& call) const
    {
        return timeOut(std::max(call.created(), lastByte), call.request().timeout);
    }
};

} // namespace rest
