#pragma once

#include <algorithm>
#include <chrono>
#include <functional>
#include <utility>

#include <KeloCommunicationLib/collaboration/PollClock.h>

namespace testkit
{

/// A clock that a test turns: a poller's waits take no time, and chance is what the test says.
class FakePollClock : public PollClock
{
public:
    std::chrono::milliseconds now() const override { return now_; }
    void callAfter(std::chrono::milliseconds delay, std::function<void()> tick) override
    {
        due_ = now_ + delay;
        tick_ = std::move(tick);
    }
    double chance() override { return chance_; }

    void setChance(double chance) { chance_ = chance; }

    /// Lets the time pass, with every tick at its moment.
    void pass(std::chrono::milliseconds time)
    {
        auto const end = now_ + time;
        while (tick_ && due_ <= end)
        {
            now_ = std::max(now_, due_);
            std::exchange(tick_, nullptr)();
        }
        now_ = end;
    }
    /// Lets the time pass while the timers stand still.
    void sleep(std::chrono::milliseconds time)
    {
        now_ += time;
        due_ += time;
    }

private:
    std::chrono::milliseconds now_{0};
    std::chrono::milliseconds due_{0};
    std::function<void()> tick_;
    double chance_ = 0.5;
};

} // namespace testkit
