#include <platform/threading/Channel.h>

#include <exception>

#include <QDebug>

namespace threading::impl
{

ChannelBase::~ChannelBase() = default;

void ChannelBase::attach(std::function<void()> listener)
{
    {
        std::lock_guard const lock(mutex_);
        if (!isFinished())
        {
            listeners_.push_back(std::move(listener));
            return;
        }
    }
    listener();
}

void ChannelBase::onCancel(std::function<void()> handler)
{
    {
        std::lock_guard const lock(mutex_);
        if (!isGivenUp_)
        {
            // What is replaced, or comes too late, is destroyed after the lock is released.
            if (!isClaimed_)
            {
                cancelHandler_.swap(handler);
            }
            return;
        }
    }
    handler();
}

SharedStateSignals* ChannelBase::signalObject()
{
    std::lock_guard const lock(mutex_);
    if (!signals_)
    {
        signals_ = std::make_unique<SharedStateSignals>();
        signals_->moveToThread(nullptr);
    }
    return signals_.get();
}

bool ChannelBase::claim()
{
    std::lock_guard const lock(mutex_);
    return !std::exchange(isClaimed_, true);
}

bool ChannelBase::claimForConsumer(std::function<void()>& handler)
{
    std::lock_guard const lock(mutex_);
    if (std::exchange(isClaimed_, true))
    {
        return false;
    }
    isGivenUp_ = true;
    handler.swap(cancelHandler_);
    return true;
}

void ChannelBase::announce()
{
    std::vector<std::function<void()>> listeners;
    std::function<void()> unusedHandler;
    SharedStateSignals* signalObject = nullptr;
    {
        std::lock_guard const lock(mutex_);
        listeners.swap(listeners_);
        unusedHandler.swap(cancelHandler_);
        signalObject = signals_.get();
    }
    if (signalObject != nullptr)
    {
        if (isCanceled())
        {
            Q_EMIT signalObject->canceled();
        }
        Q_EMIT signalObject->finished();
    }
    for (auto& listener : listeners)
    {
        std::exchange(listener, nullptr)();
    }
}

void ChannelBase::announceWaiting()
{
    std::unique_lock lock(mutex_);
    SharedStateSignals* const signalObject = signals_.get();
    lock.unlock();
    if (signalObject != nullptr)
    {
        Q_EMIT signalObject->aboutToStartWaiting();
    }
}

std::function<void()> inThreadOf(QObject* context, std::function<void()> step)
{
    // A connection is the one thing of Qt's that may meet the end of its receiver on another thread.
    auto const trigger = std::make_shared<SharedStateSignals>();
    trigger->moveToThread(nullptr);
    if (context != nullptr)
    {
        QObject::connect(trigger.get(), &SharedStateSignals::finished, context, std::move(step), Qt::QueuedConnection);
    }
    return [trigger] { Q_EMIT trigger->finished(); };
}

void logException() noexcept
{
    try
    {
        throw;
    }
    catch (std::exception const& exception)
    {
        qWarning() << "A continuation has failed:" << exception.what();
    }
    catch (...)
    {
        qWarning() << "A continuation has failed.";
    }
}

} // namespace threading::impl
