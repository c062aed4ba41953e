#pragma once

#include <algorithm>
#include <chrono>
#include <future>
#include <memory>
#include <optional>
#include <thread>
#include <utility>

namespace cli
{

/// How long one step may take, and all of them together.
class Patience
{
public:
    using Clock = std::chrono::steady_clock;

    explicit Patience(std::chrono::milliseconds step) : step_(step), end_(Clock::now() + steps * step) {}

    bool isOver() const { return Clock::now() >= end_; }

    /// Of the next step; never 0, which would mean for ever to some.
    std::chrono::milliseconds limit() const
    {
        auto const left = std::chrono::ceil<std::chrono::milliseconds>(end_ - Clock::now());
        return std::clamp(left, std::chrono::milliseconds(1), step_);
    }

private:
    /// Few of the steps take as long as they may: those after the first that does are not tried.
    static constexpr int steps = 5;

    std::chrono::milliseconds step_;
    Clock::time_point end_;
};

/// What `job` gives, if it does so in time. It cannot be stopped and goes on in a thread of its own, with what it
/// holds.
template <class Job>
auto within(std::chrono::milliseconds limit, Job job) -> std::optional<decltype(job())>
{
    std::packaged_task<decltype(job())()> task(std::move(job));
    auto result = task.get_future();
    std::thread(std::move(task)).detach();
    if (result.wait_for(limit) != std::future_status::ready)
    {
        return std::nullopt;
    }
    return result.get();
}

} // namespace cli
