// When a connection that was kept from an earlier exchange may carry the next one.
#include <platform/rest/internal/Connections.h>

#include "tests/rest/RestTestSupport.h"

namespace test
{

namespace
{

rest::HttpRequestData request(HttpMethod method, QByteArray const& body)
{
    return RequestDataCreator::makeRequest(method, path("/second"), body, 0ms);
}

// Whatever happens to a connection while it waits for nothing, the next call gets its own answer, once, on a new one.
TEST(KeptConnection, isGivenUpForWritesTooIfSomethingHappenedMeanwhile)
{
    QByteArray const stray = "HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\n[]";
    Action answer = reply(200);
    auto const headSize = answer.bytes.indexOf("\r\n\r\n") + 4;
    Action const withStray = rawReply(answer.bytes + stray);
    Action const chunkedWithStray =
        rawReply("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n2\r\n{}\r\n0\r\n\r\n" + stray);
    struct
    {
        char const* what = nullptr;
        Action action;
    } const rows[] = {
        {"closed in good order", answer.thenClose()},
        {"reset", answer.thenReset()},
        {"an answer later", withStray.holdingBack(stray.size())},
        {"an answer later, behind chunks", chunkedWithStray.holdingBack(stray.size())},
        {"an answer in one piece with the body", withStray.inSlices(headSize, 1ms)},
        {"an answer and the end", withStray.holdingBack(stray.size()).thenClose()},
        {"half an answer", rawReply(answer.bytes + stray.left(5)).holdingBack(5)},
    };
    for (auto const& row : rows)
    {
        for (bool const tls : {false, true})
        {
            for (auto const& second :
                 {get("/second"), request(HttpMethod::Put, "x"), request(HttpMethod::Post, "{}"),
                  request(HttpMethod::Post, "")})
            {
                SCOPED_TRACE(testing::Message() << row.what << ", TLS " << tls << ", method " << int(second.method));
                RawServer server(
                    [&](RawRequest const& seen) { return seen.number == 1 ? row.action : reply(201, "[1]"); },
                    {tls, {}, {}});
                auto const connection = connectTo(server.url());
                connection->disableCertificateChecking();
                EXPECT_EQ(send(*connection)->body().toJson(QJsonDocument::Compact), "{}");
                server.release();
                ASSERT_TRUE(server.waitForAnswered(1));
                auto const own = send(*connection, second);
                EXPECT_EQ(own->httpStatusCode(), 201) << own->errorText().toStdString();
                EXPECT_EQ(own->body().toJson(QJsonDocument::Compact), "[1]");
                EXPECT_EQ(server.requestCount(), 2);
                EXPECT_EQ(server.connectionCount(), 2);
            }
        }
    }
}

TEST(KeptConnection, isUsedAgainAndAgainAndItsSessionOnNewOnes)
{
    for (bool const tls : {false, true})
    {
        RawServer server(
            [](RawRequest const& request) { return request.number <= 1000 ? reply(200) : reply(200).thenClose(); },
            {tls, {}, {}});
        auto const connection = connectTo(server.url());
        connection->disableCertificateChecking();
        for (int i = 0; i < 1000; ++i)
        {
            ASSERT_EQ(send(*connection, i % 2 == 0 ? get() : upload("x"))->httpStatusCode(), 200);
        }
        EXPECT_EQ(server.connectionCount(), 1);
        for (int i = 1; i <= 20; ++i)
        {
            ASSERT_EQ(send(*connection)->httpStatusCode(), 200);
            ASSERT_TRUE(server.waitForAnswered(1000 + i));
        }
        EXPECT_EQ(server.resumedCount(), tls ? 19 : 0);
    }
}

// The network has forgotten them all; no more than one call finds out by its time-out.
TEST(KeptConnection, deadOneTakesItsFellowsWithIt)
{
    for (auto const& later : {get("/later", 300ms), upload("x", 300ms)})
    {
        RawServer server(
            [](RawRequest const& request) {
                return request.number <= 6 ? reply(200).afterRelease() : request.connection <= 6 ? stall() : reply(200);
            });
        auto const connection = connectTo(server.url());
        std::vector<rest::FutureJsonReply> warm;
        for (int i = 0; i < 6; ++i)
        {
            warm.push_back(connection->request(get()));
        }
        ASSERT_TRUE(server.waitForRequests(6));
        server.release();
        EXPECT_TRUE(std::all_of(
            warm.begin(), warm.end(), [](auto const& call) { return call.get()->httpStatusCode() == 200; }));
        EXPECT_THAT(send(*connection, later), IsNetworkError());
        for (int i = 0; i < 6; ++i)
        {
            EXPECT_EQ(send(*connection, later)->httpStatusCode(), 200);
        }
        EXPECT_EQ(server.requestCount(), 13);
    }
}

TEST(KeptConnection, isOldAfterAMinuteOrASleepOfTheMachine)
{
    struct
    {
        std::chrono::milliseconds awake;
        std::chrono::milliseconds sinceBoot;
        bool isRecent;
    } const rows[] = {{0ms, 0ms, true}, {59s, 59s, true}, {61s, 61s, false}, {1s, 3s, false}, {0s, 24h, false}};
    auto const last = rest::Moment::now();
    for (auto const& row : rows)
    {
        EXPECT_EQ(rest::isRecent(last, {last.awake + row.awake, last.sinceBoot + row.sinceBoot}), row.isRecent);
    }
}

} // namespace

} // namespace test
