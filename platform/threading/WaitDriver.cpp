#include <platform/threading/WaitDriver.h>

#include <utility>

namespace threading
{

namespace
{

thread_local std::shared_ptr<WaitDriver> driverOfThisThread;

} // namespace

WaitDriver::~WaitDriver() = default;

std::shared_ptr<WaitDriver> WaitDriver::current()
{
    return driverOfThisThread;
}

void WaitDriver::install(std::shared_ptr<WaitDriver> driver)
{
    driverOfThisThread = std::move(driver);
}

} // namespace threading
