#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

#include <platform/threading/Export.h>

namespace threading
{

/// A thread on whose work other futures depend (an I/O thread) installs one for itself. A wait on such a thread then
/// keeps its work going instead of blocking it, so that waiting from a continuation cannot deadlock.
class PLATFORM_THREADING_EXPORT WaitDriver
{
public:
    using Deadline = std::optional<std::chrono::steady_clock::time_point>;

    WaitDriver() = default;
    WaitDriver(WaitDriver const&) = delete;
    WaitDriver& operator=(WaitDriver const&) = delete;
    virtual ~WaitDriver();

    /// Works on the calling thread until `done()` or the deadline; called only on the thread that installed the driver.
    virtual void driveUntil(std::function<bool()> const& done, Deadline deadline) = 0;
    /// Makes a running `driveUntil` look at its condition again; called from any thread.
    virtual void wake() = 0;

    /// A thread without a driver that is about to wait asks for the work, to do it itself instead of waiting for
    /// another thread to be woken. True only while nobody does the work and one call of this thread is all there is;
    /// `lendUntil` must follow.
    virtual bool takeOver();
    /// Works on the calling thread until `done()` or the deadline, or until others have work, too. Gives the work back.
    virtual void lendUntil(std::function<bool()> const& done, Deadline deadline);

    /// The driver of the calling thread, or null.
    static std::shared_ptr<WaitDriver> current();
    /// Installs the calling thread's driver; null takes it away.
    static void install(std::shared_ptr<WaitDriver> driver);

    /// The driver that asks threads without one of their own to lend themselves, or null. It is never destroyed.
    static WaitDriver* common();
    static void offer(WaitDriver* driver);
};

} // namespace threading
