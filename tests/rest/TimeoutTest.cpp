// What a time-out bounds. Times are chosen so that a slow machine cannot turn the outcome round.
#include "tests/rest/RestTestSupport.h"

namespace test
{

namespace
{

bool isTimeout(rest::JsonReply const& reply, char const* milliseconds)
{
    return reply->classification() == 2 && reply->errorText().contains(QLatin1String("Time-out"))
           && reply->errorText().contains(QLatin1String(milliseconds) + QLatin1String(" ms"));
}

TEST(Timeout, defaultAppliesUnlessTheRequestHasItsOwn)
{
    RawServer server([](RawRequest const&) { return stall(); });
    auto const connection = connectTo(server.url(), 60ms);
    EXPECT_TRUE(isTimeout(send(*connection, get("/x", 0ms)), "60"));
    EXPECT_TRUE(isTimeout(send(*connection, get("/x", -5ms)), "60"));
    EXPECT_TRUE(isTimeout(send(*connection, get("/x", 40ms)), "40"));
    connection->setDefaultTimeout(50ms);
    EXPECT_TRUE(isTimeout(send(*connection, get("/x", 0ms)), "50"));
    auto const lostWrite = send(*connection, upload("x", 30ms));
    EXPECT_TRUE(isTimeout(lostWrite, "30"));
    EXPECT_TRUE(saysMaybeProcessed(lostWrite));
    // A connection that timed out is not used again.
    EXPECT_TRUE(server.waitForClosedByClient(5));
}

TEST(Timeout, absurdlyLongOneIsNoTimeoutAtAll)
{
    RawServer server;
    EXPECT_EQ(send(*connectTo(server.url()), get("/x", std::chrono::milliseconds::max()))->httpStatusCode(), 200);
}

// The answer takes 16 steps of 25 ms; the time-out is 300 ms.
TEST(Timeout, jsonMustBeCompleteButTransfersMustOnlyGoOn)
{
    QByteArray const content(16, ' ');
    RawServer server(
        [&content](RawRequest const&)
        {
            Action action = reply(200, content);
            return action.inSlices(action.bytes.size() / 16, 25ms);
        });
    auto const connection = connectTo(server.url());
    EXPECT_TRUE(isTimeout(send(*connection, get("/x", 300ms)), "300"));
    EXPECT_EQ(send(*connection, upload("x", 300ms))->httpStatusCode(), 200);
    rest::BinaryReply download;
    connection
        ->downloadBinary(
            path("/x"), [&download](rest::BinaryReply const& answer) { download = answer; }, 300ms)
        .wait();
    EXPECT_EQ(download->body(), content);
}

TEST(Timeout, transferThatStopsIsEnded)
{
    RawServer server([](RawRequest const&) { return reply(200, QByteArray(1000, 'x')).truncatedBy(10).thenStall(); });
    auto const connection = connectTo(server.url());
    rest::BinaryReply download;
    connection
        ->downloadBinary(
            path("/x"), [&download](rest::BinaryReply const& answer) { download = answer; }, 50ms)
        .wait();
    EXPECT_THAT(download, IsNetworkError());
    EXPECT_TRUE(download->body().isEmpty());
    EXPECT_TRUE(server.waitForClosedByClient(1));
}

// Sixty calls are ten rounds of six.
TEST(Timeout, inTheQueueItRunsSinceTheOriginWasLastHeardOf)
{
    for (bool const isAlive : {false, true})
    {
        RawServer server([isAlive](RawRequest const&) { return isAlive ? reply(200).inSlices(60, 60ms) : stall(); });
        auto const connection = connectTo(server.url(), 400ms);
        std::vector<rest::FutureJsonReply> calls;
        calls.reserve(60);
        for (int i = 0; i < 60; ++i)
        {
            calls.push_back(connection->request(upload("x")));
        }
        for (rest::FutureJsonReply const& call : calls)
        {
            EXPECT_TRUE(isAlive ? call.get()->httpStatusCode() == 200 : isTimeout(call.get(), "400"));
        }
        EXPECT_EQ(saysMaybeProcessed(calls.front().get()), !isAlive);
        EXPECT_FALSE(saysMaybeProcessed(calls.back().get())) << "it was not sent";
        // Some may get their turn just before their time is over.
        EXPECT_LE(server.requestCount(), isAlive ? 60 : 12);
    }
}

} // namespace

} // namespace test
