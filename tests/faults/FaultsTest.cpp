// Each fault, seen from a plain socket: it fires, and does what its name says.
#include <gmock/gmock.h>

#include <chrono>
#include <set>

#include <QJsonDocument>
#include <QUrl>

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include "simulator/Simulator.h"
#include "simulator/Sockets.h"
#include "simulator/faults/FaultProxy.h"
#include "simulator/faults/FaultText.h"
#include "simulator/faults/ServiceFaultKinds.h"
#include "simulator/faults/ToxicKinds.h"
#include <testkit/RawServer.h>
#include <testkit/Waiting.h>

using namespace simulator;
using namespace simulator::faults;
using namespace std::chrono_literals;
using ::testing::HasSubstr;

namespace
{

enum class End : int
{
    Closed,
    Reset,
    Refused,
    Silent
};

struct Seen
{
    std::string bytes = {};
    End end = End::Refused;
    int pieces = 0;
    std::chrono::milliseconds elapsed{0};
};

/// A client that sends one text and takes what comes.
class PlainClient
{
public:
    explicit PlainClient(int port) : socket_(connectToLoopback(port)) {}
    PlainClient(PlainClient const&) = delete;
    PlainClient& operator=(PlainClient const&) = delete;
    ~PlainClient() { ::close(socket_); }

    /// Whether an answer of the usual kind comes, on a connection that goes on.
    bool isAnswered(std::string const& text) { return exchange(text, 30s, "{}").bytes.ends_with("{}"); }
    /// Until `last` has come, the connection ends, a lot has come, or nothing has for `patience`.
    Seen exchange(std::string const& text, std::chrono::milliseconds patience = 30s, std::string const& last = {})
    {
        auto const begin = std::chrono::steady_clock::now();
        Seen seen;
        if (socket_ >= 0)
        {
            // Even an empty text would take the news of a reset.
            if (!text.empty())
            {
                ::send(socket_, text.data(), text.size(), MSG_NOSIGNAL);
            }
            readAll(seen, patience, last);
        }
        auto const elapsed = std::chrono::steady_clock::now() - begin;
        seen.elapsed = std::chrono::duration_cast<std::chrono::milliseconds>(elapsed);
        return seen;
    }

private:
    void readAll(Seen& seen, std::chrono::milliseconds patience, std::string const& last) const
    {
        pollfd waited = {socket_, POLLIN, 0};
        seen.end = End::Silent;
        while (seen.bytes.size() < (1 << 20) && ::poll(&waited, 1, static_cast<int>(patience.count())) > 0)
        {
            char buffer[4096];
            auto const count = ::recv(socket_, buffer, sizeof buffer, 0);
            if (count <= 0)
            {
                seen.end = count == 0 ? End::Closed : End::Reset;
                return;
            }
            seen.bytes.append(buffer, static_cast<std::size_t>(count));
            ++seen.pieces;
            if (!last.empty() && seen.bytes.ends_with(last))
            {
                return;
            }
        }
    }

    int const socket_;
};

constexpr char const* request = "GET / HTTP/1.1\r\nHost: x\r\n\r\n";
std::string const answer(1000, 'a');

/// A server that answers 1000 bytes and closes, behind a proxy.
struct ProxiedServer
{
    explicit ProxiedServer(quint64 seed = 1) : proxy(server.port(), seed) {}

    auto add(char const* text) { return proxy.add(text); }
    Seen exchange(std::chrono::milliseconds patience = 30s) const
    {
        return PlainClient(proxy.port()).exchange(request, patience);
    }

    testkit::RawServer server{[](testkit::RawRequest const&)
                              { return testkit::rawReply(QByteArray::fromStdString(answer)).thenClose(); }};
    FaultProxy proxy;
};

bool fires(ToxicInForce const& toxic)
{
    return testkit::comesTrue([&toxic] { return toxic.fired > 0; });
}

TEST(Toxics, doWhatTheirNamesSay)
{
    struct Row
    {
        char const* text;
        std::size_t bytes;
        End end;
        std::chrono::milliseconds atLeast = 0ms;
        int requests = 1;
        int pieces = 1;
    };
    Row const rows[] = {
        {"latency:latency=40", 1000, End::Closed, 40ms},
        {"latency:latency=40,jitter=5,stream=upstream", 1000, End::Closed, 35ms},
        {"bandwidth:rate=10", 1000, End::Closed, 100ms},
        {"slow_close:delay=40", 1000, End::Closed, 40ms},
        {"timeout:timeout=40", 0, End::Closed, 40ms},
        {"timeout:timeout=40,stream=upstream", 0, End::Closed, 40ms, 0},
        {"timeout:timeout=0", 0, End::Silent},
        {"reset_peer", 0, End::Reset},
        {"reset_peer:timeout=40,stream=upstream", 0, End::Reset, 40ms, 0},
        {"slicer:average_size=500,size_variation=100,delay=20000", 1000, End::Closed, 40ms, 1, 2},
        {"limit_data:bytes=300", 300, End::Closed},
        {"limit_data:bytes=10,stream=upstream", 0, End::Closed, 0ms, 0},
        {"down", 0, End::Refused, 0ms, 0},
    };
    for (Row const& row : rows)
    {
        SCOPED_TRACE(row.text);
        ProxiedServer service;
        auto const toxic = service.add(row.text);
        auto const seen = service.exchange(row.end == End::Silent ? 60ms : 30s);
        EXPECT_EQ(seen.bytes, answer.substr(0, row.bytes));
        EXPECT_EQ(seen.end, row.end);
        EXPECT_GE(seen.elapsed, row.atLeast);
        EXPECT_GE(seen.pieces, row.bytes == 0 ? 0 : row.pieces);
        EXPECT_TRUE(fires(*toxic));
        EXPECT_EQ(service.server.requestCount(), row.requests);
        service.proxy.clear();
        EXPECT_EQ(service.exchange().bytes, answer) << "all is well again";
    }
}

TEST(Toxics, comeAndGoOnOpenConnections)
{
    testkit::RawServer server;
    FaultProxy proxy(server.port());
    PlainClient client(proxy.port());
    EXPECT_TRUE(client.isAnswered(request));
    proxy.add("latency:latency=3600000");
    EXPECT_EQ(client.exchange(request, 20ms).bytes, "");
    proxy.clear();
    EXPECT_TRUE(client.isAnswered({})) << "what was held back, goes on";
    auto const timeout = proxy.add("timeout:timeout=0");
    EXPECT_EQ(client.exchange(request, 20ms).end, End::Silent);
    EXPECT_TRUE(fires(*timeout));
    proxy.clear();
    EXPECT_EQ(client.exchange("").end, End::Closed) << "what was swallowed, is lost";

    PlainClient other(proxy.port());
    EXPECT_TRUE(other.isAnswered(request));
    auto const down = proxy.add("down");
    EXPECT_EQ(other.exchange("").end, End::Reset);
    EXPECT_EQ(down->fired, 2);
}

TEST(Toxics, chanceIsDrawnFromTheSeed)
{
    auto const strikes = [](quint64 seed)
    {
        ProxiedServer service(seed);
        service.add("limit_data:bytes=1,toxicity=0.5");
        std::string pattern;
        for (int i = 0; i < 40; ++i)
        {
            pattern += service.exchange().bytes.size() == 1 ? 'x' : '.';
        }
        return pattern;
    };
    EXPECT_EQ(strikes(7), strikes(7));
    EXPECT_NE(strikes(7), strikes(8));
    EXPECT_THAT(strikes(7), HasSubstr("x"));
    EXPECT_THAT(strikes(7), HasSubstr("."));
}

TEST(Toxics, nonsenseIsRefused)
{
    for (auto const* text :
         {"no_such", "latency:latency=-1", "latency:rate=1", "latency:stream=sideways", "latency:toxicity=2",
          "latency:toxicity=often", "down:toxicity=0.5", "limit_data:bytes=many"})
    {
        EXPECT_THROW(ToxicSettings::fromText(text), std::invalid_argument) << text;
    }
}

struct ServiceFaultRow
{
    char const* text;
    std::vector<char const*> shown;
    std::vector<char const*> missing = {};
};

// The service's answer to a list of connections, of which each row is a spoilt form.
ServiceFaultRow const serviceFaults[] = {
    {"status:status=418,body=tea", {"HTTP/1.1 418", "tea"}},
    {"status", {"HTTP/1.1 503", R"("Code":"5030")"}},
    {"unauthorized", {"HTTP/1.1 401", R"("Code":"4010")", "WWW-Authenticate: Basic"}},
    {"tooManyRequests:seconds=7", {"HTTP/1.1 429", "Retry-After: 7"}},
    {"redirect:location=http://elsewhere.invalid:1/x", {"HTTP/1.1 307", "Location: http://elsewhere.invalid:1/x\r\n"}},
    {"html:status=200", {"HTTP/1.1 200", "Content-Type: text/html", "<html>"}},
    {"emptyBody", {"HTTP/1.1 200", "Content-Length: 0"}},
    {"wrongType", {"HTTP/1.1 200", R"("Count":"zero"})"}, {"CON-101"}},
    {"wrongType:member=Status", {"CON-101", R"("Status":4711)"}},
    {"missingMember:member=Status", {"CON-101"}, {"Status\""}},
    {"nullMember:member=Status", {"CON-101", R"("Status":null)"}},
    {"unknownText:member=Status", {"CON-101", R"("Status":"NoSuchText")"}},
    {"truncatedBody", {"HTTP/1.1 200", "Content-Length: ", "CON-101"}, {"}]"}},
    {"cutChunk", {"Transfer-Encoding: chunked", "CON-101"}, {"\r\n0\r\n"}},
    {"earlyHints", {"HTTP/1.1 103 ", "\r\n\r\nHTTP/1.1 200", "CON-101"}},
    {"gzipBomb:mebibytes=2", {"HTTP/1.1 200", "Content-Encoding: gzip", "\x1f\x8b"}, {"CON-101"}},
    {"endlessHeaders", {"HTTP/1.1 200", "X-More: "}, {"\r\n\r\n", "CON-101"}},
    {"drop", {}, {"HTTP"}},
    {"delay:milliseconds=20", {"HTTP/1.1 200", "CON-101"}},
};

TEST(ServiceFaults, doWhatTheirNamesSay)
{
    Simulator service;
    auto const port = QUrl(service.start()).port();
    std::string const list = "GET /Installations/INST-1001/connections HTTP/1.1\r\nHost: x\r\nConnection: close\r\n"
                             "Authorization: Basic "
                             + QByteArray("kelo:kelo").toBase64().toStdString() + "\r\n\r\n";
    std::set<QString> seenKinds;
    for (auto const& row : serviceFaults)
    {
        SCOPED_TRACE(row.text);
        seenKinds.insert(FaultText(row.text).name());
        service.addFault(row.text);
        auto const seen = PlainClient(port).exchange(list).bytes;
        for (auto const* text : row.shown)
        {
            EXPECT_THAT(seen, HasSubstr(text));
        }
        for (auto const* text : row.missing)
        {
            EXPECT_THAT(seen, Not(HasSubstr(text)));
        }
        EXPECT_THAT(PlainClient(port).exchange(list).bytes, HasSubstr("}]")) << "once means once";
    }
    EXPECT_EQ(seenKinds.size(), serviceFaultKinds().size()) << "every kind has a row";
    EXPECT_THROW(service.addFault("noSuchKind"), std::exception);
    EXPECT_THROW(service.addFault("latency"), std::exception) << "there is no proxy";
}

} // namespace
