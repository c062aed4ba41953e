#include "simulator/faults/JsonAnswer.h"
#include "simulator/faults/ServiceFaultKinds.h"

namespace simulator::faults
{

namespace
{

constexpr Member parameters[] = {
    optional("Member", Kind::Text, "which; the whole answer unless given"),
};

QJsonValue retyped(QJsonValue const& before)
{
    switch (before.type())
    {
    case QJsonValue::String:
        return 4711;
    case QJsonValue::Array:
        return QJsonObject{{"Items", "none"}};
    case QJsonValue::Object:
        return QJsonArray{1, "two", QJsonValue()};
    default:
        return "text";
    }
}

} // namespace

FaultKind const wrongType = {
    .name = "wrongType",
    .meaning = "A member of the answer has another JSON type than it should.",
    .parameters = parameters,
    .distort = [](Answer& answer, QJsonObject const& settings)
    {
        if (settings.contains("Member"))
        {
            changeMembers(answer, settings, retyped);
            return;
        }
        auto const wasList = answer.body.startsWith('[');
        answer.body = wasList ? R"({"Items":"none","Count":"zero"})" : R"([1,"two",null])";
    }};

} // namespace simulator::faults
