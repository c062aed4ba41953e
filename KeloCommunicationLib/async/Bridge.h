#pragma once

#include <exception>
#include <functional>
#include <mutex>
#include <utility>

#include <QDebug>

#include <platform/threading/Future.h>

/// What the bridges to other kinds of asynchronous code have in common. They rest on what every platform's futures can
/// do, so that they work with a host's own.
namespace KeloCommunicationLib::internal
{

/// The value of a finished future that was not cancelled: moved out if the platform knows how to, and else copied.
template <class T>
T valueOf(threading::Future<T> finished)
{
    if constexpr (requires { std::move(finished).take(); })
    {
        return std::move(finished).take();
    }
    else
    {
        return finished.get();
    }
}

/// Logs the exception that is being handled, with what it has ended in front.
inline void logException(char const* ended) noexcept
{
    // Without the place in the sources, which would be one in this header.
    QMessageLogger const log(nullptr, 0, nullptr);
    try
    {
        throw;
    }
    catch (std::exception const& exception)
    {
        log.warning() << ended << exception.what();
    }
    catch (...)
    {
        log.warning() << ended << "unknown";
    }
}

/// Hands a cancellation on to the future that is waited for at the time. May be used from any thread.
class CancelRelay
{
public:
    /// Cancelling reaches `future` from now on, and at once if it has happened already.
    template <class T>
    void reach(threading::Future<T> future)
    {
        std::function<void()> target = [future = std::move(future)] { future.cancel(); };
        {
            std::lock_guard const lock(mutex_);
            if (!isCanceled_)
            {
                target_.swap(target);
                return;
            }
        }
        target();
    }

    /// Lets go of the future, which would else count as asked for by somebody and have to be copied from.
    void forget()
    {
        std::function<void()> last;
        std::lock_guard const lock(mutex_);
        last.swap(target_);
    }

    void cancel()
    {
        std::function<void()> target;
        {
            std::lock_guard const lock(mutex_);
            isCanceled_ = true;
            target.swap(target_);
        }
        if (target)
        {
            target();
        }
    }

private:
    std::mutex mutex_;
    std::function<void()> target_;
    bool isCanceled_ = false;
};

} // namespace KeloCommunicationLib::internal
