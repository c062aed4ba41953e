#include "simulator/faults/ServiceFaults.h"

#include "simulator/faults/FindByName.h"
#include "simulator/faults/ServiceFaultKinds.h"

#include <algorithm>

namespace simulator
{

namespace
{

constexpr qint64 aDay = 86'400'000;

constexpr Member members[] = {
    {"Kind", Kind::Text, true, {}, "one of the faults listed below, with their own parameters"},
    optional("Operation", Kind::Text, "whose calls it strikes; * strikes all", "*"),
    integer("Times", -1, 1'000'000, "1", "how many calls it strikes; -1: until it is taken away"),
    integer("Milliseconds", 0, aDay, "0", "how long the call waits before"),
};

} // namespace

Schema const faultMembers = members;

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

int ServiceFaults::add(QJsonObject const& json, QStringList const& operations)
{
    auto const name = json["Kind"].toString();
    auto const* const kind = faults::findServiceFaultKind(name);
    if (kind == nullptr)
    {
        throw Refusal(Reason::BadValue, "Kind: " + oneOf(name, faults::namesOf(faults::serviceFaultKinds())));
    }
    std::vector<Member> all(std::begin(members), std::end(members));
    all.insert(all.end(), kind->parameters.begin(), kind->parameters.end());
    check(all, json);
    auto const settings = completed(all, json);
    auto const operation = settings["Operation"].toString();
    if (operation != QLatin1String("*") && !operations.contains(operation))
    {
        throw Refusal(Reason::BadValue, "Operation: " + oneOf(operation, QStringList("*") + operations));
    }
    rules_.push_back(
        {.id = ++lastId_,
         .operation = operation,
         .kind = kind,
         .timesLeft = settings["Times"].toInt(),
         .delay = std::chrono::milliseconds(settings["Milliseconds"].toInt()),
         .settings = settings});
    return lastId_;
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

bool ServiceFaults::remove(int id)
{
    return std::erase_if(rules_, [id](FaultRule const& rule) { return rule.id == id; }) > 0;
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
        auto json = rule.settings;
        json["Id"] = rule.id;
        json["TimesLeft"] = rule.timesLeft;
        json["Fired"] = rule.fired;
        json["IsUsedUp"] = rule.timesLeft == 0;
        array.append(json);
    }
    return array;
}

} // namespace simulator
