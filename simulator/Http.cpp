#include "simulator/Http.h"

#include <QJsonDocument>

#include <algorithm>
#include <array>

namespace simulator
{

namespace
{

struct ReasonRow
{
    int status;
    char const* code;
    char const* text;
};

// One row a reason, in the order of the enumeration.
constexpr std::array<ReasonRow, 16> reasons = {{
    {400, "4000", "The body is not a JSON object"},
    {400, "4001", "A required member is missing"},
    {400, "4002", "A member is not known here"},
    {400, "4003", "A member has the wrong type"},
    {400, "4004", "A value is out of range"},
    {400, "4005", "The query is not understood"},
    {400, "4006", "The body refers to something unknown"},
    {400, "4007", "The content is not what was announced"},
    {401, "4010", "The credentials are missing or wrong"},
    {403, "4030", "The control resources serve no pages of others"},
    {404, "4040", "There is no such resource"},
    {404, "4041", "There is nothing with this id"},
    {405, "4050", "The resource does not take this method"},
    {409, "4090", "It is not the time for this"},
    {409, "4091", "The journal tells otherwise"},
    {501, "5010", "Not in the recording"}, // a status that the service itself never answers with
}};

static_assert(reasons.size() == static_cast<std::size_t>(Reason::NotRecorded) + 1);

std::string sentence(Reason reason, QString const& detail)
{
    std::string const text = reasons.at(static_cast<std::size_t>(reason)).text;
    return detail.isEmpty() ? text : text + ": " + detail.toStdString();
}

} // namespace

QByteArray HttpRequest::header(char const* name) const
{
    auto const found = std::find_if(
        headers.begin(), headers.end(),
        [name](auto const& header) { return header.first.compare(name, Qt::CaseInsensitive) == 0; });
    return found == headers.end() ? QByteArray() : found->second;
}

Answer Answer::json(QJsonObject const& object, int status)
{
    return {.status = status, .body = QJsonDocument(object).toJson(QJsonDocument::Compact)};
}

Answer Answer::json(QJsonArray const& array)
{
    return {.body = QJsonDocument(array).toJson(QJsonDocument::Compact)};
}

Answer Answer::page(QJsonObject const& object)
{
    return {.body = QJsonDocument(object).toJson(QJsonDocument::Indented)};
}

Answer Answer::noContent()
{
    return {.status = 204};
}

Answer Answer::drop()
{
    return {.status = 0, .dropped = true};
}

Refusal::Refusal(Reason reason, QString const& detail)
    : std::invalid_argument(sentence(reason, detail)), reason_(reason)
{
}

Answer Refusal::answer() const
{
    auto const& row = reasons.at(static_cast<std::size_t>(reason_));
    return errorAnswer(row.status, row.code, QString::fromUtf8(what()));
}

Answer errorAnswer(int status, QString const& code, QString const& message)
{
    auto answer = Answer::json(QJsonArray{QJsonObject{{"Code", code}, {"Message", message}}});
    answer.status = status;
    return answer;
}

} // namespace simulator
