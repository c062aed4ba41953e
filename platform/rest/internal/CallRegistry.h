#pragma once

#include <memory>
#include <mutex>
#include <thread>
#include <unordered_set>
#include <utility>
#include <vector>

#include <platform/rest/internal/Call.h>
#include <platform/threading/Future.h>

namespace rest
{

/// The calls of a session that have not ended, and the threads that are ending or reporting some right now. Whoever
/// takes a call out ends it; nobody else does.
class CallRegistry
{
public:
    /// While it exists the calling thread counts as one that is busy with calls of the session: it may run the host's
    /// code for them.
    class Completion
    {
    public:
        explicit Completion(CallRegistry* registry) : registry_(registry) {}

        Completion(Completion&& other) noexcept : registry_(std::exchange(other.registry_, nullptr)) {}

        Completion& operator=(Completion&&) = delete;

        ~Completion()
        {
            if (registry_ != nullptr)
            {
                registry_->leave();
            }
        }

        explicit operator bool() const { return registry_ != nullptr; }

    private:
        CallRegistry* registry_;
    };

    void open();
    bool isOpen() const;
    /// False when closed.
    bool add(std::shared_ptr<Call> const& call);
    /// Takes a call out to end it; false if another has done so.
    Completion take(std::shared_ptr<Call> const& call);
    /// Keeps a call that has not ended from doing so unnoticed by `awaitOtherThreads`; false if it has ended.
    Completion visit(std::shared_ptr<Call> const& call);
    /// Takes a call out that its consumer has ended; false if another has done so.
    bool remove(std::shared_ptr<Call> const& call);
    /// Takes all calls out to end them and lets no more in.
    std::pair<Completion, std::vector<std::shared_ptr<Call>>> close();
    /// Returns once no other thread is busy with calls of the session. On a thread that drives futures, they go on
    /// meanwhile.
    void awaitOtherThreads();

private:
    struct Waiter
    {
        std::thread::id thread;
        threading::Promise<void> promise;
    };

    Completion enter();
    void leave();
    bool othersThan(std::thread::id thread) const;

    mutable std::mutex mutex_;
    bool isOpen_ = false;
    std::unordered_set<std::shared_ptr<Call>> pending_;
    std::vector<std::pair<std::thread::id, int>> completing_;
    std::vector<Waiter> waiters_;
};

} // namespace rest
