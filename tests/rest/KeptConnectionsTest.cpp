// How connections that are kept from earlier exchanges are used and given up.
#include <platform/rest/internal/Connections.h>

#include "tests/rest/RestTestSupport.h"

namespace test
{

namespace
{

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
