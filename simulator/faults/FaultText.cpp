#include "simulator/faults/FaultText.h"

namespace simulator::faults
{

FaultText::FaultText(QString const& text) : name_(text.section(':', 0, 0))
{
    for (auto const& part : text.section(':', 1).split(',', Qt::SkipEmptyParts))
    {
        auto const value = part.section('=', 1);
        auto isNumber = false;
        auto const number = value.toDouble(&isNumber);
        values_.insert(part.section('=', 0, 0), isNumber ? QJsonValue(number) : QJsonValue(value));
    }
}

QJsonObject FaultText::toToxic() const
{
    QJsonObject json{{"Type", name_}};
    auto attributes = values_;
    for (auto const* name : {"Stream", "Toxicity"})
    {
        if (auto const value = attributes.take(QString(name).toLower()); !value.isUndefined())
        {
            json.insert(name, value);
        }
    }
    json.insert("Attributes", attributes);
    return json;
}

QJsonObject FaultText::toServiceFault() const
{
    QJsonObject json{{"Kind", name_}};
    for (auto const& key : values_.keys())
    {
        json.insert(key.left(1).toUpper() + key.mid(1), values_[key]);
    }
    return json;
}

} // namespace simulator::faults
