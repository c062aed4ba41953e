#pragma once

#include <condition_variable>
#include <list>
#include <mutex>
#include <thread>
#include <vector>

#include <httplib.h>

namespace simulator
{

/// The threads of the HTTP server, of which each open connection occupies one. There are as many as were ever needed at
/// once, up to a limit; a connection beyond it waits for another one's end.
class Workers final : public httplib::TaskQueue
{
public:
    explicit Workers(std::size_t limit) : limit_(limit) {}

    void enqueue(std::function<void()> task) override;
    void shutdown() override;

private:
    void work();

    std::size_t const limit_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::list<std::function<void()>> tasks_;
    std::vector<std::thread> threads_;
    std::size_t idle_ = 0;
    bool isOver_ = false;
};

} // namespace simulator
