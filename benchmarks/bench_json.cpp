/// Reading replies from their text into records, against parsing the text alone and against another library's way into
/// plain structures, in time and in memory.

#include <chrono>
#include <cstdio>
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

namespace
{

namespace json = jsonSerializer::implementation;

constexpr int listSize = 100000;
constexpr int detailsSize = 5000;

using Requests = std::vector<collaboration::RequestInfo>;
using Details = std::vector<collaboration::RestorationRequestDetail>;

/// An array of `count` elements that `element` makes, with the room behind it that the transport leaves.
template <class Element>
QByteArray arrayOf(int count, Element element)
{
    QByteArray text = "[";
    for (int index = 0; index < count; ++index)
    {
        text += (index == 0 ? "" : ",") + element(QByteArray::number(100000000 + index), index);
    }
    text += "]";
    text.reserve(text.size() + 64);
    return text;
}

QByteArray requestsReply(int count)
{
    return arrayOf(
        count,
        [](QByteArray const& number, int index)
        {
            return R"({"RequestId":"REQ-)" + number + R"(-2b9f","TransactionId":"TX-)" + number
                   + R"(-77","RequestType":)" + QByteArray::number(index % 8) + "}";
        });
}

QByteArray const& listReply()
{
    static QByteArray const text = requestsReply(listSize);
    return text;
}

QByteArray const& detailsReply()
{
    static QByteArray const text = arrayOf(
        detailsSize,
        [](QByteArray const& number, int)
        {
            QByteArray const file = R"({"Id":"FILE-)" + number
                                    + R"(","State":1,"Name":"upper jaw.stl","Size":12345678,"NumberOfChunks":12,)"
                                      R"("ChunkSize":1048576,"FileType":"stl","CreatedBy":"Dr. Example",)"
                                      R"("IsCreator":true,"IsMarkedAsSeen":false})";
            return R"({"PartnershipId":"PS-1","Id":"PARTNER-1","PartnerName":"Laboratory",)"
                   R"("CollaborationRequestDetailInfos":[{"Restorations":[{"ImplantConnections":[{"ToothNumber":36,)"
                   R"("ImplantConnectionId":"IC-4.1","ManufacturerId":"M-1","ImplantCategory":"Bone","Size":"4.1"}],)"
                   R"("ToothNumberStart":36,"ToothNumberEnd":37,"Type":"Crown","Material":"Zirconia","Color":"A2",)"
                   R"("Note":"","UseAuthenticProducts":true,"BarType":""}],"Id":"REQ-)"
                   + number + R"(","TransactionId":"TX-)" + number + R"(","Key":"KC-)" + number
                   + R"(","Status":2,"VersionNumber":"3.1","Metadata":"","DueDate":"2026-12-31",)"
                     R"("CreationTimestamp":"2026-11-21T10:11:12.345Z","Files":[)"
                   + file + "," + file
                   + R"(],"NoteInfos":[{"Text":"As discussed","CreatedAt":"2026-11-21T10:11:12.345Z",)"
                     R"("CreatedBy":"Dr. Example","IsCreator":true}],"InternalCaseIdentifier":"C-1",)"
                     R"("OrderReference":"","TreatingClinician":"Dr. Example","PatientId":"P-1",)"
                     R"("PatientFirstName":"Ada","PatientLastName":"Example","PatientDateOfBirth":"1980-01-02",)"
                     R"("PatientGender":"Female","RestorationURL":"https://kelo.example/r/1"}]})";
        });
    return text;
}

// The peers.

template <QByteArray const& (*text)()>
void document(benchmark::State& state)
{
    for (auto _ : state)
    {
        QJsonDocument parsed = QJsonDocument::fromJson(text());
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
    for (auto _ : state)
    {
        auto const requests =
            nlohmann::json::parse(listReply().begin(), listReply().end()).get<std::vector<PlainRequest>>();
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

template <class List, QByteArray const& (*text)()>
void records(benchmark::State& state)
{
    for (auto _ : state)
    {
        auto const list = listIn<List>(text());
        benchmark::DoNotOptimize(list.data());
    }
}

void throughDocument(benchmark::State& state)
{
    using Converter = json::FromJSON<Requests, 1>;
    for (auto _ : state)
    {
        auto const list = Converter::convert(QJsonDocument::fromJson(listReply()));
        benchmark::DoNotOptimize(list.data());
    }
}

/// The time for an entry of a list, without that of destroying it.
template <int count>
void entry(benchmark::State& state)
{
    QByteArray const text = requestsReply(count);
    for (auto _ : state)
    {
        auto const begin = std::chrono::steady_clock::now();
        auto const list = listIn<Requests>(text);
        benchmark::DoNotOptimize(list.data());
        std::chrono::duration<double> const time = std::chrono::steady_clock::now() - begin;
        state.SetIterationTime(time.count() / count);
    }
}

BENCHMARK_TEMPLATE(document, listReply)->Name("listDocument")->UseRealTime();
BENCHMARK_TEMPLATE(document, detailsReply)->Name("detailsDocument")->UseRealTime();
BENCHMARK(plainStructures)->UseRealTime();
BENCHMARK_TEMPLATE(records, Requests, listReply)->Name("listRecords")->UseRealTime();
BENCHMARK_TEMPLATE(records, Details, detailsReply)->Name("detailsRecords")->UseRealTime();
BENCHMARK(throughDocument)->UseRealTime();
BENCHMARK_TEMPLATE(entry, 1000)->Name("entryOf1000")->UseManualTime()->Iterations(1000);
BENCHMARK_TEMPLATE(entry, 10000)->Name("entryOf10000")->UseManualTime()->Iterations(100);
BENCHMARK_TEMPLATE(entry, 100000)->Name("entryOf100000")->UseManualTime()->Iterations(10);
BENCHMARK_TEMPLATE(entry, 1000000)->Name("entryOf1000000")->UseManualTime()->Iterations(1);

std::size_t bytesInUse()
{
    struct mallinfo2 const info = ::mallinfo2();
    return info.uordblks + info.hblkhd;
}

/// Reading allocates little beyond the records it returns, so what is in use afterwards is its peak.
void printMemory()
{
    std::size_t const before = bytesInUse();
    QJsonDocument const parsed = QJsonDocument::fromJson(listReply());
    std::size_t const withDocument = bytesInUse();
    auto const requests = listIn<Requests>(listReply());
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
        argc, argv,
        {{"listRecords", "listDocument", "reading a list of 100 000 into records over QJsonDocument::fromJson alone"},
         {"throughDocument", "listDocument", "the same by way of the document"},
         {"detailsRecords", "detailsDocument", "reading 5 000 nested details over QJsonDocument::fromJson alone"},
         {"plainStructures", "listRecords", "nlohmann-json into plain structures over reading the list into records"},
         {"entryOf10000", "entryOf1000", "time for an entry of 10 000 over one of 1 000"},
         {"entryOf100000", "entryOf1000", "time for an entry of 100 000 over one of 1 000"},
         {"entryOf1000000", "entryOf1000", "time for an entry of 1 000 000 over one of 1 000"}});
    if (outcome == 0)
    {
        printMemory();
    }
    return outcome;
}
