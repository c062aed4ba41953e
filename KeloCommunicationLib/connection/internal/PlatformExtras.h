#pragma once

#include <chrono>
#include <optional>
#include <utility>

#include <QByteArray>

#include <platform/threading/Future.h>

#if __has_include(<platform/threading/WaitDriver.h>)
#include <platform/threading/WaitDriver.h>
#else
#include <QCoreApplication>
#include <QThread>
#endif

/// What a platform may have beyond what the library needs, and what the library does without it. Nothing else asks.
namespace KeloCommunicationLib::internal
{

/// The value of a finished future: moved out if the platform knows how to, and else copied.
template <class T>
T taken(threading::Future<T> finished)
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

/// The text of a JSON reply; empty if the platform keeps only the document.
template <class Reply>
decltype(auto) textOf(Reply const& reply)
{
    if constexpr (requires { reply.text(); })
    {
        return reply.text();
    }
    else
    {
        return QByteArray();
    }
}

/// How long the service asks to be left alone; nothing if the platform does not tell.
template <class Status>
std::optional<std::chrono::seconds> retryAfterOf(Status const& status)
{
    if constexpr (requires { status.retryAfter; })
    {
        return status.retryAfter;
    }
    else
    {
        return std::nullopt;
    }
}

/// True on a thread that must not run an event loop while it waits for a future, because the platform finishes futures
/// there.
inline bool isThreadOfPlatform()
{
#if __has_include(<platform/threading/WaitDriver.h>)
    return threading::WaitDriver::current() != nullptr;
#else
    // Nobody tells. A thread without a running event loop does not miss one, but for the application's while it starts.
    auto const* const thread = QThread::currentThread();
    return thread->loopLevel() == 0 && thread != QCoreApplication::instance()->thread();
#endif
}

} // namespace KeloCommunicationLib::internal
