// Cancellation, the end of a connection with calls pending, and waiting on the I/O thread.
#include <atomic>
#include <future>
#include <thread>

#include "tests/rest/RestTestSupport.h"
#include <testkit/Waiting.h>

namespace test
{

namespace
{

TEST(Cancel, reachesTheWire)
{
    RawServer server([](RawRequest const&) { return stall(); }, {false, [](RawRequest const& request) {
                                                                     return request.method == "PUT"
                                                                                ? std::optional(stall())
                                                                                : std::nullopt;
                                                                 }});
    auto const connection = connectTo(server.url());
    auto const answer = connection->request(get());
    bool called = false;
    auto const download = connection->downloadBinary(
        path("/x"), [&called](rest::BinaryReply const&) { called = true; }, 0ms);
    Folder const folder;
    auto const stored = connection->downloadTo(path("/x"), folder.path("file"), 0ms);
    Folder const source;
    // More than sockets hold, so that it is still being sent; this handle on the file goes at once.
    QString const file = source.write("file", QByteArray(20'000'000, 'x'));
    auto const sent = connection->request(upload(rest::MappedFile(file).bytes()));
    ASSERT_TRUE(server.waitForRequests(4));
    answer.cancel();
    download.cancel();
    stored.cancel();
    sent.cancel();
    EXPECT_TRUE(server.waitForClosedByClient(3)); // nobody reads from the fourth any more
    EXPECT_TRUE(comesTrue([&folder] { return folder.isEmpty(); }));
    EXPECT_TRUE(answer.isCanceled());
    EXPECT_TRUE(download.isCanceled());
    EXPECT_FALSE(called);
}

TEST(Cancel, freesThePlaceInTheQueue)
{
    RawServer server([](RawRequest const& request) { return request.target == "/stall" ? stall() : reply(200); });
    auto const connection = connectTo(server.url());
    std::vector<rest::FutureJsonReply> stalled;
    stalled.reserve(6);
    for (int i = 0; i < 6; ++i)
    {
        stalled.push_back(connection->request(get("/stall")));
    }
    auto const waiting = connection->request(get());
    ASSERT_TRUE(server.waitForRequests(6));
    stalled[3].cancel();
    EXPECT_EQ(waiting.get()->httpStatusCode(), 200);
}

TEST(Lifetime, destructionAndClosingCancelWhatIsPending)
{
    RawServer server([](RawRequest const&) { return stall(); });
    for (bool const destroyed : {true, false})
    {
        auto connection = connectTo(server.url());
        auto const client = connection->httpConnection();
        std::vector<rest::FutureJsonReply> futures;
        futures.reserve(20);
        std::atomic<int> continued = 0;
        for (int i = 0; i < 20; ++i)
        {
            futures.push_back(connection->request(get()));
            futures.back().then([&continued](rest::FutureJsonReply const& future)
                                { continued += future.isCanceled() ? 1 : 100; });
        }
        ASSERT_TRUE(server.waitForRequests(destroyed ? 6 : 12));
        destroyed ? connection.reset() : connection->closeConnection();
        EXPECT_EQ(continued, 20);
        EXPECT_TRUE(server.waitForClosedByClient(destroyed ? 6 : 12));
        EXPECT_THAT(client.send(get()), IsNetworkError());
    }
}

TEST(Lifetime, blockingCallEndsWhenItsConnectionDoes)
{
    RawServer server([](RawRequest const&) { return stall(); });
    for (auto const& request : {upload("x"), get()})
    {
        auto const connection = connectTo(server.url());
        rest::JsonReply answer;
        std::thread caller([&] { answer = send(*connection, request); });
        EXPECT_TRUE(server.waitForRequests(request.method == HttpMethod::Get ? 2 : 1));
        connection->closeConnection();
        caller.join();
        EXPECT_THAT(answer, IsNetworkError());
        EXPECT_EQ(saysMaybeProcessed(answer), request.method != HttpMethod::Get);
    }
}

TEST(Lifetime, connectionMayDieInItsOwnContinuation)
{
    RawServer server([](RawRequest const& request)
                     { return request.target == "/stall" ? stall() : reply(200).afterRelease(); });
    auto connection = connectTo(server.url());
    auto const stalled = connection->request(get("/stall"));
    auto const done = connection->request(get()).then(
        [&](rest::JsonReply const&)
        {
            connection.reset();
            return stalled.isCanceled();
        });
    ASSERT_TRUE(server.waitForRequests(2));
    server.release();
    EXPECT_TRUE(done.get());
}

TEST(Lifetime, destructorWaitsForContinuationsOnOtherThreads)
{
    RawServer server([](RawRequest const&) { return reply(200).afterRelease(); });
    auto connection = connectTo(server.url());
    threading::Promise<void> entered;
    std::atomic<bool> left = false;
    connection->request(get()).then(
        [&](rest::JsonReply const&)
        {
            entered.setValue();
            // Long enough for the destructor to run into it; returning sooner would only make the test weaker.
            threading::Promise<void>().future().waitFor(1ms);
            threading::Promise<void> const never;
            never.future().waitFor(100ms);
            left = true;
        });
    server.release();
    entered.future().wait();
    connection.reset();
    EXPECT_TRUE(left);
}

// Large replies are finished on a few workers. More of them than there are workers wait for others of their kind.
TEST(Lifetime, waitingInAContinuationKeepsItsThreadWorking)
{
    for (qsizetype const size : {0, 100'000})
    {
        RawServer server([size](RawRequest const&) { return reply(200, '"' + QByteArray(size, 'x') + '"'); });
        auto const connection = connectTo(server.url());
        std::vector<threading::Future<int>> nested;
        for (int i = 0; i < 5; ++i)
        {
            nested.push_back(connection->request(get()).then(
                [&](rest::JsonReply const&)
                {
                    auto const later = connection->request(get()).then([&](rest::JsonReply const&)
                                                                       { return send(*connection)->httpStatusCode(); });
                    return send(*connection)->httpStatusCode() + later.get();
                }));
        }
        for (threading::Future<int> const& sum : nested)
        {
            EXPECT_EQ(sum.get(), 400);
        }
    }
}

TEST(Lifetime, largeReplyHoldsUpNoSmallCallAndAWaitEndsInTime)
{
    RawServer server([](RawRequest const& request)
                     { return reply(200, QByteArray(request.target == "/large" ? 100'000 : 1, ' ')); });
    auto const connection = connectTo(server.url());
    // Unlike a future of this library it does not keep the thread working that waits for it.
    std::promise<void> promise;
    auto const large =
        connection->request(get("/large")).then([&](rest::JsonReply const&) { promise.get_future().wait(); });
    for (int i = 0; i < 10; ++i)
    {
        EXPECT_EQ(send(*connection)->httpStatusCode(), 200);
    }
    promise.set_value();
    large.wait();

    auto const limited = connection->request(get()).then(
        [](rest::JsonReply const&)
        {
            threading::Promise<void> const never;
            return never.future().waitFor(20ms);
        });
    EXPECT_FALSE(limited.get());
    EXPECT_EQ(send(*connection)->httpStatusCode(), 200);
}

// The first continuation needs the waiting thread to return from its wait.
TEST(Lifetime, waitReturnsThoughAContinuationBlocks)
{
    for (bool const onSameCall : {true, false})
    {
        // An answer that came before the continuation is attached would have it run, and block, on this thread.
        RawServer server([](RawRequest const&) { return reply(200).afterRelease(); });
        auto const connection = connectTo(server.url());
        threading::Promise<void> promise;
        auto const first = connection->request(get());
        auto const blocked = first.then([&promise](rest::JsonReply const&) { promise.future().wait(); });
        auto const waitedFor = onSameCall ? first : connection->request(get());
        server.release();
        EXPECT_EQ(waitedFor.get()->httpStatusCode(), 200);
        promise.setValue();
        blocked.wait();
        EXPECT_FALSE(blocked.isCanceled());
    }
}

TEST(Lifetime, requestsCancelsAndClosesFromManyThreadsAllEnd)
{
    RawServer server;
    for (int round = 0; round < 20; ++round)
    {
        auto connection = connectTo(server.url());
        std::atomic<int> ended = 0;
        constexpr int perThread = 50;
        auto const work = [&](bool cancels)
        {
            for (int i = 0; i < perThread; ++i)
            {
                auto const future = connection->request(get());
                future.then([&ended](rest::FutureJsonReply const&) { ++ended; });
                if (cancels && i % 3 == 0)
                {
                    future.cancel();
                }
            }
        };
        std::thread one(work, true);
        std::thread two(work, false);
        connection->closeConnection();
        connection->initialize(server.url(), {}, {}, {});
        one.join();
        two.join();
        connection.reset();
        EXPECT_EQ(ended, 2 * perThread);
    }
}

} // namespace

} // namespace test
