// What happens on a connection that waits for nothing costs the next call nothing, and is nobody's answer.
#include "testkit/platform/Exchanges.h"
#include "testkit/platform/Rows.h"

namespace platformcheck
{

namespace
{

struct Incident
{
    char const* what = nullptr;
    Action firstAnswer;
};

/// After each incident, each kind of call gets its own answer, and is sent once.
template <std::size_t count>
void requireOwnAnswersAfter(Incident const (&incidents)[count])
{
    std::pair<char const*, rest::HttpRequestData> const calls[] = {
        {"GET", get()},
        {"PUT", write(HttpMethod::Put, "x")},
        {"POST without a body", write(HttpMethod::Post, {})},
        {"POST", writeJson()}};
    for (Incident const& incident : incidents)
    {
        for (bool const tls : {false, true})
        {
            for (auto const& [name, data] : calls)
            {
                doing(text(incident.what, tls ? " (TLS), then a " : ", then a ", name));
                RawServer server(
                    [&](RawRequest const& seen) { return seen.number == 1 ? incident.firstAnswer : reply(201, "[1]"); },
                    {tls, {}});
                auto const connection = carelesslyConnectTo(server);
                requireEqual("the first answer", compact(send(*connection, get("/first"))), "{}");
                server.release();
                require(server.waitForAnswered(1), "the connection is not read any more");
                auto const own = send(*connection, data);
                requireStatus(own, 201);
                requireEqual("the answer", compact(own), "[1]");
                requireEqual("how often the server has read it", countOf(server, "/x"), 1);
            }
        }
    }
}

QByteArray const strayAnswer = "HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\n[]";

void endedConnectionCostsNoCall()
{
    Incident const incidents[] = {
        {"connection closed while idle", reply(200).thenClose()},
        {"connection reset while idle", reply(200).thenReset()},
    };
    requireOwnAnswersAfter(incidents);
}

void strayAnswerIsNobodys()
{
    QByteArray const answer = reply(200).bytes;
    QByteArray const chunked = "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n2\r\n{}\r\n0\r\n\r\n";
    auto const headSize = answer.indexOf("\r\n\r\n") + 4;
    auto const straySize = strayAnswer.size();
    Incident const incidents[] = {
        {"an answer nobody asked for", rawReply(answer + strayAnswer).holdingBack(straySize)},
        {"an answer nobody asked for after a chunked one", rawReply(chunked + strayAnswer).holdingBack(straySize)},
        {"an answer nobody asked for in one piece with the body",
         rawReply(answer + strayAnswer).inSlices(headSize, 1ms)},
    };
    requireOwnAnswersAfter(incidents);
}

void strayBytesAreNobodys()
{
    QByteArray const answer = reply(200).bytes;
    Incident const incidents[] = {
        {"half an answer nobody asked for", rawReply(answer + strayAnswer.left(5)).holdingBack(5)},
        {"an answer nobody asked for, then the end",
         rawReply(answer + strayAnswer).holdingBack(strayAnswer.size()).thenClose()},
    };
    requireOwnAnswersAfter(incidents);
}

void answersBelongToTheirCalls()
{
    RawServer const server([](RawRequest const& request) { return reply(200, "[\"" + request.target + "\"]"); });
    auto const connection = connectTo(server.url());
    constexpr int perThread = 100;
    auto const callMany = [&connection](QByteArray const& thread)
    {
        for (int i = 0; i < perThread; ++i)
        {
            QByteArray const target = "/" + thread + QByteArray::number(i);
            requireEqual("the answer", compact(send(*connection, get(target))), "[\"" + target + "\"]");
        }
    };
    doing("calls of four threads");
    std::vector<std::thread> threads;
    for (char const* const name : {"a", "b", "c", "d"})
    {
        threads.emplace_back(callMany, name);
    }
    for (std::thread& thread : threads)
    {
        thread.join();
    }
    requireEqual("the number of requests", server.requestCount(), 4 * perThread);
}

constexpr Row idleRows[] = {
    {"endedConnectionCostsNoCall", "After a kept connection has ended, the next call is answered, and sent once.",
     endedConnectionCostsNoCall},
    {"strayAnswerIsNobodys", "An answer that arrives on an idle connection is not taken for the next call's.",
     strayAnswerIsNobodys},
    {"strayBytesAreNobodys", "Nor are parts of one.", strayBytesAreNobodys},
    {"answersBelongToTheirCalls", "Calls of many threads over one connection get their own answers.",
     answersBelongToTheirCalls},
};

} // namespace

constinit Group const idle = {"idle", idleRows};

} // namespace platformcheck
