#include <platform/rest/internal/CallRegistry.h>

#include <algorithm>
#include <iterator>

namespace rest
{

void CallRegistry::open()
{
    std::lock_guard const lock(mutex_);
    isOpen_ = true;
}

bool CallRegistry::isOpen() const
{
    std::lock_guard const lock(mutex_);
    return isOpen_;
}

bool CallRegistry::add(std::shared_ptr<Call> const& call)
{
    std::lock_guard const lock(mutex_);
    return isOpen_ && pending_.insert(call).second;
}

CallRegistry::Completion CallRegistry::take(std::shared_ptr<Call> const& call)
{
    std::lock_guard const lock(mutex_);
    return pending_.erase(call) == 1 ? enter() : Completion(nullptr);
}

CallRegistry::Completion CallRegistry::visit(std::shared_ptr<Call> const& call)
{
    std::lock_guard const lock(mutex_);
    return pending_.count(call) == 1 ? enter() : Completion(nullptr);
}

bool CallRegistry::remove(std::shared_ptr<Call> const& call)
{
    std::lock_guard const lock(mutex_);
    return pending_.erase(call) == 1;
}

std::pair<CallRegistry::Completion, std::vector<std::shared_ptr<Call>>> CallRegistry::close()
{
    std::lock_guard const lock(mutex_);
    isOpen_ = false;
    std::vector<std::shared_ptr<Call>> calls(pending_.begin(), pending_.end());
    pending_.clear();
    return {enter(), std::move(calls)};
}

void CallRegistry::awaitOtherThreads()
{
    threading::Future<void> idle;
    {
        std::lock_guard const lock(mutex_);
        auto const self = std::this_thread::get_id();
        if (!othersThan(self))
        {
            return;
        }
        idle = waiters_.emplace_back(Waiter{self, {}}).promise.future();
    }
    idle.wait();
}

CallRegistry::Completion CallRegistry::enter()
{
    auto const self = std::this_thread::get_id();
    auto const entry = std::find_if(
        completing_.begin(), completing_.end(), [self](auto const& candidate) { return candidate.first == self; });
    if (entry != completing_.end())
    {
        ++entry->second;
    }
    else
    {
        completing_.emplace_back(self, 1);
    }
    return Completion(this);
}

void CallRegistry::leave()
{
    // Declared before the lock: the promises are kept after it is released.
    std::vector<Waiter> served;
    std::lock_guard const lock(mutex_);
    auto const self = std::this_thread::get_id();
    auto const entry = std::find_if(
        completing_.begin(), completing_.end(), [self](auto const& candidate) { return candidate.first == self; });
    if (--entry->second == 0)
    {
        completing_.erase(entry);
    }
    auto const waiting = std::stable_partition(
        waiters_.begin(), waiters_.end(), [this](Waiter const& waiter) { return othersThan(waiter.thread); });
    std::move(waiting, waiters_.end(), std::back_inserter(served));
    waiters_.erase(waiting, waiters_.end());
}

bool CallRegistry::othersThan(std::thread::id thread) const
{
    return std::any_of(
        completing_.begin(), completing_.end(), [thread](auto const& entry) { return entry.first != thread; });
}

} // namespace rest
