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

    /// The driver of the calling thread, or null.
    static std::shared_ptr<WaitDriver> current();
    /// Installs the calling thread's driver; null takes it away.
    static void install(std::shared_ptr<WaitDriver> driver);
};

} // namespace threading
