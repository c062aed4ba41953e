// Nothing waits for ever. Times are chosen so that a slow machine cannot turn the outcome round.
#include <vector>

#include "testkit/platform/Exchanges.h"
#include "testkit/platform/Rows.h"

namespace platformcheck
{

namespace
{

/// An answer that takes a second, in steps far shorter than 500 ms.
Action slowAnswer()
{
    Action const action = reply(200, QByteArray(40, ' '));
    return action.inSlices(action.bytes.size() / 40, 25ms);
}

void ownTimeoutOrTheConnections()
{
    RawServer const server([](RawRequest const&) { return stall(); });
    doing("a call with the connection's time-out");
    requireNetworkError(send(*connectTo(server.url(), 60ms)));
    auto const connection = connectTo(server.url());
    doing("a JSON call with its own");
    requireNetworkError(send(*connection, writeJson(40ms)));
    doing("raw bytes with their own");
    requireNetworkError(send(*connection, write(HttpMethod::Put, "x", 40ms)));
    doing("a download with its own");
    requireNetworkError(download(*connection, "/x", 40ms));
    doing("after a time-out");
    require(server.waitForClosedByClient(4), "the connection is kept");
}

void jsonMustBeComplete()
{
    RawServer const server([](RawRequest const&) { return slowAnswer(); });
    auto const connection = connectTo(server.url(), 500ms);
    doing("a GET whose answer takes a second, with the connection's 500 ms");
    requireNetworkError(send(*connection));
    doing("a JSON call whose answer takes a second, with its own 500 ms");
    requireNetworkError(send(*connection, writeJson(500ms)));
}

void transfersMustGoOn()
{
    RawServer const server([](RawRequest const&) { return slowAnswer(); });
    auto const connection = connectTo(server.url());
    doing("a second in small steps, with 500 ms");
    requireStatus(send(*connection, write(HttpMethod::Put, "x", 500ms)), 200);
    requireEqual("the download", download(*connection, "/x", 500ms)->body(), QByteArray(40, ' '));
}

void stoppedTransferEnds()
{
    RawServer const server([](RawRequest const&)
                           { return reply(200, QByteArray(1000, 'x')).truncatedBy(10).thenStall(); });
    auto const answer = download(*connectTo(server.url()), "/x", 50ms);
    requireNetworkError(answer);
    require(answer->body().isEmpty(), "the part that was received is handed out");
    require(server.waitForClosedByClient(1), "the connection is kept");
}

void queuedCallsEnd()
{
    RawServer const server([](RawRequest const&) { return stall(); });
    auto const connection = connectTo(server.url(), 400ms);
    std::vector<rest::FutureJsonReply> calls;
    // Six at a time would take 16 s if each waited for its turn.
    for (int i = 0; i < 240; ++i)
    {
        calls.push_back(connection->request(write(HttpMethod::Put, "x")));
    }
    auto const deadline = std::chrono::steady_clock::now() + 8s;
    doing("240 calls at once, with 400 ms, none of which is answered");
    for (rest::FutureJsonReply const& call : calls)
    {
        requireNetworkError(replyOf(call));
    }
    require(std::chrono::steady_clock::now() < deadline, "they end after more than 8 s");
}

void queuedCallsWaitForALivingOrigin()
{
    RawServer const server([](RawRequest const&) { return reply(200).inSlices(60, 60ms); });
    auto const connection = connectTo(server.url(), 400ms);
    std::vector<rest::FutureJsonReply> calls;
    for (int i = 0; i < 60; ++i)
    {
        calls.push_back(connection->request(write(HttpMethod::Put, "x")));
    }
    doing("60 calls at once that take 120 ms each, with 400 ms");
    for (rest::FutureJsonReply const& call : calls)
    {
        requireStatus(replyOf(call), 200);
    }
}

void longestTimeoutIsNone()
{
    RawServer const server;
    doing("std::chrono::milliseconds::max()");
    requireStatus(send(*connectTo(server.url(), std::chrono::milliseconds::max())), 200);
    requireStatus(send(*connectTo(server.url()), writeJson(std::chrono::milliseconds::max())), 200);
}

constexpr Row timeoutsRows[] = {
    {"ownTimeoutOrTheConnections", "A call without an answer ends by its own time-out, or else the connection's.",
     ownTimeoutOrTheConnections},
    {"jsonMustBeComplete", "The time-out of a JSON exchange bounds the whole of it.", jsonMustBeComplete},
    {"transfersMustGoOn", "That of raw bytes and downloads bounds the time without progress.", transfersMustGoOn},
    {"stoppedTransferEnds", "A download that stops half-way ends as a network error, without bytes.",
     stoppedTransferEnds},
    {"queuedCallsEnd", "Calls that wait for their turn at a silent origin end, too.", queuedCallsEnd},
    {"queuedCallsWaitForALivingOrigin", "They go on waiting as long as their origin answers others.",
     queuedCallsWaitForALivingOrigin},
    {"longestTimeoutIsNone", "The longest duration there is means no time-out.", longestTimeoutIsNone},
};

} // namespace

constinit Group const timeouts = {"timeouts", timeoutsRows};

} // namespace platformcheck
