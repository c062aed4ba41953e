#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

#include <platform/threading/WaitDriver.h>

namespace rest
{

/// Starts a thread that leaves all signals to the host's threads, except those that a fault of its own raises; nothing
/// if the system has none to give.
std::optional<std::thread> startThread(std::function<void()> run);

/// A few threads for what would hold up the I/O thread. They are started as they are needed and live until `stop`. A
/// job that waits for a future lets its thread go on with other jobs meanwhile, so that no number of waiting jobs can
/// bring the others to a halt.
class Workers : public std::enable_shared_from_this<Workers>
{
public:
    using Job = std::function<void()>;

    explicit Workers(std::size_t threadLimit);
    Workers(Workers const&) = delete;
    Workers& operator=(Workers const&) = delete;
    ~Workers();

    /// Has the job run on one of the threads; false after `stop`, or when there is no thread to be had.
    bool post(Job job);
    /// Lets the threads finish what was posted and waits for them, but not for longer than `patience`. On one of them
    /// it runs what was posted itself.
    void stop(std::chrono::milliseconds patience);

private:
    class Driver;

    void run();
    void driveUntil(std::function<bool()> const& done, threading::WaitDriver::Deadline deadline);
    void wake();
    /// Runs the first job, if there is one, with the lock released.
    bool runOne(std::unique_lock<std::mutex>& lock);
    bool hasThreadForMore();

    std::size_t const threadLimit_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<Job> jobs_;
    std::vector<std::thread> threads_;
    std::size_t idle_ = 0;
    std::size_t ended_ = 0;
    bool isStopping_ = false;
};

} // namespace rest
