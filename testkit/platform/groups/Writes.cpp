// A POST or PUT is put on the wire at most once.
#include <atomic>
#include <vector>

#include "testkit/platform/Exchanges.h"
#include "testkit/platform/Rows.h"

namespace platformcheck
{

namespace
{

struct Loss
{
    char const* what = nullptr;
    Action action;
};

Loss const losses[] = {{"closed", closeNow()}, {"reset", resetNow()}};

/// Every kind of write is lost once the server has read it, on a new connection or on one that has served before.
void loseWrites(bool onKeptConnection)
{
    for (HttpMethod const method : {HttpMethod::Put, HttpMethod::Post})
    {
        for (QByteArray const& body : {QByteArray(), QByteArray("{\"a\":1}")})
        {
            for (Loss const& loss : losses)
            {
                doing(text(
                    method == HttpMethod::Put ? "PUT" : "POST", body.isEmpty() ? " without" : " with",
                    " a body, connection ", loss.what, " after it was read"));
                RawServer const server([&loss](RawRequest const& request)
                                       { return request.target == "/warm" ? reply(200) : loss.action; });
                auto const connection = connectTo(server.url());
                if (onKeptConnection)
                {
                    requireStatus(send(*connection, get("/warm")), 200);
                }
                auto const answer = send(*connection, write(method, body));
                requireEqual("how often the server has read it", countOf(server, "/x"), 1);
                requireNetworkError(answer);
            }
        }
    }
}

void lostOnNewConnectionSentOnce()
{
    loseWrites(false);
}

void lostOnKeptConnectionSentOnce()
{
    loseWrites(true);
}

void lostBeforeItsBodySentOnce()
{
    std::atomic<int> heads = 0;
    RawServer const server({}, {false, [&heads](RawRequest const& request) -> std::optional<Action> {
                                    return request.target == "/x" ? (++heads, std::optional(resetNow())) : std::nullopt;
                                }});
    auto const connection = connectTo(server.url());
    for (qsizetype const size : {10, 10'000'000})
    {
        doing(text("PUT of ", size, " bytes, connection reset after its head was read"));
        requireStatus(send(*connection, get("/warm")), 200);
        heads = 0;
        requireNetworkError(send(*connection, write(HttpMethod::Put, QByteArray(size, 'x'))));
        requireEqual("how often the server has read its head", heads.load(), 1);
    }
}

void lostReadEnds()
{
    for (Loss const& loss : losses)
    {
        doing(text("GET, connection ", loss.what, " after it was read"));
        RawServer const server([&loss](RawRequest const&) { return loss.action; });
        requireNetworkError(send(*connectTo(server.url())));
    }
}

void lostWriteSaysSo()
{
    RawServer const server([](RawRequest const&) { return closeNow(); });
    auto const connection = connectTo(server.url());
    auto const parser = connection->getErrorParser();
    for (auto const& [what, data, isWrite] :
         {std::tuple("PUT", write(HttpMethod::Put, "x"), true), {"POST", writeJson(), true}, {"GET", get(), false}})
    {
        doing(text("lost ", what));
        auto const answer = send(*connection, data);
        requireEqual("the status kind", parser->parse(answer).kind, 1U);
        requireEqual("that its text says \"may have processed\"", isSaidToBeProcessedPerhaps(answer), isWrite);
    }
    doing("PUT to a port where nobody listens");
    QUrl const nobody = [] { return RawServer().url(); }();
    auto const refused = send(*connectTo(nobody), write(HttpMethod::Put, "x"));
    requireNetworkError(refused);
    require(!isSaidToBeProcessedPerhaps(refused), "its text says \"may have processed\"");
}

void recycledConnectionsFailNone()
{
    constexpr int count = 300;
    for (bool const tls : {false, true})
    {
        doing(text(count, " writes at once, every third answer ends its connection", tls ? ", TLS" : ""));
        RawServer const server(
            [](RawRequest const& request) {
                return request.number % 3 != 0 ? reply(200) : reply(200, "{}", {{"Connection", "close"}}).thenClose();
            },
            {tls, {}});
        auto const connection = carelesslyConnectTo(server);
        std::vector<rest::FutureJsonReply> calls;
        for (int i = 0; i < count; ++i)
        {
            calls.push_back(connection->request(i % 2 == 0 ? writeJson() : write(HttpMethod::Post, {})));
        }
        for (rest::FutureJsonReply const& call : calls)
        {
            requireStatus(replyOf(call), 200);
        }
        requireEqual("the number of requests", server.requestCount(), count);
    }
}

constexpr Row writesRows[] = {
    {"lostOnNewConnectionSentOnce", "A write is not sent again when its new connection dies after it was read.",
     lostOnNewConnectionSentOnce},
    {"lostOnKeptConnectionSentOnce", "Nor when the connection has served others before.", lostOnKeptConnectionSentOnce},
    {"lostBeforeItsBodySentOnce", "Nor when the connection dies between its head and its body.",
     lostBeforeItsBodySentOnce},
    {"lostReadEnds", "A GET may be repeated, but not for ever.", lostReadEnds},
    {"lostWriteSaysSo", "The text of a lost write, and of no other call, says \"may have processed\".",
     lostWriteSaysSo},
    {"recycledConnectionsFailNone", "A server that ends its connections in good order makes no write fail.",
     recycledConnectionsFailNone},
};

} // namespace

constinit Group const writes = {"writes", writesRows};

} // namespace platformcheck
