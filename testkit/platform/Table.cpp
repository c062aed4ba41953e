#include "testkit/platform/Table.h"

#include <cstdio>

#include <QJsonDocument>
#include <QJsonObject>

namespace platformcheck
{

namespace
{

constexpr char const* words[] = {"ok", "FAILED", "not offered"};

void writeLine(NamedRow const& row, char const* word)
{
    std::printf("%-11s  %-44s  %s\n", word, row.name.c_str(), row.row->promise);
}

void writeObject(NamedRow const& row, char const* word, std::string const& seen)
{
    QJsonObject const object{
        {QStringLiteral("name"), QString::fromStdString(row.name)},
        {QStringLiteral("promise"), QString::fromUtf8(row.row->promise)},
        {QStringLiteral("result"), QString::fromLatin1(word)},
        {QStringLiteral("seen"), QString::fromStdString(seen)}};
    std::printf("%s\n", QJsonDocument(object).toJson(QJsonDocument::Compact).constData());
}

} // namespace

void Table::list(NamedRow const& row) const
{
    isJson_ ? writeObject(row, "", {}) : writeLine(row, "");
}

void Table::add(NamedRow const& row, Outcome const& outcome)
{
    auto const result = static_cast<int>(outcome.result);
    ++counts_[result];
    isJson_ ? writeObject(row, words[result], outcome.seen) : writeLine(row, words[result]);
    if (!isJson_ && !outcome.seen.empty())
    {
        std::printf("             %s\n", outcome.seen.c_str());
    }
    std::fflush(stdout);
    if (outcome.result == Result::Failed && !outcome.log.isEmpty())
    {
        std::fwrite(outcome.log.constData(), 1, static_cast<std::size_t>(outcome.log.size()), stderr);
    }
}

void Table::end() const
{
    if (!isJson_)
    {
        std::printf("\n%d %s, %d %s, %d %s\n", counts_[0], words[0], counts_[1], words[1], counts_[2], words[2]);
    }
}

} // namespace platformcheck
