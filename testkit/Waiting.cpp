#include <testkit/Waiting.h>

#include <thread>

#include <QCoreApplication>

namespace testkit
{

bool comesTrue(std::function<bool()> const& condition, std::chrono::milliseconds limit)
{
    auto const deadline = std::chrono::steady_clock::now() + limit;
    while (!condition())
    {
        if (std::chrono::steady_clock::now() > deadline)
        {
            return false;
        }
        QCoreApplication::processEvents();
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

} // namespace testkit
