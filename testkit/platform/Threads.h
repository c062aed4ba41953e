#pragma once

#include <memory>
#include <thread>
#include <type_traits>

#include <QCoreApplication>
#include <QThread>

#include <platform/threading/Future.h>

#include "testkit/platform/Evidence.h"

namespace platformcheck
{

/// Waits for the future, and fails if that takes too long.
template <class T>
void requireFinished(threading::Future<T> const& future)
{
    require(future.waitFor(patience()), text("a future is not finished after ", patience().count(), " ms"));
    require(future.isFinished(), "waitFor() returns true, but isFinished() false");
}

template <class T>
void requireCanceled(threading::Future<T> const& future)
{
    requireFinished(future);
    require(future.isCanceled(), "a future that should be cancelled has a value");
    if constexpr (!std::is_void_v<T>)
    {
        require(future.get() == T(), "get() of a cancelled future is no default-constructed value");
    }
}

/// The value of a future that should have one, now or soon.
template <class T>
T valueOf(threading::Future<T> const& future)
{
    requireFinished(future);
    require(!future.isCanceled(), "a future that should have a value is cancelled");
    return future.get();
}

/// Makes the call on a thread of its own and waits for its end. It hangs, and so does the row, if the caller holds a
/// lock that the call needs, be it a recursive one.
template <class Call>
void elsewhere(Call const& call)
{
    std::thread(call).join();
}

/// The application object that Qt's event loops need, unless the row was started with one.
class Application
{
private:
    int argumentCount_ = 0;
    std::unique_ptr<QCoreApplication> own_ =
        QCoreApplication::instance() == nullptr ? std::make_unique<QCoreApplication>(argumentCount_, nullptr) : nullptr;
};

/// A thread with an event loop, and an object that lives in it.
class LoopThread
{
public:
    LoopThread()
    {
        context_->moveToThread(&thread_);
        thread_.start();
    }

    LoopThread(LoopThread const&) = delete;
    LoopThread& operator=(LoopThread const&) = delete;

    ~LoopThread()
    {
        thread_.quit();
        thread_.wait();
    }

    QObject* context() const { return context_.get(); }

    QThread* thread() { return &thread_; }

private:
    Application application_;
    QThread thread_;
    std::unique_ptr<QObject> context_ = std::make_unique<QObject>();
};

} // namespace platformcheck
