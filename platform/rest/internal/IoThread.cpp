#include <platform/rest/internal/IoThread.h>

#include <utility>

#include <platform/rest/internal/Session.h>

namespace rest
{

namespace
{

// How long the end of the process waits for a continuation that still runs on the I/O thread or on a worker.
constexpr std::chrono::seconds patienceAtExit{2};

// Reading less than this takes no longer than waking another thread up for it.
constexpr qsizetype largeBody = qsizetype(64) * 1024;

constexpr std::size_t readerLimit = 2;
constexpr std::size_t proxyFinderLimit = 2;

class IoWaitDriver final : public threading::WaitDriver
{
public:
    explicit IoWaitDriver(IoThread& thread) : thread_(thread) {}

    void driveUntil(std::function<bool()> const& done, Deadline deadline) override
    {
        thread_.driveUntil(done, deadline);
    }

    void wake() override { thread_.wake(); }

private:
    IoThread& thread_;
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

IoThread::IoThread()
    : readers_(std::make_shared<Workers>(readerLimit)),
      proxyFinders_(std::make_shared<Workers>(proxyFinderLimit)),
      loop_([this](QByteArray const& origin, QUrl const& url) { findProxy(origin, url); }),
      thread_(startThread([this] { run(); }))
{
    if (!thread_)
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
    call->isAborted = true;
    post(Order::Abort, call);
}

bool IoThread::post(Order order, std::shared_ptr<Call> const& call)
{
    bool mustWake = false;
    {
        std::lock_guard const lock(mutex_);
        if (isStopping_)
        {
            return false;
        }
        mailbox_.push_back({order, call});
        mustWake = std::exchange(isAsleep_, false);
    }
    if (mustWake)
    {
        loop_.wake();
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
    threading::WaitDriver::install(std::make_shared<IoWaitDriver>(*this));
    while (!isStopping_)
    {
        step(std::nullopt);
    }
    cancelAll();
    threading::WaitDriver::install(nullptr);
    std::lock_guard const lock(mutex_);
    hasEnded_ = true;
    ended_.notify_all();
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
        complete(std::move(*finished));
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

void IoThread::complete(TransferLoop::Finished finished)
{
    bool const takesLong = finished.outcome.body.size() > largeBody || finished.call->request().isDownload;
    if (!takesLong)
    {
        finished.call->session()->complete(finished.call, std::move(finished.outcome));
        return;
    }
    auto const shared = std::make_shared<TransferLoop::Finished>(std::move(finished));
    auto const completion = [this, shared]
    {
        std::shared_ptr<Session> const& session = shared->call->session();
        isStopping_ ? session->cancel(shared->call) : session->complete(shared->call, std::move(shared->outcome));
    };
    if (!readers_->post(completion))
    {
        completion();
    }
}

void IoThread::findProxy(QByteArray const& origin, QUrl const& url)
{
    auto const find = [this, origin, url]
    {
        Proxy proxy = systemProxyFor(url);
        {
            std::lock_guard const lock(mutex_);
            foundProxies_.push_back({origin, std::move(proxy)});
        }
        wake();
    };
    if (!proxyFinders_->post(find))
    {
        find();
    }
}

void IoThread::readMail()
{
    std::vector<FoundProxy> proxies;
    {
        std::lock_guard const lock(mutex_);
        mailInHand_.swap(mailbox_);
        proxies.swap(foundProxies_);
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
    for (FoundProxy& found : proxies)
    {
        loop_.setProxy(found.origin, std::move(found.proxy));
    }
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

void IoThread::stop()
{
    {
        std::lock_guard const lock(mutex_);
        isStopping_ = true;
    }
    bool const isOwn = thread_ && thread_->get_id() == std::this_thread::get_id();
    if (isOwn)
    {
        cancelAll();
    }
    wake();
    {
        std::unique_lock lock(mutex_);
        bool const hasEnded = !isOwn && ended_.wait_for(lock, patienceAtExit, [this] { return hasEnded_; });
        lock.unlock();
        if (thread_ && thread_->joinable())
        {
            hasEnded ? thread_->join() : thread_->detach();
        }
    }
    readers_->stop(patienceAtExit);
    proxyFinders_->stop(std::chrono::milliseconds(0));
}

} // namespace rest
