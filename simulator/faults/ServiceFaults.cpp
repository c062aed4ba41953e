#include "simulator/faults/ServiceFaults.h"

#include <algorithm>

namespace simulator
{

std::optional<Answer> FaultRule::replacement() const
{
    return kind->replacement == nullptr ? std::nullopt : std::optional(kind->replacement(settings));
}

void FaultRule::distort(Answer& answer) const
{
    if (kind->distort != nullptr)
    {
        kind->distort(answer, settings);
    }
}

void ServiceFaults::add(FaultKind const& kind, QJsonObject const& json)
{
    rules_.push_back(
        {.operation = json["Operation"].toString("*"),
         .kind = &kind,
         .timesLeft = json["Times"].toInt(1),
         .delay = std::chrono::milliseconds(json["Milliseconds"].toInt()),
         .settings = json});
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
