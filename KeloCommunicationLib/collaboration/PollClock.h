#pragma once

#include <chrono>
#include <functional>

#include <KeloCommunicationLib/Export.h>

/// Where a `RequestPoller` gets time and chance from. Hosts need none of their own; a test brings one that it can turn.
class KELO_EXPORT PollClock
{
public:
    PollClock() = default;
    virtual ~PollClock();
    PollClock(PollClock const&) = delete;
    PollClock& operator=(PollClock const&) = delete;

    /// The time since any fixed moment. It goes on while the machine sleeps and does not jump when the date is set.
    virtual std::chrono::milliseconds now() const = 0;
    /// Has `tick` called once, by the event loop, after `delay`; in the place of an earlier one that is still to come.
    /// It may come late, and is not called any more once the clock is gone.
    virtual void callAfter(std::chrono::milliseconds delay, std::function<void()> tick) = 0;
    /// Evenly distributed in [0, 1).
    virtual double chance() = 0;
};
