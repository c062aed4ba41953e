// Ends with calls pending, in the way that the second argument names. Status 0: every future was finished, every
// blocking call has returned, nothing hung or crashed, and the end has waited for nothing.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <memory>
#include <thread>
#include <vector>

#include <unistd.h>

#include <KeloCommunicationLib/collaboration/RequestDetailsRetriever.h>
#include <KeloCommunicationLib/connection/TessalyConnection.h>

namespace
{

std::unique_ptr<TessalyConnection> connection;
std::unique_ptr<RequestDetailsRetriever> retriever;

rest::HttpRequestData get(char const* target)
{
    return rest::RequestDataCreator::makeRequest(rest::HttpMethod::Get, QUrl(QString::fromLatin1(target)));
}

/// Made before the transport's own statics, hence destroyed after them.
struct LastCheck
{
    std::vector<rest::FutureJsonReply> calls;
    std::vector<TessalyConnection::Reply<std::vector<PartnerInfo>>> chains;
    std::thread blocked;
    bool sendsLate = false;
    // From here on it counts: the start of a process takes long on a busy machine.
    std::chrono::steady_clock::time_point end = std::chrono::steady_clock::time_point::max();

    ~LastCheck()
    {
        auto const longest = std::chrono::seconds(KELO_PROCESS_END_SECONDS);
        expect(std::chrono::steady_clock::now() - longest < end, "The end has waited in vain\n");
        if (sendsLate)
        {
            calls.push_back(connection->request(get("/late")));
        }
        for (rest::FutureJsonReply const& call : calls)
        {
            expect(call.isCanceled(), unfinished);
        }
        for (auto const& chain : chains)
        {
            expect(chain.isFinished(), unfinished);
        }
        if (blocked.joinable())
        {
            blocked.join();
        }
    }

    static constexpr char const* unfinished = "A future was left unfinished\n";

    static void expect(bool isGood, char const* otherwise)
    {
        if (!isGood)
        {
            std::fputs(otherwise, stderr);
            ::_exit(1);
        }
    }
} lastCheck;

/// Has `task` run in a continuation on the I/O thread. One that is attached too late runs in this call instead.
void onIoThread(std::function<void()> const& task)
{
    connection->request(get("/now"))
        .then([task, caller = std::this_thread::get_id()](rest::JsonReply const&)
              { std::this_thread::get_id() == caller ? onIoThread(task) : task(); });
}

void onWorker(std::function<void()> const& task)
{
    connection->downloadBinary(
        get("/now").url, [task](rest::BinaryReply const&) { task(); }, std::chrono::milliseconds(0));
}

template <auto run>
void exitOn()
{
    run([] { std::exit(0); });
    ::pause();
}

template <auto run>
void waitOn()
{
    threading::Promise<void> entered;
    run(
        [&entered]
        {
            entered.setValue();
            lastCheck.calls.front().wait();
        });
    entered.future().wait();
}

void blockAThread()
{
    threading::Promise<void> entered;
    lastCheck.blocked = std::thread(
        [&entered]
        {
            entered.setValue();
            connection->getThirdPartyAuthenticationKeys(QStringLiteral("I"));
        });
    entered.future().wait();
}

void poll()
{
    retriever = std::make_unique<RequestDetailsRetriever>(*connection);
    std::vector<collaboration::RequestInfo> known;
    retriever->getUpdates({}, known);
}

void fetchLogos()
{
    lastCheck.chains.push_back(connection->getPartners(QStringLiteral("I"), true));
}

void sendLate()
{
    lastCheck.sendsLate = true;
}

struct Mode
{
    char const* name;
    void (*prepare)();
};
constexpr Mode modes[] = {
    {"return", [] {}},
    {"exitOnIoThread", exitOn<onIoThread>},
    {"waitOnIoThread", waitOn<onIoThread>},
    {"exitOnWorker", exitOn<onWorker>},
    {"waitOnWorker", waitOn<onWorker>},
    {"lateRequest", sendLate},
    {"blockedThread", blockAThread},
    {"poll", poll},
    {"logos", fetchLogos},
};

} // namespace

int main(int, char** arguments)
{
    // Against living on when the test that started it has crashed.
    ::alarm(60);
    connection = TessalyConnection::makeConnection(QUrl(QString::fromLatin1(arguments[1])), {}, {});
    if (connection->httpConnection().send(get("/now"))->httpStatusCode() != 200)
    {
        return 2;
    }
    // Run before the transport's statics are destroyed.
    std::atexit([] { lastCheck.end = std::chrono::steady_clock::now(); });
    // Two places to the origin are left for what the modes send.
    for (int i = 0; i < 4; ++i)
    {
        lastCheck.calls.push_back(connection->request(get("/stall")));
    }
    for (Mode const& mode : modes)
    {
        if (std::strcmp(mode.name, arguments[2]) == 0)
        {
            mode.prepare();
            return 0;
        }
    }
    return 3;
}
