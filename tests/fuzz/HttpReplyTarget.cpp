#include <algorithm>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <platform/rest/internal/Calls.h>
#include <platform/rest/internal/Transfer.h>
#include <platform/rest/internal/TransferLoop.h>

#include "tests/fuzz/Fuzzing.h"
#include "tests/fuzz/ScriptedServer.h"

// The input's first byte chooses the calls (see `Choice`), the rest is the script of the server that answers them.

namespace
{

using fuzz::require;

constexpr std::uint16_t port = 80;
constexpr int longestWait = 1000;

enum class Kind : int
{
    Get,
    JsonPost,
    BytesPut,
    EmptyPost,
    Download
};

/// Bits 0 to 2: the kind of call; 3: it is traced; 4: a GET comes before it, so that it may find a connection that is
/// open; 5: a small limit for the answer. The others do not matter: '@' is a GET alone.
struct Choice
{
    explicit Choice(std::uint8_t byte)
        : kind(static_cast<Kind>((byte & 7U) % 5)),
          isTraced((byte & 8U) != 0),
          isPreceded((byte & 16U) != 0),
          replySizeLimit((byte & 32U) != 0 ? 64 : 16384)
    {
    }

    Kind kind;
    bool isTraced;
    bool isPreceded;
    qint64 replySizeLimit;
};

rest::Request makeRequest(Kind kind, Choice const& choice)
{
    rest::Request request;
    request.origin = "http://127.0.0.1:80";
    request.url = request.origin + (kind == Kind::Get || kind == Kind::Download ? "/r?x=1" : "/w");
    request.username = "user";
    request.password = "secret-of-the-user";
    // Nothing waits for it: a call that does not end by itself is found by the number of rounds.
    request.timeout = std::chrono::hours(1);
    request.replySizeLimit = choice.replySizeLimit;
    request.isTraced = choice.isTraced;
    request.isDownload = kind == Kind::Download;
    switch (kind)
    {
    case Kind::Get:
    case Kind::Download:
        break;
    case Kind::JsonPost:
        request.method = rest::HttpMethod::Post;
        request.content = rest::Request::Content::Json;
        request.body = R"({"Key":"value"})";
        break;
    case Kind::BytesPut:
        request.method = rest::HttpMethod::Put;
        request.content = rest::Request::Content::Bytes;
        request.body = QByteArray(100000, 'b');
        break;
    case Kind::EmptyPost:
        request.method = rest::HttpMethod::Post;
        break;
    }
    return request;
}

// ---- the way to the server -----------------------------------------------------------------------------------------

/// Where whatever connects is led to.
fuzz::ScriptedServer const* serverOfThisRun = nullptr;

} // namespace

// In the place of the system's, for the transport and libcurl alike: no exchange leaves the process.
extern "C" int socket(int domain, int type, int protocol) noexcept
{
    bool const isTcp = domain == AF_INET;
    return static_cast<int>(syscall(SYS_socket, isTcp ? AF_UNIX : domain, type, isTcp ? 0 : protocol));
}

extern "C" int connect(int socket, sockaddr const* address, socklen_t)
{
    auto const* const wanted = reinterpret_cast<sockaddr_in const*>(address);
    require(
        wanted->sin_family == AF_INET && wanted->sin_port == htons(port)
            && wanted->sin_addr.s_addr == htonl(INADDR_LOOPBACK),
        "no other server is contacted");
    return static_cast<int>(syscall(SYS_connect, socket, &serverOfThisRun->address(), serverOfThisRun->addressSize()));
}

namespace
{

rest::Outcome exchange(rest::TransferLoop& loop, fuzz::ScriptedServer& server, std::shared_ptr<rest::Call> const& call)
{
    loop.add(call);
    require(call->transfer != nullptr, "a call to an idle server begins at once");
    do
    {
        loop.perform();
        server.serve();
        require(server.idleRounds() < longestWait, "a call ends when its server has no more to say");
    } while (!loop.hasFinished());
    auto finished = loop.takeFinished();
    require(finished->call == call, "the call that ends is the one that was made");
    require(loop.takeAll().empty() && call->transfer == nullptr, "a call ends once");
    return std::move(finished->outcome);
}

// ---- what is promised ----------------------------------------------------------------------------------------------

void checkTraces(rest::Outcome const& outcome, rest::Request const& request)
{
    require(outcome.traces.empty() != request.isTraced, "a call is traced if that is wanted");
    for (rest::TraceData const& trace : outcome.traces)
    {
        require(trace.responseBody.size() <= request.replySizeLimit, "no trace holds more than the limit");
        for (auto const& [name, value] : trace.requestHeaders)
        {
            bool const isSecret = name.compare("Authorization", Qt::CaseInsensitive) == 0;
            require(!isSecret || value == "[redacted]", "no trace holds a password");
        }
    }
}

void checkOutcome(rest::Outcome const& outcome, rest::Request const& request)
{
    if (outcome.error == 0)
    {
        require(outcome.httpStatus >= 200 && outcome.httpStatus <= 999, "an answer has a final HTTP status");
        require(outcome.errorText.isEmpty(), "an answer has no error text");
    }
    else
    {
        require(outcome.error > 0 && !outcome.errorText.isEmpty(), "a failure has libcurl's number and a text");
        require(outcome.httpStatus == 0 && outcome.body.isEmpty(), "a failure has no status and no body");
        require(!outcome.errorText.contains(QLatin1String("secret")), "a text holds no password");
    }
    require(outcome.body.size() <= request.replySizeLimit, "no body is larger than the limit");
    require(
        outcome.body.capacity() <= std::max<qint64>(2 * request.replySizeLimit, 1024),
        "no memory is kept for a body that is larger than the limit");
    checkTraces(outcome, request);
}

void runJsonCall(rest::TransferLoop& loop, fuzz::ScriptedServer& server, rest::Request const& request)
{
    auto const call = std::make_shared<rest::JsonCall>(nullptr, request);
    auto outcome = exchange(loop, server, call);
    checkOutcome(outcome, request);
    call->complete(std::move(outcome));
    require(call->future().isFinished() && !call->future().isCanceled(), "a call that has ended has a reply");
}

void runDownload(rest::TransferLoop& loop, fuzz::ScriptedServer& server, rest::Request const& request)
{
    std::vector<rest::BinaryReply> replies;
    auto const call = std::make_shared<rest::DownloadCall>(
        nullptr, request, [&replies](rest::BinaryReply const& reply) { replies.push_back(reply); });
    auto outcome = exchange(loop, server, call);
    checkOutcome(outcome, request);
    QByteArray const body = outcome.body;
    call->complete(std::move(outcome));
    require(replies.size() == 1, "a download's reply is handed over once");
    require(replies.front()->body() == body, "a download's bytes are handed over unchanged");
}

void checkReceived(QByteArray const& received)
{
    require(received.count("POST /w HTTP") + received.count("PUT /w HTTP") <= 1, "a write is sent at most once");
}

} // namespace

int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    if (size == 0)
    {
        return 0;
    }
    Choice const choice(data[0]);
    fuzz::ScriptedServer server(QByteArray(reinterpret_cast<char const*>(data + 1), static_cast<qsizetype>(size) - 1));
    serverOfThisRun = &server;
    rest::TransferLoop loop({});
    if (choice.isPreceded)
    {
        runJsonCall(loop, server, makeRequest(Kind::Get, choice));
    }
    auto const request = makeRequest(choice.kind, choice);
    choice.kind == Kind::Download ? runDownload(loop, server, request) : runJsonCall(loop, server, request);
    server.serve();
    checkReceived(server.received());
    return 0;
}
