#include "simulator/Workers.h"

namespace simulator
{

void Workers::enqueue(std::function<void()> task)
{
    std::lock_guard const lock(mutex_);
    tasks_.push_back(std::move(task));
    if (tasks_.size() > idle_ && threads_.size() < limit_)
    {
        threads_.emplace_back([this] { work(); });
    }
    changed_.notify_one();
}

void Workers::work()
{
    std::unique_lock lock(mutex_);
    while (true)
    {
        ++idle_;
        changed_.wait(lock, [this] { return !tasks_.empty() || isOver_; });
        --idle_;
        if (tasks_.empty())
        {
            return;
        }
        auto const task = std::move(tasks_.front());
        tasks_.pop_front();
        lock.unlock();
        task();
        lock.lock();
    }
}

void Workers::shutdown()
{
    std::unique_lock lock(mutex_);
    isOver_ = true;
    changed_.notify_all();
    lock.unlock();
    for (auto& thread : threads_)
    {
        thread.join();
    }
}

} // namespace simulator
