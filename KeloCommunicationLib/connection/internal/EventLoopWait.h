#pragma once

#include <QCoreApplication>
#include <QEventLoop>

#include <KeloCommunicationLib/connection/internal/PlatformExtras.h>
#include <platform/threading/Future.h>

namespace KeloCommunicationLib::internal
{

/// Waits until the future is finished, cancelled included, while the calling thread goes on with its events. Without an
/// application object, or on a thread whose work the future may depend on, it waits as `Future::wait` does.
template <class T>
void waitWithEventLoop(threading::Future<T> const& future)
{
    if (QCoreApplication::instance() == nullptr || isThreadOfPlatform())
    {
        future.wait();
        return;
    }
    QEventLoop loop;
    future.then(&loop, [&loop](threading::Future<T> const&) { loop.quit(); });
    if (!future.isFinished())
    {
        loop.exec();
    }
    // A quitting application ends all loops at once, but the answer is still owed to the caller.
    while (!future.isFinished())
    {
        loop.processEvents(QEventLoop::WaitForMoreEvents);
    }
}

} // namespace KeloCommunicationLib::internal
