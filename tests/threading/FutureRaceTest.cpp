// The same transitions from several threads at once; the sanitizers watch.
#include <atomic>
#include <barrier>
#include <functional>
#include <memory>
#include <thread>

#include <QCoreApplication>
#include <QObject>
#include <QThread>

#include <gtest/gtest.h>

#include <platform/threading/Future.h>

namespace test
{

namespace
{

using threading::Future;
using threading::Promise;

constexpr int rounds = 3000;

/// Runs both functions at the same time, once a round, each time after `prepare`.
void race(
    std::function<void()> const& prepare, std::function<void()> const& one, std::function<void()> const& two,
    std::function<void()> const& check)
{
    std::barrier start(2);
    std::barrier end(2);
    std::thread other(
        [&]
        {
            for (int round = 0; round < rounds; ++round)
            {
                start.arrive_and_wait();
                two();
                end.arrive_and_wait();
            }
        });
    for (int round = 0; round < rounds; ++round)
    {
        prepare();
        start.arrive_and_wait();
        one();
        end.arrive_and_wait();
        check();
    }
    other.join();
}

class FutureRace : public testing::Test
{
protected:
    void prepare()
    {
        promise = std::make_unique<Promise<std::shared_ptr<int>>>();
        future = promise->future();
        calls = 0;
    }

    void attach()
    {
        future.then(
            [this](Future<std::shared_ptr<int>> const& finished)
            {
                ++calls;
                EXPECT_TRUE(finished.isFinished());
                EXPECT_EQ(finished.get() == nullptr, finished.isCanceled());
            });
    }

    void finish() { promise->setValue(std::make_shared<int>(1)); }

    std::unique_ptr<Promise<std::shared_ptr<int>>> promise;
    Future<std::shared_ptr<int>> future;
    std::atomic<int> calls = 0;
};

TEST_F(FutureRace, attachAndFinish)
{
    race([this] { prepare(); }, [this] { attach(); }, [this] { finish(); }, [this] { EXPECT_EQ(calls, 1); });
}

TEST_F(FutureRace, attachAndDrop)
{
    race([this] { prepare(); }, [this] { attach(); }, [this] { promise.reset(); }, [this] { EXPECT_EQ(calls, 1); });
}

TEST_F(FutureRace, cancelAndFinishWithHandler)
{
    std::atomic<int> told = 0;
    race(
        [&]
        {
            prepare();
            attach();
            told = 0;
        },
        [&] { future.cancel(); },
        [&]
        {
            promise->onCancel([&told] { ++told; });
            finish();
        },
        [&]
        {
            EXPECT_EQ(calls, 1);
            EXPECT_EQ(told, future.isCanceled() ? 1 : 0);
        });
}

TEST_F(FutureRace, waitAndFinish)
{
    race([this] { prepare(); }, [this] { EXPECT_EQ(*future.get(), 1); }, [this] { finish(); }, [] {});
}

TEST_F(FutureRace, takeAndFinishAndGet)
{
    Future<std::shared_ptr<int>> other;
    race(
        [&]
        {
            prepare();
            other = future;
        },
        [this] { EXPECT_NE(std::move(future).take(), nullptr); },
        [&]
        {
            std::move(*promise).setValue(std::make_shared<int>(1));
            EXPECT_NE(other.get(), nullptr);
            other = Future<std::shared_ptr<int>>();
        },
        [] {});
}

TEST_F(FutureRace, lastHandlesGoWhileFinishing)
{
    race(
        [this]
        {
            prepare();
            attach();
        },
        [this] { future = Future<std::shared_ptr<int>>(); },
        [this]
        {
            finish();
            promise.reset();
        },
        [this] { EXPECT_EQ(calls, 1); });
}

TEST_F(FutureRace, contextDiesWhileFinishing)
{
    int argumentCount = 0;
    QCoreApplication const application(argumentCount, nullptr);
    QThread thread;
    thread.start();
    Future<void> derived;
    race(
        [&]
        {
            prepare();
            auto* const context = new QObject;
            context->moveToThread(&thread);
            derived = future.then(context, [](std::shared_ptr<int> const& value) { EXPECT_EQ(*value, 1); });
            context->deleteLater();
        },
        [] {}, [this] { finish(); },
        [&derived]
        {
            derived.wait();
            EXPECT_TRUE(derived.isFinished());
        });
    thread.quit();
    thread.wait();
}

TEST_F(FutureRace, whenAllFromTwoThreads)
{
    Promise<int> first;
    Promise<int> second;
    Future<std::vector<Future<int>>> all;
    race(
        [&]
        {
            first = Promise<int>();
            second = Promise<int>();
            all = threading::whenAll(std::vector{first.future(), second.future()});
        },
        [&first] { first.setValue(1); }, [&second] { second.cancel(); }, [&all] { EXPECT_EQ(all.get().size(), 2); });
}

} // namespace

} // namespace test
