#include <platform/threading/WaitDriver.h>

#include <atomic>
#include <utility>

namespace threading
{

namespace
{

thread_local std::shared_ptr<WaitDriver> driverOfThisThread;
std::atomic<WaitDriver*> commonDriver{nullptr};

} // namespace

WaitDriver::~WaitDriver() = default;

bool WaitDriver::takeOver()
{
    return false;
}

void WaitDriver::lendUntil(std::function<bool()> const&, Deadline) {}

std::shared_ptr<WaitDriver> WaitDriver::current()
{
    return driverOfThisThread;
}

void WaitDriver::install(std::shared_ptr<WaitDriver> driver)
{
    driverOfThisThread = std::move(driver);
}

WaitDriver* WaitDriver::common()
{
    return commonDriver.load(std::memory_order_acquire);
}

void WaitDriver::offer(WaitDriver* driver)
{
    commonDriver.store(driver, std::memory_order_release);
}

} // namespace threading
