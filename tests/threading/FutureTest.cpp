// Futures and promises on one thread, and what continuations may be.
#include <memory>
#include <stdexcept>
#include <thread>
#include <tuple>
#include <utility>

#include <QCoreApplication>
#include <QThread>

#include <gmock/gmock.h>

#include <platform/threading/Future.h>
#include <tests/support/LogCapture.h>

namespace test
{

using namespace testkit;

namespace
{

using namespace std::chrono_literals;
using threading::Future;
using threading::makeReadyFuture;
using threading::Promise;
using threading::whenAll;

TEST(Future, finishesOnceWithAValueOrCanceled)
{
    Promise<int> promise;
    Future<int> const future = promise.future();
    EXPECT_FALSE(future.isFinished());
    EXPECT_FALSE(future.waitFor(0ms));
    EXPECT_TRUE(promise.setValue(3));
    EXPECT_FALSE(promise.setValue(4));
    promise.cancel();
    future.cancel();
    EXPECT_TRUE(future.isFinished());
    EXPECT_FALSE(future.isCanceled());
    EXPECT_EQ(future.get(), 3);

    Promise<int> other;
    Future<int> const canceled = other.future();
    canceled.cancel();
    EXPECT_FALSE(other.setValue(5));
    EXPECT_TRUE(canceled.isFinished());
    EXPECT_TRUE(canceled.isCanceled());
    EXPECT_EQ(canceled.get(), 0);
    EXPECT_TRUE(canceled.waitFor(std::chrono::milliseconds::max()));
    EXPECT_TRUE(Future<int>().isCanceled());
}

TEST(Future, droppedOrReplacedPromiseCancels)
{
    Future<int> future;
    {
        Promise<int> const promise;
        future = promise.future();
        EXPECT_FALSE(future.isFinished());
    }
    EXPECT_TRUE(future.isCanceled());

    Promise<int> promise;
    future = promise.future();
    Promise<int> moved = std::move(promise);
    EXPECT_FALSE(future.isFinished());
    moved = Promise<int>();
    EXPECT_TRUE(future.isCanceled());
}

TEST(Future, continuationsSeeTheValueOrTheFuture)
{
    Promise<int> promise;
    Promise<int> dropped;
    int values = 0;
    auto const doubled = promise.future().then(
        [&values](int const& value)
        {
            ++values;
            return 2 * value;
        });
    auto const text = doubled.then([](Future<int> const& future) { return std::to_string(future.get()); });
    auto const nothing = promise.future().then([](int const&) {});
    auto const skipped = dropped.future().then(
        [&values](int const& value)
        {
            ++values;
            return value;
        });
    auto const told = dropped.future().then([](Future<int> const& future) { return future.isCanceled(); });
    promise.setValue(21);
    dropped.cancel();
    EXPECT_EQ(doubled.get(), 42);
    EXPECT_EQ(text.get(), "42");
    EXPECT_TRUE(nothing.isFinished() && !nothing.isCanceled());
    EXPECT_TRUE(skipped.isCanceled());
    EXPECT_TRUE(told.get());
    EXPECT_EQ(values, 1);
    // Attached late, it runs at once.
    EXPECT_EQ(doubled.then([](int const& value) { return value + 1; }).get(), 43);
}

TEST(Future, voidMoveOnlyAndThrowing)
{
    Promise<void> promise;
    auto counter = std::make_unique<int>(1);
    auto const moveOnly = promise.future().then([counter = std::move(counter)]() mutable { return ++*counter; });
    auto const always = promise.future().then([](Future<void> const& future) { return future.isFinished(); });
    auto const thrown = promise.future().then([]() -> int { throw std::runtime_error("expected in this test"); });
    auto const odd = promise.future().then([] { throw 1; });
    LogCapture const log;
    promise.setValue();
    EXPECT_EQ(moveOnly.get(), 2);
    EXPECT_TRUE(always.get());
    EXPECT_TRUE(thrown.isCanceled());
    EXPECT_TRUE(odd.isCanceled());
    EXPECT_THAT(
        log.warnings(),
        testing::ElementsAre(
            "An exception left a continuation: expected in this test", "An exception left a continuation."));
    EXPECT_EQ(
        makeReadyFuture(std::make_shared<int>(5)).then([](std::shared_ptr<int> const& value) { return *value; }).get(),
        5);
}

/// Counts how often it was copied on its way, and is empty once it was moved out.
struct Cargo
{
    explicit Cargo(bool full = false) : isFull(full) {}
    Cargo(Cargo const& other) : isFull(other.isFull), copies(other.copies + 1) {}
    Cargo(Cargo&& other) noexcept : isFull(std::exchange(other.isFull, false)), copies(other.copies) {}

    bool isFull = false;
    int copies = 0;
};

int copiesOnTheWayOutOf(Future<Cargo> future)
{
    Cargo const cargo = std::move(future).take();
    EXPECT_TRUE(cargo.isFull);
    return cargo.copies;
}

TEST(Future, takeMovesOutOfTheOnlyHandle)
{
    EXPECT_EQ(copiesOnTheWayOutOf(makeReadyFuture(Cargo(true))), 0);
    Future<Cargo> const kept = makeReadyFuture(Cargo(true));
    EXPECT_EQ(copiesOnTheWayOutOf(kept), 1);
    EXPECT_EQ(copiesOnTheWayOutOf(kept), 1);

    Promise<Cargo> promise;
    EXPECT_TRUE(promise.setValue(Cargo(true)));
    EXPECT_EQ(copiesOnTheWayOutOf(promise.future()), 1);
    EXPECT_EQ(copiesOnTheWayOutOf(promise.future()), 1);
    Promise<Cargo> used;
    Future<Cargo> alone = used.future();
    EXPECT_TRUE(std::move(used).setValue(Cargo(true)));
    EXPECT_EQ(copiesOnTheWayOutOf(std::move(alone)), 0);

    EXPECT_FALSE(Future<Cargo>().take().isFull);
    Promise<void> nothing;
    nothing.setValue();
    nothing.future().take();
}

TEST(Future, cancelTellsTheProducerOnce)
{
    int told = 0;
    Promise<int> promise;
    Future<int> const future = promise.future();
    auto const derived = future.then([](int const&) {});
    promise.onCancel([&told] { ++told; });
    derived.cancel();
    EXPECT_FALSE(future.isFinished());
    future.cancel();
    future.cancel();
    EXPECT_EQ(told, 1);
    promise.onCancel([&told] { told += 10; });
    EXPECT_EQ(told, 11);

    Promise<int> finished;
    finished.onCancel([&told] { told = -1; });
    finished.setValue(1);
    finished.future().cancel();
    finished.onCancel([&told] { told = -1; });
    Promise<int>().onCancel([&told] { told = -1; });
    EXPECT_EQ(told, 11);
}

TEST(Future, signals)
{
    Promise<int> promise;
    Future<int> const future = promise.future();
    std::string order;
    auto* const signalObject = future.sharedStateSignals();
    using Signals = threading::impl::SharedStateSignals;
    QObject::connect(signalObject, &Signals::canceled, [&order] { order += 'c'; });
    QObject::connect(signalObject, &Signals::finished, [&order] { order += 'f'; });
    QObject::connect(
        signalObject, &Signals::aboutToStartWaiting,
        [&]
        {
            order += 'w';
            future.cancel();
        });
    future.wait();
    future.wait();
    EXPECT_EQ(order, "wcf");
    EXPECT_EQ(future.sharedStateSignals(), signalObject);
}

TEST(Future, whenAllKeepsOrderAndCountsCanceledOnes)
{
    std::vector<Promise<int>> promises(3);
    auto const all = whenAll(std::vector{promises[0].future(), promises[1].future(), promises[2].future()});
    promises[2].setValue(2);
    promises[0].cancel();
    EXPECT_FALSE(all.isFinished());
    promises[1].setValue(1);
    ASSERT_TRUE(all.isFinished());
    auto const futures = all.get();
    EXPECT_TRUE(futures[0].isCanceled());
    EXPECT_EQ(futures[1].get() * 10 + futures[2].get(), 12);
    EXPECT_TRUE(whenAll(std::vector<Future<int>>()).isFinished());

    Promise<int> open;
    whenAll(std::vector{open.future()}).cancel();
    EXPECT_FALSE(open.future().isFinished());
}

class EventLoop
{
public:
    EventLoop()
    {
        thread_.start();
        context_ = std::make_unique<QObject>();
        context_->moveToThread(&thread_);
    }

    EventLoop(EventLoop const&) = delete;
    EventLoop& operator=(EventLoop const&) = delete;

    ~EventLoop()
    {
        thread_.quit();
        thread_.wait();
    }

    QObject* context() const { return context_.get(); }

    QThread* thread() { return &thread_; }

private:
    // Qt runs no event loop without it.
    int argumentCount_ = 0;
    QCoreApplication application_{argumentCount_, nullptr};
    QThread thread_;
    std::unique_ptr<QObject> context_;
};

TEST(Future, contextDecidesTheThread)
{
    EventLoop loop;
    Promise<int> promise;
    auto const where = [](int const&) { return QThread::currentThread(); };
    auto const early = promise.future().then(loop.context(), where);
    promise.setValue(1);
    EXPECT_EQ(early.get(), loop.thread());
    EXPECT_EQ(promise.future().then(loop.context(), where).get(), loop.thread());
    EXPECT_EQ(promise.future().then(where).get(), QThread::currentThread());
    EXPECT_TRUE(promise.future().then(nullptr, where).isCanceled());
}

TEST(Future, continuationsMayTakeTheValue)
{
    EventLoop loop;
    auto const copiesSeenBy = [&loop](auto continuation)
    {
        Promise<Cargo> direct;
        Promise<Cargo> relayed;
        auto const first = direct.future().then(continuation);
        auto const second = relayed.future().then(loop.context(), continuation);
        std::move(direct).setValue(Cargo(true));
        std::move(relayed).setValue(Cargo(true));
        return first.get() + second.get();
    };
    EXPECT_EQ(copiesSeenBy([](Future<Cargo> finished) { return copiesOnTheWayOutOf(std::move(finished)); }), 0);
    EXPECT_EQ(copiesSeenBy([](Future<Cargo>&& finished) { return copiesOnTheWayOutOf(std::move(finished)); }), 0);
    EXPECT_EQ(copiesSeenBy([](Future<Cargo> const& finished) { return copiesOnTheWayOutOf(finished); }), 2);
    EXPECT_EQ(copiesSeenBy([](auto const& cargo) { return cargo.isFull ? cargo.copies : -1; }), 0);

    // Each that waits has a handle; the last one finds itself alone.
    Promise<Cargo> promise;
    auto const take = [](Future<Cargo> finished) { return copiesOnTheWayOutOf(std::move(finished)); };
    auto const first = promise.future().then(take);
    auto const second = promise.future().then([](Cargo const& cargo) { return cargo; }).then(take);
    auto const third = promise.future().then(take);
    auto const nothing = Future<void>().then([](Future<void> finished) { std::move(finished).take(); });
    std::move(promise).setValue(Cargo(true));
    EXPECT_EQ(std::tuple(first.get(), second.get(), third.get()), std::tuple(1, 1, 0));
    EXPECT_FALSE(nothing.isCanceled());
}

TEST(Future, contextGoneMeansNeverCalled)
{
    int argumentCount = 0;
    QCoreApplication const application(argumentCount, nullptr);
    bool called = false;
    auto const call = [&called](Future<int> const&) { called = true; };

    Promise<int> promise;
    auto context = std::make_unique<QObject>();
    auto const before = promise.future().then(context.get(), call);
    context.reset();
    EXPECT_TRUE(before.isCanceled());
    promise.setValue(1);

    context = std::make_unique<QObject>();
    auto const posted = promise.future().then(context.get(), call);
    EXPECT_FALSE(posted.isFinished());
    context.reset();
    QCoreApplication::processEvents();
    EXPECT_TRUE(posted.isCanceled());
    EXPECT_FALSE(called);
}

TEST(Future, runsNoUserCodeUnderItsLock)
{
    // Each of these calls takes the lock of the state whose transition has called it.
    Promise<int> promise;
    Future<int> const future = promise.future();
    int calls = 0;
    future.then(
        [&](Future<int> const& finished)
        {
            finished.then([&calls](Future<int> const&) { ++calls; });
            finished.cancel();
            promise.onCancel([&calls] { ++calls; });
        });
    promise.onCancel([&] { future.then([&calls](Future<int> const&) { ++calls; }); });
    future.cancel();
    EXPECT_EQ(calls, 3);
}

} // namespace

} // namespace test
