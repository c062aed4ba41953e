/// Reading a list reply of 100 000 entries against parsing the text alone, in time and in memory.

#include <cstdio>
#include <string_view>
#include <vector>

#include <malloc.h>

#include <QByteArray>
#include <QJsonDocument>

#include <benchmark/benchmark.h>

#include <KeloCommunicationLib/KeloCommunicationLib.h>

#include "benchmarks/Ratios.h"

namespace
{

constexpr int entries = 100000;

using RequestList = jsonSerializer::implementation::FromJSON<std::vector<collaboration::RequestInfo>, 1>;

QByteArray const& listReply()
{
    static QByteArray const text = []
    {
        QByteArray list = "[";
        for (int index = 0; index < entries; ++index)
        {
            QByteArray const number = QByteArray::number(100000000 + index);
            list += index == 0 ? "" : ",";
            list += R"({"RequestId":"REQ-)" + number + R"(-2b9f","TransactionId":"TX-)" + number
                    + R"(-77","RequestType":)" + QByteArray::number(index % 8) + "}";
        }
        return list + "]";
    }();
    return text;
}

void parseOnly(benchmark::State& state)
{
    for (auto _ : state)
    {
        QJsonDocument document = QJsonDocument::fromJson(listReply());
        benchmark::DoNotOptimize(document);
    }
}

void parseAndMap(benchmark::State& state)
{
    for (auto _ : state)
    {
        auto requests = RequestList::convert(QJsonDocument::fromJson(listReply()));
        if (requests.size() != entries)
        {
            state.SkipWithError("wrong reply");
        }
        benchmark::DoNotOptimize(requests);
    }
}

BENCHMARK(parseOnly)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(parseAndMap)->UseRealTime()->Unit(benchmark::kMillisecond);

std::size_t bytesInUse()
{
    struct mallinfo2 const info = ::mallinfo2();
    return info.uordblks + info.hblkhd;
}

/// The mapping allocates nothing beyond the records it returns, so what is in use afterwards is its peak.
void printMemory()
{
    std::size_t const before = bytesInUse();
    QJsonDocument const document = QJsonDocument::fromJson(listReply());
    std::size_t const withDocument = bytesInUse();
    auto const requests = RequestList::convert(document);
    std::size_t const withRecords = bytesInUse();
    auto const share = static_cast<double>(withRecords - withDocument) / static_cast<double>(withDocument - before);
    std::printf(
        "  %6.2f  memory of %zu records over that of their document (%.1f MB of text)\n", share, requests.size(),
        static_cast<double>(listReply().size()) / 1e6);
}

} // namespace

int main(int argc, char** argv)
{
    int const outcome = bench::runWithRatios(
        argc, argv, {{"parseAndMap", "parseOnly", "parsing and mapping a list of 100 000 over parsing alone"}});
    if (outcome == 0)
    {
        printMemory();
    }
    return outcome;
}
