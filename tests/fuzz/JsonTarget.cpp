#include <iterator>

#include <QJsonArray>
#include <QJsonDocument>

#include <KeloCommunicationLib/json/internal/Converters.h>
#include <tests/support/AllRecords.h>

#include "tests/fuzz/Fuzzing.h"

// The input's first byte chooses the record, the rest is the text of a reply. Reading all records from each input would
// let a key count for every record that knows it, but it is 60 times slower: one record at a time, libFuzzer found both
// more code and more combinations in a minute.

namespace
{

namespace json = jsonSerializer;

template <class Record>
QJsonObject rewritten(QJsonObject const& object)
{
    return json::toJson(json::fromJson<Record>(object)).toObject();
}

template <class Record>
void readObject(QJsonObject const& object)
{
    QJsonObject const once = rewritten<Record>(object);
    if (test::goesBothWays(json::implementation::fieldsOf<Record>))
    {
        fuzz::require(rewritten<Record>(once) == once, "what was written reads as the same record");
    }
}

template <class Record>
void readList(QJsonDocument const& document)
{
    auto const records = json::implementation::FromJSON<std::vector<Record>, 1>::convert(document);
    auto const list = json::implementation::listIn(document);
    fuzz::require(
        records.size() == (list ? static_cast<std::size_t>(list->size()) : 0), "one entry for each element of a list");
    for (std::size_t index = 0; index < records.size(); ++index)
    {
        fuzz::require(
            json::toJson(records[index]).toObject()
                == rewritten<Record>(list->at(static_cast<qsizetype>(index)).toObject()),
            "an entry of a list is what its element gives alone");
    }
}

void readOddOnes(QJsonDocument const& document)
{
    auto const shells = json::fromJson<TempShellDataResponse>(document.array());
    fuzz::require(shells.getTempShellFile().size() == document.array().size(), "one shell for each element");
    for (QJsonValue const value : document.array())
    {
        json::fromJson<collaboration::RequestStatus>(value);
    }
}

template <class Record>
void read(QJsonDocument const& document)
{
    readObject<Record>(document.object());
    readList<Record>(document);
}

template <class... Records>
void readOne(std::size_t which, QJsonDocument const& document, test::RecordList<Records...>)
{
    static constexpr void (*readers[])(QJsonDocument const&) = {&read<Records>..., &readOddOnes};
    readers[which % std::size(readers)](document);
}

} // namespace

int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    if (size == 0)
    {
        return 0;
    }
    auto const document = QJsonDocument::fromJson(
        QByteArray::fromRawData(reinterpret_cast<char const*>(data + 1), static_cast<qsizetype>(size) - 1));
    if (!document.isNull())
    {
        readOne(data[0], document, test::AllRecords());
    }
    return 0;
}
