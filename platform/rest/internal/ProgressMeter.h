#pragma once

#include <chrono>

#include <platform/rest/Progress.h>

namespace rest
{

/// Counts the bytes of one call and says when its watcher, if it has one, is to be told. Used by one thread at a time.
class ProgressMeter
{
public:
    using TimePoint = std::chrono::steady_clock::time_point;

    static constexpr std::chrono::milliseconds interval{100};

    ProgressMeter(bool isWatched, qint64 toSend) : isWatched_(isWatched) { progress_.toSend = toSend; }

    void setSent(qint64 bytes)
    {
        progress_.sent = bytes;
        hasNews_ = isWatched_;
    }

    void addReceived(qint64 bytes, qint64 announced)
    {
        progress_.received += bytes;
        progress_.toReceive = announced;
        hasNews_ = isWatched_;
    }

    /// Another answer takes the place of the one so far.
    void restartReceiving()
    {
        progress_.received = 0;
        progress_.toReceive = -1;
    }

    qint64 received() const { return progress_.received; }

    /// The moment from which the watcher may be told what is new; never if nothing is.
    TimePoint due() const { return hasNews_ ? told_ + interval : TimePoint::max(); }

    TransferProgress take(TimePoint now)
    {
        hasNews_ = false;
        told_ = now;
        return progress_;
    }

    TransferProgress atEnd() const
    {
        TransferProgress last = progress_;
        last.hasEnded = true;
        return last;
    }

private:
    bool isWatched_;
    bool hasNews_ = false;
    TimePoint told_ = TimePoint::min();
    TransferProgress progress_;
};

} // namespace rest
