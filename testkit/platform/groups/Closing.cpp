// The end of a connection, and of the process, with calls pending.
#include <atomic>
#include <thread>
#include <vector>

#include "testkit/platform/Exchanges.h"
#include "testkit/platform/Rows.h"

namespace platformcheck
{

namespace
{

/// Twenty calls end as cancelled, their continuations included, before `end` returns.
template <class End>
void requireCanceledBy(End const& end)
{
    RawServer const server([](RawRequest const&) { return stall(); });
    auto connection = connectTo(server.url());
    std::vector<rest::FutureJsonReply> calls;
    std::atomic<int> continued = 0;
    for (int i = 0; i < 20; ++i)
    {
        calls.push_back(connection->request(i % 2 == 0 ? get() : writeJson()));
        calls.back().then([&continued](rest::FutureJsonReply const& call)
                          { continued += call.isCanceled() ? 1 : 100; });
    }
    auto const download = connection->downloadBinary(
        relative("/x"), [](BinaryReply const&) {}, 0ms);
    require(server.waitForRequests(1), "the server gets no request");
    doing("20 calls and a download are pending");
    end(connection);
    for (rest::FutureJsonReply const& call : calls)
    {
        require(call.isFinished(), "a call is still pending afterwards");
        requireCanceled(call);
    }
    require(download.isFinished() && download.isCanceled(), "a download is still pending afterwards");
    requireEqual("the number of continuations that have run, with 100 for one with a value,", continued.load(), 20);
}

void destructorCancels()
{
    requireCanceledBy([](auto& connection) { connection.reset(); });
}

void closingCancels()
{
    requireCanceledBy([](auto& connection) { connection->closeConnection(); });
}

void blockingCallsEnd()
{
    RawServer const server([](RawRequest const&) { return stall(); });
    int count = 0;
    for (auto const& data : {get(), writeJson()})
    {
        auto connection = connectTo(server.url());
        auto const client = connection->httpConnection();
        JsonReply answer;
        doing("a blocking call whose connection is closed");
        std::thread caller([&] { answer = client.send(data); });
        require(server.waitForRequests(++count), "the server does not get the request");
        connection->closeConnection();
        caller.join();
        require(answer != nullptr, "it returns null");
        requireNetworkError(answer);
        requireEqual("that its text says \"may have processed\"", isSaidToBeProcessedPerhaps(answer), count == 2);
        doing("a blocking call whose connection is gone");
        connection.reset();
        requireNetworkError(client.send(get()));
    }
}

void destructorWaitsForContinuations()
{
    RawServer server([](RawRequest const&) { return reply(200).afterRelease(); });
    auto connection = connectTo(server.url());
    std::atomic<bool> hasEntered = false;
    std::atomic<bool> hasLeft = false;
    connection->request(get()).then(
        [&](JsonReply const&)
        {
            hasEntered = true;
            hasEntered.notify_all();
            // Long enough for the destructor to run into it; returning sooner would only make the row weaker.
            std::this_thread::sleep_for(100ms);
            hasLeft = true;
        });
    require(server.waitForHeld(1), "the server does not get the request");
    server.release();
    doing("destroying a connection while a continuation of its call runs");
    hasEntered.wait(false);
    connection.reset();
    require(hasLeft, "the destructor returns before it");
}

void connectionMayDieInAContinuation()
{
    RawServer server([](RawRequest const& request)
                     { return request.target == "/stall" ? stall() : reply(200).afterRelease(); });
    auto connection = connectTo(server.url());
    auto const stalled = connection->request(get("/stall"));
    auto const done = connection->request(get()).then(
        [&](JsonReply const&)
        {
            connection.reset();
            return stalled.isCanceled();
        });
    require(server.waitForHeld(2), "the server does not get the requests");
    server.release();
    doing("destroying a connection in a continuation of its call");
    require(valueOf(done), "another call is still pending afterwards");
}

void connectionMayDieInItsTraceCallback()
{
    RawServer const server;
    auto connection = connectTo(server.url());
    connection->setTraceCallback([&connection](auto const&) { connection.reset(); });
    doing("destroying a connection in its trace callback");
    requireCanceled(connection->request(get()));
}

void callsOfManyThreadsEnd()
{
    RawServer const server;
    for (int round = 0; round < 20; ++round)
    {
        auto connection = connectTo(server.url());
        std::atomic<int> ended = 0;
        constexpr int perThread = 50;
        auto const work = [&](bool cancels)
        {
            for (int i = 0; i < perThread; ++i)
            {
                auto const call = connection->request(get());
                call.then([&ended](rest::FutureJsonReply const&) { ++ended; });
                if (cancels && i % 3 == 0)
                {
                    call.cancel();
                }
            }
        };
        doing("calls and cancels of two threads, and the connection's end");
        std::thread one(work, true);
        std::thread two(work, false);
        connection->closeConnection();
        connection->initialize(server.url(), {}, {}, {});
        one.join();
        two.join();
        connection.reset();
        requireEqual("the number of continuations that have run", ended.load(), 2 * perThread);
    }
}

/// Destroyed after the platform's own statics, for it is there before.
struct LastCheck
{
    std::vector<rest::FutureJsonReply> calls;

    ~LastCheck()
    {
        for (rest::FutureJsonReply const& call : calls)
        {
            require(call.isFinished(), "a call is still pending when the process has ended");
        }
    }
};

void processMayEnd()
{
    static LastCheck lastCheck;
    static RawServer const server([](RawRequest const&) { return stall(); });
    static auto const connection = connectTo(server.url());
    for (int i = 0; i < 10; ++i)
    {
        lastCheck.calls.push_back(connection->request(get()));
    }
    require(server.waitForRequests(1), "the server gets no request");
}

constexpr Row closingRows[] = {
    {"destructorCancels", "Pending calls are cancelled, continuations included, when the destructor returns.",
     destructorCancels},
    {"closingCancels", "And when closeConnection() returns.", closingCancels},
    {"blockingCallsEnd", "A blocking call ends as a network error when its connection is closed or gone.",
     blockingCallsEnd},
    {"destructorWaitsForContinuations", "The destructor waits for continuations that run on another thread.",
     destructorWaitsForContinuations},
    {"connectionMayDieInAContinuation", "A continuation may destroy the connection of its call.",
     connectionMayDieInAContinuation},
    {"connectionMayDieInItsTraceCallback", "So may the trace callback; the call is then cancelled.",
     connectionMayDieInItsTraceCallback},
    {"callsOfManyThreadsEnd", "Calls of many threads beside cancelling and closing end, each once.",
     callsOfManyThreadsEnd},
    {"processMayEnd", "The process may end with calls pending; they are finished.", processMayEnd},
};

} // namespace

constinit Group const closing = {"closing", closingRows};

} // namespace platformcheck
