/// Reading replies from their text into records, against parsing the text alone and against another library's way into
/// plain structures, in time and in memory.

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include <malloc.h>

#include <QByteArray>
#include <QJsonDocument>

#include <benchmark/benchmark.h>
#include <nlohmann/json.hpp>

#include <KeloCommunicationLib/KeloCommunicationLib.h>
#include <KeloCommunicationLib/json/internal/TextReader.h>
#include <KeloCommunicationLib/json/internal/Value.h>

#include "benchmarks/Ratios.h"
#include "benchmarks/Replies.h"

namespace
{

namespace json = jsonSerializer::implementation;

constexpr int listSize = 100000;
constexpr int detailsSize = 5000;

using Requests = std::vector<collaboration::RequestInfo>;
using Details = std::vector<collaboration::RestorationRequestDetail>;

/// With the room behind it that the transport leaves.
QByteArray padded(QByteArray text)
{
    text.reserve(text.size() + rest::replyPadding);
    return text;
}

QByteArray const& requestsOf(std::int64_t count)
{
    static std::map<std::int64_t, QByteArray> texts;
    auto const [place, isNew] = texts.try_emplace(count);
    if (isNew)
    {
        place->second = padded(bench::requestsReply(static_cast<int>(count)));
    }
    return place->second;
}

QByteArray const& detailsOf(std::int64_t count)
{
    static QByteArray const text =
        padded(bench::detailsReply("collaboration::RestorationRequestDetail", static_cast<int>(count)));
    return text;
}

// The peers.

template <QByteArray const& (*textOf)(std::int64_t)>
void document(benchmark::State& state)
{
    QByteArray const& text = textOf(state.range(0));
    for (auto _ : state)
    {
        QJsonDocument parsed = QJsonDocument::fromJson(text);
        benchmark::DoNotOptimize(parsed);
    }
}

struct PlainRequest
{
    std::string requestId;
    std::string transactionId;
    int requestType = -1;
};

// NOLINTNEXTLINE(readability-identifier-naming): the name by which that library finds it
void from_json(nlohmann::json const& source, PlainRequest& request)
{
    source.at("RequestId").get_to(request.requestId);
    source.at("TransactionId").get_to(request.transactionId);
    source.at("RequestType").get_to(request.requestType);
}

void plainStructures(benchmark::State& state)
{
    QByteArray const& text = requestsOf(state.range(0));
    for (auto _ : state)
    {
        auto const requests = nlohmann::json::parse(text.begin(), text.end()).get<std::vector<PlainRequest>>();
        benchmark::DoNotOptimize(requests.data());
    }
}

// The library's way.

template <class List>
List listIn(QByteArray const& text)
{
    using Record = typename List::value_type;
    static json::Type const type = json::listOf<List>(json::recordType<Record>());
    List list;
    if (!json::readText(type, &list, text))
    {
        std::abort();
    }
    return list;
}

template <class List, QByteArray const& (*textOf)(std::int64_t)>
void records(benchmark::State& state)
{
    QByteArray const& text = textOf(state.range(0));
    for (auto _ : state)
    {
        auto const list = listIn<List>(text);
        benchmark::DoNotOptimize(list.data());
    }
}

/// Unless TZ is set, the C library asks the file system for the zone with every time that is read as a local one.
void detailsZoneNamed(benchmark::State& state)
{
    bool const isNamed = qEnvironmentVariableIsSet("TZ");
    if (!isNamed)
    {
        qputenv("TZ", ":/etc/localtime");
    }
    records<Details, detailsOf>(state);
    if (!isNamed)
    {
        qunsetenv("TZ");
    }
}

void throughDocument(benchmark::State& state)
{
    using Converter = json::FromJSON<Requests, 1>;
    QByteArray const& text = requestsOf(state.range(0));
    for (auto _ : state)
    {
        auto const list = Converter::convert(QJsonDocument::fromJson(text));
        benchmark::DoNotOptimize(list.data());
    }
}

/// The time for an entry of a list, without that of destroying it.
void entry(benchmark::State& state)
{
    QByteArray const& text = requestsOf(state.range(0));
    for (auto _ : state)
    {
        auto const begin = std::chrono::steady_clock::now();
        auto const list = listIn<Requests>(text);
        benchmark::DoNotOptimize(list.data());
        std::chrono::duration<double> const time = std::chrono::steady_clock::now() - begin;
        state.SetIterationTime(time.count() / static_cast<double>(list.size()));
    }
}

void manySizes(benchmark::internal::Benchmark* benchmark)
{
    benchmark->RangeMultiplier(10)->Range(1000, 1000000)->UseRealTime()->Unit(benchmark::kMillisecond);
}

void oneSize(benchmark::internal::Benchmark* benchmark)
{
    benchmark->UseRealTime()->Unit(benchmark::kMillisecond);
}

BENCHMARK_TEMPLATE(document, requestsOf)->Name("listDocument")->Apply(manySizes);
BENCHMARK_TEMPLATE(records, Requests, requestsOf)->Name("listRecords")->Apply(manySizes);
BENCHMARK(plainStructures)->Name("listPlain")->Apply(manySizes);
BENCHMARK(throughDocument)->Arg(listSize)->Apply(oneSize);
BENCHMARK_TEMPLATE(document, detailsOf)->Name("detailsDocument")->Arg(detailsSize)->Apply(oneSize);
BENCHMARK_TEMPLATE(records, Details, detailsOf)->Name("detailsRecords")->Arg(detailsSize)->Apply(oneSize);
BENCHMARK(detailsZoneNamed)->Arg(detailsSize)->Apply(oneSize);
BENCHMARK(entry)->Arg(1000)->UseManualTime()->Iterations(1000);
BENCHMARK(entry)->Arg(10000)->UseManualTime()->Iterations(100);
BENCHMARK(entry)->Arg(100000)->UseManualTime()->Iterations(10);
BENCHMARK(entry)->Arg(1000000)->UseManualTime()->Iterations(1);

std::size_t bytesInUse()
{
    struct mallinfo2 const info = ::mallinfo2();
    return info.uordblks + info.hblkhd;
}

/// Reading allocates little beyond the records it returns, so what is in use afterwards is its peak.
void printMemory()
{
    std::size_t const before = bytesInUse();
    QJsonDocument const parsed = QJsonDocument::fromJson(requestsOf(listSize));
    std::size_t const withDocument = bytesInUse();
    auto const requests = listIn<Requests>(requestsOf(listSize));
    std::size_t const withRecords = bytesInUse();
    auto const share = static_cast<double>(withRecords - withDocument) / static_cast<double>(withDocument - before);
    std::printf(
        "  %6.2f  memory of %zu records over that of their document (%.1f MB of text)\n", share, requests.size(),
        static_cast<double>(requestsOf(listSize).size()) / 1e6);
}

} // namespace

int main(int argc, char** argv)
{
    int const outcome = bench::runWithRatios(
        argc, argv,
        {{"listRecords/100000", "listDocument/100000",
          "reading a list of 100 000 into records over QJsonDocument::fromJson alone"},
         {"throughDocument/100000", "listDocument/100000", "the same by way of the document"},
         {"detailsRecords/5000", "detailsDocument/5000",
          "reading 5 000 nested details over QJsonDocument::fromJson alone"},
         {"detailsZoneNamed/5000", "detailsDocument/5000", "the same where TZ names the time zone"},
         {"listPlain/100000", "listRecords/100000",
          "nlohmann-json into plain structures over reading the list into records"},
         {"entry/10000", "entry/1000", "time for an entry of 10 000 over one of 1 000"},
         {"entry/100000", "entry/1000", "time for an entry of 100 000 over one of 1 000"},
         {"entry/1000000", "entry/1000", "time for an entry of 1 000 000 over one of 1 000"}});
    if (outcome == 0)
    {
        printMemory();
    }
    return outcome;
}
