#pragma once

#include <atomic>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

#include <platform/rest/internal/Call.h>
#include <platform/rest/internal/TransferLoop.h>
#include <platform/rest/internal/Workers.h>
#include <platform/threading/WaitDriver.h>

namespace rest
{

/// The one thread on which all exchanges of the process run. It moves bytes: replies whose reading takes long are
/// completed by a few workers beside it, and the system's proxies are asked for elsewhere, too. Made with the first
/// request; at the end of the process it cancels what is pending and stops.
class IoThread
{
public:
    /// Never destroyed, so that requests made during the end of the process find it stopped instead of gone.
    static IoThread& instance();

    IoThread(IoThread const&) = delete;
    IoThread& operator=(IoThread const&) = delete;
    ~IoThread() = delete;

    /// Hands a call over; false once the process ends.
    bool submit(std::shared_ptr<Call> const& call);
    /// Ends the call's transfer, if there is one. The call itself has been ended by the caller.
    void abort(std::shared_ptr<Call> const& call);
    /// Cancels everything, for good.
    void stop();

    /// Works on the I/O thread until `done()` or the deadline.
    void driveUntil(std::function<bool()> const& done, threading::WaitDriver::Deadline deadline);
    void wake();

private:
    enum class Order : int
    {
        Start,
        Abort
    };
    struct Mail
    {
        Order order;
        std::shared_ptr<Call> call;
    };
    struct FoundProxy
    {
        QByteArray origin;
        Proxy proxy;
    };

    IoThread();
    void run();
    /// One round of work: either one completion, or the network.
    void step(threading::WaitDriver::Deadline deadline);
    /// True if there was something to tell.
    bool tellProgress();
    void complete(TransferLoop::Finished finished);
    void findProxy(QByteArray const& origin, QUrl const& url);
    void readMail();
    void sleep(threading::WaitDriver::Deadline deadline);
    void cancelAll();
    bool post(Order order, std::shared_ptr<Call> const& call);

    std::mutex mutex_;
    std::condition_variable ended_;
    std::vector<Mail> mailbox_;
    std::vector<FoundProxy> foundProxies_;
    bool isAsleep_ = false;
    bool mustLookUp_ = false; ///< there is more than mail to look at before it sleeps
    bool hasEnded_ = false;
    std::atomic<bool> isStopping_{false};

    std::vector<Mail> mailInHand_;
    std::shared_ptr<Workers> const readers_;
    std::shared_ptr<Workers> const proxyFinders_;
    TransferLoop loop_;
    std::optional<std::thread> thread_;
};

} // namespace rest
