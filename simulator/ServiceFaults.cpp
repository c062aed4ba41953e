#include "simulator/ServiceFaults.h"

#include <QJsonDocument>

#include <algorithm>
#include <array>

namespace simulator
{

/// What a kind of fault does: stand in for the operation, or spoil its answer. The delay of a rule comes before either.
struct FaultKind
{
    char const* name = "";
    Answer (*replacement)(FaultRule const& rule) = nullptr;
    void (*distort)(Answer& answer) = nullptr;
};

namespace
{

Answer statusAnswer(FaultRule const& rule)
{
    auto const status = rule.status != 0 ? rule.status : 503;
    auto answer = errorAnswer(status, QString::number(status * 10), "The service was told to fail here");
    answer.body = rule.body.value_or(answer.body);
    return answer;
}

Answer htmlAnswer(FaultRule const& rule)
{
    return {
        .status = rule.status != 0 ? rule.status : 502,
        .body = rule.body.value_or("<!DOCTYPE html><html><body><h1>Bad Gateway</h1></body></html>"),
        .contentType = "text/html"};
}

void changeType(Answer& answer)
{
    auto const wasList = answer.body.startsWith('[');
    answer.body = wasList ? R"({"Items":"none","Count":"zero"})" : R"([1,"two",null])";
}

constexpr std::array<FaultKind, 6> kinds = {{
    {.name = "status", .replacement = statusAnswer},
    {.name = "drop", .replacement = [](FaultRule const&) { return Answer::drop(); }},
    {.name = "delay"},
    {.name = "html", .replacement = htmlAnswer},
    {.name = "wrongType", .distort = changeType},
    {.name = "emptyBody", .distort = [](Answer& answer) { answer.body.clear(); }},
}};

QByteArray bodyText(QJsonValue const& value)
{
    if (value.isString())
    {
        return value.toString().toUtf8();
    }
    auto const document = value.isArray() ? QJsonDocument(value.toArray()) : QJsonDocument(value.toObject());
    return document.toJson(QJsonDocument::Compact);
}

} // namespace

std::optional<Answer> FaultRule::replacement() const
{
    return kind->replacement == nullptr ? std::nullopt : std::optional(kind->replacement(*this));
}

void FaultRule::distort(Answer& answer) const
{
    if (kind->distort != nullptr)
    {
        kind->distort(answer);
    }
}

void ServiceFaults::add(QJsonObject const& json)
{
    auto const name = json["Kind"].toString();
    auto const* kind = std::find_if(
        kinds.begin(), kinds.end(), [&name](FaultKind const& row) { return name == QLatin1String(row.name); });
    if (kind == kinds.end())
    {
        throw Refusal(Reason::BadValue, "Kind");
    }
    auto const body = json["Body"];
    rules_.push_back(
        {.operation = json["Operation"].toString("*"),
         .kind = kind,
         .timesLeft = json["Times"].toInt(1),
         .status = json["Status"].toInt(),
         .body = body.isUndefined() ? std::nullopt : std::optional(bodyText(body)),
         .delay = std::chrono::milliseconds(json["Milliseconds"].toInt())});
}

std::optional<FaultRule> ServiceFaults::fire(QString const& operation)
{
    auto const found = std::find_if(
        rules_.begin(), rules_.end(),
        [&operation](FaultRule const& rule)
        { return rule.timesLeft != 0 && (rule.operation == QLatin1String("*") || rule.operation == operation); });
    if (found == rules_.end())
    {
        return std::nullopt;
    }
    ++found->fired;
    found->timesLeft = std::max(found->timesLeft - 1, -1);
    return *found;
}

void ServiceFaults::clear()
{
    rules_.clear();
}

QJsonArray ServiceFaults::toJson() const
{
    QJsonArray array;
    for (auto const& rule : rules_)
    {
        array.append(QJsonObject{
            {"Operation", rule.operation},
            {"Kind", rule.kind->name},
            {"TimesLeft", rule.timesLeft},
            {"Fired", rule.fired}});
    }
    return array;
}

} // namespace simulator
