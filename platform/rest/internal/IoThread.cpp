#include <platform/rest/internal/IoThread.h>

#include <csignal>
#include <system_error>

#include <platform/rest/internal/Session.h>

namespace rest
{

namespace
{

// How long the end of the process waits for a continuation that still runs on the I/O thread.
constexpr std::chrono::seconds patienceAtExit{2};

// How long new work is left to the thread that sent it before this thread begins with it.
constexpr std::chrono::microseconds timeToTakeOver{5};

// How long a thread that has waited for one call after the other is expected to go on so. Should it send a call without
// waiting for it, this thread begins that one so much later.
constexpr std::chrono::milliseconds lenderExpected{1};

class IoWaitDriver final : public threading::WaitDriver
{
public:
    explicit IoWaitDriver(IoThread& thread) : thread_(thread) {}

    void driveUntil(std::function<bool()> const& done, Deadline deadline) override
    {
        thread_.driveUntil(done, deadline);
    }

    void wake() override { thread_.wake(); }

    bool takeOver() override { return thread_.takeOver(); }

    void lendUntil(std::function<bool()> const& done, Deadline deadline) override { thread_.lendUntil(done, deadline); }

private:
    IoThread& thread_;
};

// Signals are the host's business, and a broken pipe is an error of one transfer. Those that a fault raises stay with
// the faulty thread.
class SignalsBlocked
{
public:
    SignalsBlocked()
    {
        sigset_t blocked;
        sigfillset(&blocked);
        for (int const fault : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT, SIGTRAP, SIGSYS})
        {
            sigdelset(&blocked, fault);
        }
        pthread_sigmask(SIG_SETMASK, &blocked, &former_);
    }

    SignalsBlocked(SignalsBlocked const&) = delete;
    SignalsBlocked& operator=(SignalsBlocked const&) = delete;

    ~SignalsBlocked() { pthread_sigmask(SIG_SETMASK, &former_, nullptr); }

private:
    sigset_t former_{};
};

} // namespace

IoThread& IoThread::instance()
{
    // libcurl, and with it OpenSSL, is initialised when the thread is made, before the stopper's destructor is
    // registered. So OpenSSL's own exit handlers run after the thread has stopped.
    static IoThread& thread = *new IoThread();
    static struct Stopper
    {
        ~Stopper() { thread.stop(); }
    } const stopper;
    return thread;
}

IoThread::IoThread() : driver_(std::make_shared<IoWaitDriver>(*this))
{
    threading::WaitDriver::offer(driver_.get());
    SignalsBlocked const inheritedByTheThread;
    try
    {
        thread_ = std::thread([this] { run(); });
    }
    catch (std::system_error const&)
    {
        isStopping_ = true;
        hasEnded_ = true;
    }
}

bool IoThread::submit(std::shared_ptr<Call> const& call)
{
    return post(Order::Start, call);
}

void IoThread::abort(std::shared_ptr<Call> const& call)
{
    post(Order::Abort, call);
}

bool IoThread::post(Order order, std::shared_ptr<Call> const& call)
{
    auto const sender = std::this_thread::get_id();
    bool mustWake = false;
    bool mustUnpark = false;
    {
        std::lock_guard const lock(mutex_);
        if (isStopping_)
        {
            return false;
        }
        mailbox_.push_back({order, call, sender});
        mustHandBack_ = mustHandBack_ || sender != lender_;
        mustWake = std::exchange(isAsleep_, false);
        mustUnpark = isParked_ && !isLent_ && !(expectsLender_ && sender == lastLender_);
    }
    if (mustWake)
    {
        loop_.wake();
    }
    if (mustUnpark)
    {
        work_.notify_one();
    }
    return true;
}

void IoThread::wake()
{
    bool mustWake = false;
    {
        std::lock_guard const lock(mutex_);
        mustLookUp_ = true;
        mustWake = std::exchange(isAsleep_, false);
    }
    if (mustWake)
    {
        loop_.wake();
    }
}

void IoThread::run()
{
    threading::WaitDriver::install(driver_);
    park();
    while (!isStopping_)
    {
        step(std::nullopt);
        park();
    }
    cancelAll();
    threading::WaitDriver::install(nullptr);
    std::lock_guard const lock(mutex_);
    hasEnded_ = true;
    ended_.notify_all();
}

void IoThread::park()
{
    std::unique_lock lock(mutex_);
    bool wasOffered = false;
    while (!isStopping_)
    {
        bool const hasWork = !isLent_ && (!mailbox_.empty() || !loop_.isIdle());
        if (hasWork && (wasOffered || !canBeTakenOver()))
        {
            break;
        }
        isParked_ = true;
        if (hasWork)
        {
            lock.unlock();
            offer();
            lock.lock();
        }
        else if (expectsLender_)
        {
            unsigned const lendings = lendings_;
            work_.wait_for(lock, lenderExpected);
            expectsLender_ = isLent_ || lendings != lendings_;
        }
        else
        {
            work_.wait(lock);
        }
        wasOffered = hasWork;
    }
    isParked_ = false;
    expectsLender_ = false;
}

bool IoThread::canBeTakenOver() const
{
    // A continuation on this very thread has sent what is in the mailbox, or transfers are in flight.
    return loop_.isIdle() && mailbox_.front().sender != std::this_thread::get_id();
}

void IoThread::offer()
{
    // A sender that is going to wait does so at once; sleeping or yielding would take longer than this.
    for (auto const end = Clock::now() + timeToTakeOver; Clock::now() < end;)
    {
    }
}

bool IoThread::takeOver()
{
    auto const thisThread = std::this_thread::get_id();
    std::lock_guard const lock(mutex_);
    // Parked, it has no transfers; what there is to do is in the mailbox. Of two calls the thread would wait for one
    // and run the other's continuations meanwhile, which may rely on the wait to end first.
    if (isStopping_ || !isParked_ || isLent_ || mailbox_.size() != 1 || mailbox_.front().sender != thisThread)
    {
        return false;
    }
    isLent_ = true;
    mustHandBack_ = false;
    lender_ = thisThread;
    return true;
}

void IoThread::lendUntil(std::function<bool()> const& done, threading::WaitDriver::Deadline deadline)
{
    threading::WaitDriver::install(driver_);
    auto const mayStay = [this]
    {
        std::lock_guard const lock(mutex_);
        return !mustHandBack_ && !isStopping_;
    };
    while (!done() && (!deadline || Clock::now() < *deadline) && mayStay())
    {
        step(deadline);
    }
    threading::WaitDriver::install(nullptr);
    handBack();
}

void IoThread::handBack()
{
    bool mustUnpark = false;
    {
        std::lock_guard const lock(mutex_);
        isLent_ = false;
        lastLender_ = std::exchange(lender_, std::thread::id());
        ++lendings_;
        // This thread is told when it begins to expect a lender, for it must then not sleep for longer.
        mustUnpark = isStopping_ || !mailbox_.empty() || !loop_.isIdle() || !std::exchange(expectsLender_, true);
    }
    if (mustUnpark)
    {
        work_.notify_one();
    }
}

void IoThread::driveUntil(std::function<bool()> const& done, threading::WaitDriver::Deadline deadline)
{
    while (!done() && (!deadline || Clock::now() < *deadline))
    {
        if (isStopping_)
        {
            cancelAll();
        }
        step(deadline);
    }
}

void IoThread::step(threading::WaitDriver::Deadline deadline)
{
    readMail();
    // Taken out one by one: a continuation that waits runs further steps from in here.
    if (auto finished = loop_.takeFinished())
    {
        finished->call->session()->complete(finished->call, std::move(finished->outcome));
        return;
    }
    loop_.perform();
    if (!tellProgress() && !loop_.hasFinished())
    {
        sleep(deadline);
    }
}

bool IoThread::tellProgress()
{
    bool hasTold = false;
    while (auto const report = loop_.takeReport())
    {
        report->call->session()->report(report->call, report->progress);
        hasTold = true;
    }
    return hasTold;
}

void IoThread::readMail()
{
    {
        std::lock_guard const lock(mutex_);
        mailInHand_.swap(mailbox_);
    }
    for (Mail& mail : mailInHand_)
    {
        if (mail.order == Order::Start)
        {
            loop_.add(std::move(mail.call));
        }
        else
        {
            loop_.abort(*mail.call);
        }
    }
    mailInHand_.clear();
}

void IoThread::sleep(threading::WaitDriver::Deadline deadline)
{
    {
        std::lock_guard const lock(mutex_);
        if (!mailbox_.empty() || std::exchange(mustLookUp_, false))
        {
            return;
        }
        isAsleep_ = true;
    }
    loop_.sleep(deadline);
    std::lock_guard const lock(mutex_);
    isAsleep_ = false;
}

void IoThread::cancelAll()
{
    readMail();
    for (std::shared_ptr<Call> const& call : loop_.takeAll())
    {
        call->session()->cancel(call);
    }
}

bool IoThread::isLentTo(std::thread::id thread)
{
    std::lock_guard const lock(mutex_);
    return isLent_ && lender_ == thread;
}

void IoThread::stop()
{
    {
        std::lock_guard const lock(mutex_);
        isStopping_ = true;
    }
    if (!thread_.joinable())
    {
        return;
    }
    if (std::this_thread::get_id() == thread_.get_id())
    {
        thread_.detach();
        cancelAll();
        return;
    }
    if (isLentTo(std::this_thread::get_id()))
    {
        // The process was ended by a continuation on a thread that does the work; it does not come back to give it
        // back.
        cancelAll();
        handBack();
    }
    wake();
    work_.notify_one();
    std::unique_lock lock(mutex_);
    bool const ended = ended_.wait_for(lock, patienceAtExit, [this] { return hasEnded_; });
    lock.unlock();
    if (ended)
    {
        thread_.join();
    }
    else
    {
        thread_.detach();
    }
}

} // namespace rest
