#include <platform/rest/internal/Workers.h>

#include <algorithm>
#include <system_error>

#include <platform/rest/internal/System.h>

namespace rest
{

std::optional<std::thread> startThread(std::function<void()> run)
{
    try
    {
        return system::startThread(std::move(run));
    }
    catch (std::system_error const&)
    {
        return std::nullopt;
    }
}

class Workers::Driver final : public threading::WaitDriver
{
public:
    explicit Driver(std::shared_ptr<Workers> workers) : workers_(std::move(workers)) {}

    void driveUntil(std::function<bool()> const& done, Deadline deadline) override
    {
        workers_->driveUntil(done, deadline);
    }

    void wake() override { workers_->wake(); }

private:
    std::shared_ptr<Workers> const workers_;
};

Workers::Workers(std::size_t threadLimit) : threadLimit_(threadLimit) {}

Workers::~Workers() = default;

bool Workers::post(Job job)
{
    {
        std::lock_guard const lock(mutex_);
        if (isStopping_ || !hasThreadForMore())
        {
            return false;
        }
        jobs_.push_back(std::move(job));
    }
    changed_.notify_one();
    return true;
}

bool Workers::hasThreadForMore()
{
    if (idle_ <= jobs_.size() && threads_.size() < threadLimit_)
    {
        if (auto thread = startThread([self = shared_from_this()] { self->run(); }))
        {
            threads_.push_back(std::move(*thread));
        }
    }
    return !threads_.empty();
}

void Workers::run()
{
    threading::WaitDriver::install(std::make_shared<Driver>(shared_from_this()));
    std::unique_lock lock(mutex_);
    while (runOne(lock) || !isStopping_)
    {
        if (jobs_.empty() && !isStopping_)
        {
            ++idle_;
            changed_.wait(lock);
            --idle_;
        }
    }
    ++ended_;
    changed_.notify_all();
    lock.unlock();
    threading::WaitDriver::install(nullptr);
}

bool Workers::runOne(std::unique_lock<std::mutex>& lock)
{
    if (jobs_.empty())
    {
        return false;
    }
    {
        Job const job = std::move(jobs_.front());
        jobs_.pop_front();
        lock.unlock();
        job();
    }
    lock.lock();
    return true;
}

void Workers::driveUntil(std::function<bool()> const& done, threading::WaitDriver::Deadline deadline)
{
    std::unique_lock lock(mutex_);
    while (!done() && (!deadline || std::chrono::steady_clock::now() < *deadline))
    {
        if (runOne(lock))
        {
            continue;
        }
        if (deadline)
        {
            changed_.wait_until(lock, *deadline);
        }
        else
        {
            changed_.wait(lock);
        }
    }
}

void Workers::wake()
{
    // Whoever has looked at its condition in vain waits by now.
    {
        std::lock_guard const lock(mutex_);
    }
    changed_.notify_all();
}

void Workers::stop(std::chrono::milliseconds patience)
{
    std::unique_lock lock(mutex_);
    isStopping_ = true;
    changed_.notify_all();
    auto const self = std::this_thread::get_id();
    bool const isOwn = std::any_of(
        threads_.begin(), threads_.end(), [self](std::thread const& thread) { return thread.get_id() == self; });
    while (isOwn && runOne(lock))
    {
    }
    std::size_t const others = threads_.size() - (isOwn ? 1 : 0);
    bool const haveEnded = changed_.wait_for(lock, patience, [&] { return ended_ == others; });
    lock.unlock();
    for (std::thread& thread : threads_)
    {
        haveEnded&& thread.get_id() != self ? thread.join() : thread.detach();
    }
}

} // namespace rest
