#pragma once

#include <chrono>

#include <KeloCommunicationLib/Export.h>
#include <platform/rest/RestReply.h>

/// How often to poll. All waits are told in intervals, so that what holds for one interval holds for any other.
struct KELO_EXPORT PollSettings
{
    std::chrono::milliseconds interval{60000}; ///< between two polls; at least 1 s
    double jitter = 0.15;                      ///< every interval is longer or shorter by up to this share of it
    double begin = 4;                          ///< the longest wait before the first poll, in intervals
    double firstRetry = 2;                     ///< the longest wait after a failure, in intervals; it doubles with each
    double longestRetry = 5;                   ///< failure until it is this
    double refused = 15;                       ///< the wait after refused credentials, in intervals
};

/// Decides when to poll next so that many programs that fail together do not come back together. It has no clock, no
/// timer and no source of chance of its own: every function gets a number that is evenly distributed in [0, 1), and
/// returns a wait from now on. All programs must not get the same numbers.
class KELO_EXPORT PollSchedule
{
public:
    explicit PollSchedule(PollSettings const& settings = {});

    /// The wait after what makes many programs begin at the same time, as a start or the end of a machine's sleep:
    /// anything up to the longest wait before a first poll.
    std::chrono::milliseconds begin(double chance) const;

    /// The wait after a poll with this outcome.
    ///
    /// - Success: the interval with its jitter.
    /// - Failure: anything from nothing up to a longest wait, which grows with each failure in succession.
    /// - Failure with a Retry-After (of a day at most): as above, but counted from the moment that the service names.
    /// - HTTP status 401 or 403: the long interval with its jitter.
    std::chrono::milliseconds after(rest::RestReplyStatus const& status, double chance);

    /// How long the service asks to be left alone: at most a day, and zero if it does not ask.
    static std::chrono::seconds askedWait(rest::RestReplyStatus const& status);

private:
    std::chrono::milliseconds jittered(double intervals, double chance) const;

    PollSettings settings_;
    double nextRetry_; ///< the longest wait after the next failure, in intervals
};
