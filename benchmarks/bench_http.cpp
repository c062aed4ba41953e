/// Typed operations against plain libcurl and Qt's access manager, which only parse; nginx answers over loopback.

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <functional>
#include <future>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <unistd.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <QFile>

#include <benchmark/benchmark.h>

#include <KeloCommunicationLib/KeloCommunicationLib.h>
#include <platform/core/HostEnvironment.h>

#include "benchmarks/Peers.h"
#include "benchmarks/Ratios.h"
#include "benchmarks/Replies.h"
#include "tests/support/Nginx.h"

namespace
{

using bench::EasyClient;
using bench::MultiClient;
using bench::QtClient;
using Clock = std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;

constexpr int listSize = 100000;
constexpr int requestsOfAType = 1250;
constexpr int typeCount = 8;
constexpr int waitingCalls = 5000;

QString const installation = QString::fromLatin1(bench::installation);

std::unique_ptr<TessalyConnection> connectionTo(QUrl const& base)
{
    auto connection = TessalyConnection::makeConnection(base, bench::username, bench::password);
    connection->disableCertificateChecking();
    return connection;
}

/// The library, waiting for the answers.
class Library
{
public:
    explicit Library(QUrl const& base) : connection_(connectionTo(base)) {}

    bool fetch(std::int64_t count)
    {
        replies_.clear();
        for (std::int64_t index = 0; index < count; ++index)
        {
            replies_.push_back(connection_->getSettingsLicenseInfo(installation));
        }
        return std::all_of(
            replies_.begin(), replies_.end(), [](auto& reply) { return std::move(reply).take().status.kind == 0; });
    }

    void startList() { list_ = connection_->getRequests(installation, false); }

    bool isListThere() const { return list_.isFinished(); }

    bool takeList() { return std::move(list_).take().value.size() == listSize; }

private:
    std::unique_ptr<TessalyConnection> connection_;
    std::vector<TessalyConnectionInterface::Reply<SettingsLicenseInfo>> replies_;
    TessalyConnectionInterface::Reply<std::vector<collaboration::RequestInfo>> list_;
};

/// The library, taking the answers in an event loop.
class LibraryInLoop
{
public:
    explicit LibraryInLoop(QUrl const& base) : connection_(connectionTo(base)) {}

    bool fetch(std::int64_t count)
    {
        QEventLoop loop;
        std::int64_t missing = count;
        bool ok = true;
        for (std::int64_t index = 0; index < count; ++index)
        {
            connection_->getSettingsLicenseInfo(installation)
                .then(
                    &loop,
                    [&](rest::RestReply<SettingsLicenseInfo> const& reply)
                    {
                        ok = reply.status.kind == 0 && ok;
                        if (--missing == 0)
                        {
                            loop.quit();
                        }
                    });
        }
        loop.exec();
        return ok;
    }

private:
    std::unique_ptr<TessalyConnection> connection_;
};

/// Two libcurl handles, one of them in a thread of its own.
class EasyPair : public EasyClient
{
public:
    explicit EasyPair(QUrl const& base)
        : EasyClient(base), other_(base), listUrl_(base.toString().toStdString() + bench::listPath)
    {
    }

    void startList()
    {
        list_ = std::async(std::launch::async, [this] { return other_.post(listUrl_, "{}"); });
    }

    bool isListThere() const { return list_.wait_for(Seconds(0)) == std::future_status::ready; }

    bool takeList() { return list_.get(); }

private:
    EasyClient other_;
    std::string listUrl_;
    std::future<bool> list_;
};

/// libcurl's multi interface over HTTP/2: all streams on one connection.
class Http2Client : public MultiClient
{
public:
    explicit Http2Client(QUrl const& base) : MultiClient(base, {.inFlight = 100, .connections = 1, .http2 = true}) {}
};

/// A row of the measurement, against one server.
using Row = std::function<void(benchmark::State&, QUrl const& base)>;

/// As many calls at once as the row's argument says.
template <class Client>
void calls(benchmark::State& state, QUrl const& base)
{
    Client client(base);
    // The connections are made before the clock runs.
    bool ok = client.fetch(6);
    for (auto _ : state)
    {
        ok = client.fetch(state.range(0)) && ok;
    }
    if (!ok)
    {
        state.SkipWithError("a call failed");
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

/// The worst of small calls that one thread makes one after the other, beside the long list or for as long.
template <class Client>
void worstCall(benchmark::State& state, QUrl const& base, bool besideList)
{
    constexpr Seconds aboutAsLong(0.15);
    Client client(base);
    bool ok = client.fetch(1);
    for (auto _ : state)
    {
        auto const begin = Clock::now();
        if (besideList)
        {
            client.startList();
        }
        Seconds worst(0);
        while (besideList ? !client.isListThere() : Clock::now() - begin < aboutAsLong)
        {
            auto const start = Clock::now();
            ok = client.fetch(1) && ok;
            worst = std::max<Seconds>(worst, Clock::now() - start);
        }
        state.SetIterationTime(worst.count());
        ok = (!besideList || client.takeList()) && ok;
    }
    if (!ok)
    {
        state.SkipWithError("a call failed");
    }
}

Seconds processorTimeOfThread()
{
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

QString requestId(int type, int index)
{
    return QStringLiteral("REQ-%1").arg(type * requestsOfAType + index);
}

/// The details of 10 000 requests; the time, or that of the processor for the retriever's own thread.
void sweep(benchmark::State& state, QUrl const& base, bool ownThreadOnly)
{
    auto const connection = connectionTo(base);
    RequestDetailsRetriever retriever(*connection);
    std::vector<std::pair<QString, collaboration::RequestType>> requests;
    for (int index = 0; index < typeCount * requestsOfAType; ++index)
    {
        requests.emplace_back(
            requestId(index % typeCount, index / typeCount), collaboration::RequestType(index % typeCount));
    }
    retriever.setRequestIds(requests);
    QEventLoop loop;
    QObject::connect(&retriever, &RequestDetailsRetriever::finished, &loop, &QEventLoop::quit);
    for (auto _ : state)
    {
        auto const begin = Clock::now();
        auto const processorBegin = processorTimeOfThread();
        retriever.execute();
        loop.exec();
        Seconds const processorTime = processorTimeOfThread() - processorBegin;
        Seconds const time = Clock::now() - begin;
        state.SetIterationTime((ownThreadOnly ? processorTime : time).count());
    }
    if (!retriever.isSuccess() || retriever.getAllRequestDetails().size() != requests.size())
    {
        state.SkipWithError("the sweep failed");
    }
}

template <auto operation>
bool details(TessalyConnection const& connection, GetRequestDetailsInfo const& info)
{
    return (connection.*operation)(installation, info).take().status.kind == 0;
}

struct DetailsRoute
{
    char const* path;
    char const* record;
    bool (*call)(TessalyConnection const&, GetRequestDetailsInfo const&);
};

// In the order of the types.
constexpr std::array<DetailsRoute, typeCount> detailsRoutes{{
    {"dentalscan", "collaboration::SessionDetails", &details<&TessalyConnection::getDentalScanRequestDetails>},
    {"labdesign", "collaboration::SessionDetails", &details<&TessalyConnection::getLabDesignRequestDetails>},
    {"tempshell", "collaboration::SessionDetails", &details<&TessalyConnection::getTempShellRequestDetails>},
    {"template", "collaboration::TemplateRequestDetail", &details<&TessalyConnection::getTemplateRequestDetails>},
    {"restoration", "collaboration::RestorationRequestDetail",
     &details<&TessalyConnection::getRestorationRequestDetails>},
    {"surgeryplan", "collaboration::UploadFilesRequestDetail",
     &details<&TessalyConnection::getSurgeryPlanRequestDetails>},
    {"centralizedrestoration", "collaboration::RestorationRequestDetail",
     &details<&TessalyConnection::getCentralizedRestorationRequestDetails>},
    {"referral", "collaboration::UploadFilesRequestDetail", &details<&TessalyConnection::getReferralRequestDetails>},
}};

/// What the sweep's calls would take one after the other if each were as slow as the slowest.
void eightSlowestDetails(benchmark::State& state, QUrl const& base)
{
    auto const connection = connectionTo(base);
    QList<QString> ids;
    for (int index = 0; index < requestsOfAType; ++index)
    {
        ids.append(requestId(0, index));
    }
    GetRequestDetailsInfo const info(true, {}, ids, collaboration::RequestType::Unset);
    std::array<Seconds, typeCount> times{};
    Seconds slowest(0);
    for (auto _ : state)
    {
        for (std::size_t type = 0; type < typeCount; ++type)
        {
            auto const begin = Clock::now();
            if (!detailsRoutes[type].call(*connection, info))
            {
                state.SkipWithError("a call failed");
            }
            times[type] += Clock::now() - begin;
        }
        // The sum over the iterations is that of the one route that took longest.
        Seconds const before = std::exchange(slowest, *std::max_element(times.begin(), times.end()));
        state.SetIterationTime(typeCount * (slowest - before).count());
    }
}

/// What a host does at its start: eight calls, then 64 logos of 20 KB.
template <class Client>
void start(benchmark::State& state, QUrl const& base)
{
    Client client(base);
    bool ok = client.fetch(6);
    for (auto _ : state)
    {
        ok = client.run(bench::settingsPath, "{}", 8) && client.run("/logo", {}, 64) && ok;
    }
    if (!ok)
    {
        state.SkipWithError("a call failed");
    }
}

long residentBytes()
{
    QFile file(QStringLiteral("/proc/self/statm"));
    return file.open(QIODevice::ReadOnly) ? file.readAll().split(' ').value(1).toLong() * ::sysconf(_SC_PAGESIZE) : 0;
}

/// By how much the process grows for each call that waits for its answer.
long bytesOfWaitingCall(QUrl const& base, QUrl const& otherOrigin)
{
    auto const connection = connectionTo(otherOrigin);
    auto const waiting = connectionTo(base.toString() + QStringLiteral("/after/3600"));
    std::vector<TessalyConnectionInterface::Reply<SettingsLicenseInfo>> replies;
    replies.reserve(waitingCalls);
    connection->getSettingsLicenseInfo(installation).wait();
    long const before = residentBytes();
    for (int index = 0; index < waitingCalls; ++index)
    {
        replies.push_back(waiting->getSettingsLicenseInfo(installation));
    }
    // Once this call is answered, the transport has taken all of them.
    connection->getSettingsLicenseInfo(installation).wait();
    return (residentBytes() - before) / waitingCalls;
}

struct Rows
{
    std::string name;
    Row row;
    QUrl base;
    std::vector<std::int64_t> counts;
};

void registerCalls(test::Nginx const& nginx, test::Nginx const& http2Nginx)
{
    std::vector<std::int64_t> const counts{1, 3, 8, 24, 64, 250, 1000, 5000};
    QUrl const http = nginx.url();
    QUrl const tls = nginx.tlsUrl();
    QUrl const http2 = http2Nginx.tlsUrl();
    QUrl const slow = http.toString() + QStringLiteral("/after/0.001");
    QUrl const far = http2.toString() + QStringLiteral("/after/0.05");
    for (auto const& [name, row, base, arguments] : std::vector<Rows>{
             {"library/http", calls<Library>, http, counts},
             {"library/tls", calls<Library>, tls, {1, 1000}},
             {"library/slow", calls<Library>, slow, {1}},
             {"loop/http", calls<LibraryInLoop>, http, {1}},
             {"loop/tls", calls<LibraryInLoop>, tls, {1}},
             {"loop/slow", calls<LibraryInLoop>, slow, {1}},
             {"easy/http", calls<EasyClient>, http, {1}},
             {"easy/tls", calls<EasyClient>, tls, {1}},
             {"easy/slow", calls<EasyClient>, slow, {1}},
             {"multi/http", calls<MultiClient>, http, counts},
             {"multi/tls", calls<MultiClient>, tls, {1000}},
             {"qt/http", calls<QtClient>, http, counts},
             {"qt/tls", calls<QtClient>, tls, {1, 1000}},
             {"qt/slow", calls<QtClient>, slow, {1}},
             {"http1/near", calls<MultiClient>, http2, {1000}},
             {"http2/near", calls<Http2Client>, http2, {1000}},
             {"http1/far", start<MultiClient>, far, {1}},
             {"http2/far", start<Http2Client>, far, {1}},
         })
    {
        auto* const benchmark = benchmark::RegisterBenchmark(name.c_str(), row, base);
        benchmark->UseRealTime()->Unit(benchmark::kMillisecond);
        for (std::int64_t const count : arguments)
        {
            benchmark->Arg(count);
        }
    }
}

void registerTimes(QUrl const& base)
{
    using namespace std::placeholders;
    for (auto const& [name, row] : std::vector<std::pair<std::string, Row>>{
             {"worst/library/alone", std::bind(worstCall<Library>, _1, _2, false)},
             {"worst/library/beside", std::bind(worstCall<Library>, _1, _2, true)},
             {"worst/easy/alone", std::bind(worstCall<EasyPair>, _1, _2, false)},
             {"worst/easy/beside", std::bind(worstCall<EasyPair>, _1, _2, true)},
             {"sweep/time", std::bind(sweep, _1, _2, false)},
             {"sweep/ownThread", std::bind(sweep, _1, _2, true)},
             {"sweep/eightSlowest", eightSlowestDetails},
         })
    {
        benchmark::RegisterBenchmark(name.c_str(), row, base)
            ->UseManualTime()
            ->Iterations(5)
            ->Unit(benchmark::kMillisecond);
    }
}

std::vector<bench::Ratio> const ratios{
    {"library/http/1", "easy/http/1", "time of a call that is waited for, over a libcurl easy handle: HTTP"},
    {"library/tls/1", "easy/tls/1", "  TLS"},
    {"library/slow/1", "easy/slow/1", "  HTTP, a server that takes 1 ms"},
    {"loop/http/1", "easy/http/1", "time of a call taken in an event loop, over an easy handle: HTTP"},
    {"loop/tls/1", "easy/tls/1", "  TLS"},
    {"loop/slow/1", "easy/slow/1", "  HTTP, a server that takes 1 ms"},
    {"loop/http/1", "qt/http/1", "time of a call taken in an event loop, over Qt's access manager: HTTP"},
    {"loop/tls/1", "qt/tls/1", "  TLS"},
    {"loop/slow/1", "qt/slow/1", "  HTTP, a server that takes 1 ms"},
    {"multi/http/8", "library/http/8", "calls a second over a libcurl multi loop: HTTP, 8 at once"},
    {"multi/http/64", "library/http/64", "  64 at once"},
    {"multi/http/1000", "library/http/1000", "  1000 at once"},
    {"multi/tls/1000", "library/tls/1000", "  1000 at once, TLS"},
    {"qt/http/1000", "library/http/1000", "calls a second over Qt's access manager: HTTP, 1000 at once"},
    {"qt/tls/1000", "library/tls/1000", "  1000 at once, TLS"},
    {"worst/library/alone", "", "worst of the small calls made for 150 ms"},
    {"worst/library/beside", "", "worst of the small calls beside a list of 9 MB"},
    {"worst/easy/alone", "", "  of an easy handle, alone"},
    {"worst/easy/beside", "", "  of an easy handle, the list by another one in a second thread"},
    {"sweep/time", "", "sweep over the details of 10 000 requests"},
    {"sweep/time", "sweep/eightSlowest", "  over eight times its slowest call"},
    {"sweep/ownThread", "sweep/time", "  share in it of processor time of the retriever's thread"},
    {"http1/near/1000", "http2/near/1000", "calls a second, HTTP/2 over HTTP/1.1, both libcurl and TLS, 1000 at once"},
    {"http1/far/1", "", "8 POST, then 64 GET of 20 KB, a server that takes 50 ms, HTTP/1.1 with six connections"},
    {"http2/far/1", "", "  HTTP/2 with one"},
};

void serveReplies(test::Nginx const& nginx)
{
    nginx.serve(QString::fromLatin1(bench::settingsPath), bench::settingsReply());
    nginx.serve(QStringLiteral("/logo"), R"({"Logo":")" + QByteArray(20000, 'A') + R"("})");
    nginx.serve(QString::fromLatin1(bench::listPath) + QStringLiteral(".json"), bench::requestsReply(listSize));
    for (DetailsRoute const& route : detailsRoutes)
    {
        nginx.serve(
            QStringLiteral("%1/%2/details").arg(bench::listPath, route.path),
            bench::detailsReply(route.record, requestsOfAType));
    }
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication const application(argc, argv);
    core::HostEnvironment environment = core::hostEnvironment();
    environment.installationReference = [](QString const&) { return installation; };
    core::setHostEnvironment(environment);

    constexpr int withoutEnd = 1000000000;
    test::Nginx const nginx({.keepaliveRequests = withoutEnd});
    test::Nginx const http2Nginx({.http2 = true, .keepaliveRequests = withoutEnd});
    serveReplies(nginx);
    serveReplies(http2Nginx);

    // First, while no memory has been given back that it could use.
    long const bytes = bytesOfWaitingCall(nginx.url(), nginx.tlsUrl());
    registerCalls(nginx, http2Nginx);
    registerTimes(nginx.url());
    int const outcome = bench::runWithRatios(argc, argv, ratios);
    std::printf("  %6ld B   memory of a call that waits, of %d\n", bytes, waitingCalls);
    return outcome;
}
