#include <KeloCommunicationLib/collaboration/PollSchedule.h>

#include <algorithm>

#include <KeloCommunicationLib/connection/internal/PlatformExtras.h>

using std::chrono::milliseconds;

PollSchedule::PollSchedule(PollSettings const& settings) : settings_(settings), nextRetry_(settings.firstRetry)
{
    settings_.interval = std::max(settings_.interval, milliseconds(std::chrono::seconds(1)));
}

milliseconds PollSchedule::begin(double chance) const
{
    return std::chrono::round<milliseconds>(settings_.interval * settings_.begin * chance);
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
    return askedWait(status) + std::chrono::round<milliseconds>(longest * chance);
}

milliseconds PollSchedule::jittered(double intervals, double chance) const
{
    double const factor = 1 + settings_.jitter * (2 * chance - 1);
    return std::chrono::round<milliseconds>(settings_.interval * intervals * factor);
}

std::chrono::seconds PollSchedule::askedWait(rest::RestReplyStatus const& status)
{
    auto const asked = KeloCommunicationLib::internal::retryAfterOf(status).value_or(std::chrono::seconds::zero());
    return std::clamp(asked, std::chrono::seconds::zero(), std::chrono::seconds(std::chrono::hours(24)));
}
