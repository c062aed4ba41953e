// What futures do beyond what every platform promises, which kelo-platform-check tries.
#include <memory>
#include <stdexcept>
#include <tuple>
#include <utility>

#include <QCoreApplication>
#include <QThread>

#include <gmock/gmock.h>

#include <platform/threading/Future.h>
#include <testkit/platform/Race.h>
#include <tests/support/LogCapture.h>

namespace test
{

using namespace testkit;

namespace
{

using threading::Future;
using threading::makeReadyFuture;
using threading::Promise;

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

private:
    // Qt runs no event loop without it.
    int argumentCount_ = 0;
    QCoreApplication application_{argumentCount_, nullptr};
    QThread thread_;
    std::unique_ptr<QObject> context_;
};

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

TEST(Future, takenWhileItFinishesAndAnotherAsks)
{
    std::unique_ptr<Promise<std::shared_ptr<int>>> promise;
    Future<std::shared_ptr<int>> future;
    Future<std::shared_ptr<int>> other;
    platformcheck::race(
        [&]
        {
            promise = std::make_unique<Promise<std::shared_ptr<int>>>();
            other = future = promise->future();
        },
        [&future] { EXPECT_NE(std::move(future).take(), nullptr); },
        [&]
        {
            std::move(*promise).setValue(std::make_shared<int>(1));
            EXPECT_NE(other.get(), nullptr);
            other = Future<std::shared_ptr<int>>();
        },
        [] {});
}

TEST(Future, whatBelongsToNothingIsCanceled)
{
    EXPECT_TRUE(Future<int>().isCanceled());
    EXPECT_TRUE(makeReadyFuture(1).then(nullptr, [](int const& value) { return value; }).isCanceled());
    Promise<int>().onCancel([] { ADD_FAILURE(); });
    Promise<int> const promise;
    EXPECT_EQ(promise.future().sharedStateSignals(), promise.future().sharedStateSignals());
}

} // namespace

} // namespace test
