// A wait works on every thread, and needs no event loop.
#include <thread>
#include <vector>

#include "testkit/platform/Exchanges.h"
#include "testkit/platform/Rows.h"

namespace platformcheck
{

namespace
{

using threading::Future;
using threading::Promise;

void allWaitersReturn()
{
    Promise<int> promise;
    Future<int> const future = promise.future();
    std::vector<std::thread> waiters;
    waiters.emplace_back([&] { future.wait(); });
    waiters.emplace_back([&] { requireEqual("what get() returns", future.get(), 3); });
    waiters.emplace_back([&] { require(future.waitFor(patience()), "waitFor() returns false"); });
    waiters.emplace_back([&] { require(future.waitFor(std::chrono::milliseconds::max()), "waitFor() returns false"); });
    doing("wait(), get() and waitFor() of four threads");
    promise.setValue(3);
    for (std::thread& waiter : waiters)
    {
        waiter.join();
    }
}

void waitForEndsInTime()
{
    Promise<int> const never;
    for (auto const duration : {-1ms, 0ms, 20ms})
    {
        doing(text("waitFor(", duration.count(), " ms) of a future that does not finish"));
        require(!never.future().waitFor(duration), "it returns true");
    }
}

void noApplicationIsNeeded()
{
    if (QCoreApplication::instance() != nullptr)
    {
        notOffered("rows are run with a QCoreApplication");
    }
    RawServer const server;
    doing("a blocking call of a plain thread, without a QCoreApplication");
    elsewhere([&] { requireStatus(connectTo(server.url())->httpConnection().send(get()), 200); });
    require(QCoreApplication::instance() == nullptr, "the platform has made a QCoreApplication of its own");
}

void eventLoopThreadMayBlock()
{
    RawServer const server;
    LoopThread const loop;
    auto const connection = connectTo(server.url());
    doing("a blocking call in a thread with an event loop");
    auto const status = threading::makeReadyFuture(1).then(
        loop.context(), [&](int const&) { return connection->httpConnection().send(get())->httpStatusCode(); });
    requireEqual("its HTTP status", valueOf(status), 200);
}

/// Calls that wait for others in their continuations, and these in theirs.
void requireNestedWaits(qsizetype replySize)
{
    RawServer const server([replySize](RawRequest const&)
                           { return reply(200, '"' + QByteArray(replySize, 'x') + '"'); });
    auto const connection = connectTo(server.url());
    auto const client = connection->httpConnection();
    std::vector<Future<int>> sums;
    for (int i = 0; i < 5; ++i)
    {
        sums.push_back(connection->request(get()).then(
            [&](JsonReply const&)
            {
                auto const later = connection->request(get()).then([&](JsonReply const&)
                                                                   { return client.send(get())->httpStatusCode(); });
                return client.send(get())->httpStatusCode() + later.get();
            }));
    }
    doing("calls that wait for others in their continuations");
    for (Future<int> const& sum : sums)
    {
        requireEqual("the sum of their HTTP statuses", valueOf(sum), 400);
    }
}

void continuationMayWait()
{
    requireNestedWaits(0);
}

void continuationOfLargeReplyMayWait()
{
    requireNestedWaits(100'000);
}

void waitInAContinuationEndsInTime()
{
    RawServer const server;
    auto const connection = connectTo(server.url());
    doing("waitFor(20 ms) in a continuation");
    auto const limited = connection->request(get()).then(
        [](JsonReply const&)
        {
            Promise<void> const never;
            return never.future().waitFor(20ms) ? 1 : 0;
        });
    requireEqual("its result", valueOf(limited), 0);
    requireStatus(send(*connection), 200);
}

void waiterReturnsThoughAContinuationBlocks()
{
    for (bool const onSameCall : {true, false})
    {
        // An answer that came before the continuation is attached would have it run, and block, on this thread.
        RawServer server([](RawRequest const&) { return reply(200).afterRelease(); });
        auto const connection = connectTo(server.url());
        Promise<void> promise;
        auto const first = connection->request(get());
        auto const blocked = first.then([&promise](JsonReply const&) { promise.future().wait(); });
        auto const waitedFor = onSameCall ? first : connection->request(get());
        server.release();
        doing(text("a continuation waits for the thread that waits for ", onSameCall ? "its" : "another", " call"));
        requireStatus(replyOf(waitedFor), 200);
        promise.setValue();
        requireFinished(blocked);
    }
}

constexpr Row waitsRows[] = {
    {"allWaitersReturn", "wait(), get() and waitFor() of many threads return when the future ends.", allWaitersReturn},
    {"waitForEndsInTime", "waitFor() returns false when its time is over.", waitForEndsInTime},
    {"noApplicationIsNeeded", "A call needs no event loop and no QCoreApplication.", noApplicationIsNeeded},
    {"eventLoopThreadMayBlock", "A blocking call works in a thread whose event loop stands still meanwhile.",
     eventLoopThreadMayBlock},
    {"continuationMayWait", "A continuation may wait for other calls.", continuationMayWait},
    {"continuationOfLargeReplyMayWait", "That of a reply of 100 KB, too.", continuationOfLargeReplyMayWait},
    {"waitInAContinuationEndsInTime", "waitFor() in a continuation returns when its time is over.",
     waitInAContinuationEndsInTime},
    {"waiterReturnsThoughAContinuationBlocks", "A waiting thread returns though a continuation waits for it.",
     waiterReturnsThoughAContinuationBlocks},
};

} // namespace

constinit Group const waits = {"waits", waitsRows};

} // namespace platformcheck
