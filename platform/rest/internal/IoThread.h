#pragma once

#include <atomic>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

#include <platform/rest/internal/Call.h>
#include <platform/rest/internal/TransferLoop.h>
#include <platform/threading/WaitDriver.h>

namespace rest
{

/// The one thread on which all exchanges of the process run. Made with the first request; at the end of the process it
/// cancels what is pending and stops. While it has nothing to do it is parked, and a thread that waits for a call of
/// its own may do the work itself: waking one thread to be woken by it costs more than a whole exchange on a fast
/// network.
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
    /// As `threading::WaitDriver` promises them: the calling thread does the work of the parked I/O thread.
    bool takeOver();
    void lendUntil(std::function<bool()> const& done, threading::WaitDriver::Deadline deadline);
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
        std::thread::id sender;
    };

    IoThread();
    void run();
    /// Waits until there is work that no other thread does.
    void park();
    bool canBeTakenOver() const;
    static void offer();
    void handBack();
    /// One round of work: either one completion, or the network.
    void step(threading::WaitDriver::Deadline deadline);
    /// True if there was something to tell.
    bool tellProgress();
    void readMail();
    void sleep(threading::WaitDriver::Deadline deadline);
    void cancelAll();
    bool isLentTo(std::thread::id thread);
    bool post(Order order, std::shared_ptr<Call> const& call);

    std::mutex mutex_;
    std::condition_variable work_;
    std::condition_variable ended_;
    std::vector<Mail> mailbox_;
    bool isAsleep_ = false;
    bool mustLookUp_ = false; ///< somebody wants `driveUntil` to look at its condition before it sleeps
    bool isParked_ = false;
    bool isLent_ = false;
    bool mustHandBack_ = false; ///< another thread than the lender has made a call
    std::thread::id lender_;
    /// The last lender is expected to wait for its next call, too, and is not disturbed by this thread's waking up.
    bool expectsLender_ = false;
    std::thread::id lastLender_;
    unsigned lendings_ = 0;
    bool hasEnded_ = false;
    std::atomic<bool> isStopping_{false};

    std::shared_ptr<threading::WaitDriver> const driver_;
    std::vector<Mail> mailInHand_;
    TransferLoop loop_;
    std::thread thread_;
};

} // namespace rest
