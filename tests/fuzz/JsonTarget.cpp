#include <KeloCommunicationLib/json/internal/Converters.h>
#include <tests/wire/BothWays.h>

#include "tests/fuzz/Fuzzing.h"

// The input's first byte chooses the record and, with its highest bit, a list of these; the rest is the text of a
// reply. Reading all records from each input would let a key count for every record that knows it, but it is 60 times
// slower: one record at a time, libFuzzer found both more code and more combinations in a minute.

namespace
{

test::WireType const& typeFor(std::uint8_t choice)
{
    auto const& types = choice < 128 ? test::allRecords() : test::listsOfAllRecords();
    return types[choice % 128 % types.size()];
}

qsizetype countEntries(test::WireType const& type, void const* list)
{
    qsizetype count = 0;
    auto const countOne = [&](void const*) { ++count; };
    type.type->each(list, countOne);
    return count;
}

void check(test::WireType const& type, QByteArray const& text)
{
    QJsonDocument const document = QJsonDocument::fromJson(text);
    test::Reading const reading = test::readFromDocument(type, document);
    fuzz::require(
        test::readFromText(type, text).content == reading.content, "text and document read as the same value");
    if (type.type->kind == jsonSerializer::ValueKind::List)
    {
        auto const list = jsonSerializer::implementation::listIn(document);
        fuzz::require(
            countEntries(type, reading.value.get()) == (list ? list->size() : 0), "one entry for each list element");
        return;
    }
    QJsonObject const written = writeRecord(reading.value.get(), type.type->rows);
    test::Reading const again = test::readFromDocument(type, QJsonDocument(written));
    fuzz::require(
        writeRecord(again.value.get(), type.type->rows) == written, "what was written reads as the same record");
}

} // namespace

int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    if (size > 0)
    {
        check(typeFor(data[0]), QByteArray(reinterpret_cast<char const*>(data + 1), static_cast<qsizetype>(size) - 1));
    }
    return 0;
}
