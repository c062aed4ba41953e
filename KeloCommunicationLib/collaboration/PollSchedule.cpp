#include <KeloCommunicationLib/collaboration/PollSchedule.h>

#include <algorithm>
#include <optional>

namespace
{

using std::chrono::milliseconds;

/// A template, so that a platform's status without this member is no error.
template <class Status>
std::chrono::seconds retryAfterOf(Status const& status)
{
    if constexpr (requires { status.retryAfter; })
    {
        return std::clamp(
            status.retryAfter.value_or(std::chrono::seconds::zero()), std::chrono::seconds::zero(),
            std::chrono::seconds(std::chrono::hours(24)));
    }
    else
    {
        return std::chrono::seconds::zero();
    }
}

} // namespace

PollSchedule::PollSchedule(PollSettings const& settings) : settings_(settings), nextRetry_(settings.firstRetry)
{
    settings_.interval = std::max(settings_.interval, milliseconds(std::chrono::seconds(1)));
}

milliseconds PollSchedule::begin(double chance) const
{
    return std::chrono::duration_cast<milliseconds>(settings_.interval * chance);
}

milliseconds PollSchedule::after(rest::RestReplyStatus const& status, double chance)
{
    if (status.kind == 0)
    {
        nextRetry_ = settings_.firstRetry;
        return jittered(1, chance);
    }
    if (status.httpStatus == 401 || status.httpStatus == 403)
    {
        return jittered(settings_.refused, chance);
    }
    auto const longest = settings_.interval * std::min(nextRetry_, settings_.longestRetry);
    nextRetry_ = std::min(nextRetry_ * 2, settings_.longestRetry);
    return retryAfter(status) + std::chrono::duration_cast<milliseconds>(longest * chance);
}

milliseconds PollSchedule::jittered(double intervals, double chance) const
{
    double const factor = 1 + settings_.jitter * (2 * chance - 1);
    return std::chrono::duration_cast<milliseconds>(settings_.interval * intervals * factor);
}

std::chrono::seconds retryAfter(rest::RestReplyStatus const& status)
{
    return retryAfterOf(status);
}
