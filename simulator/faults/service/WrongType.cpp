#include "simulator/faults/JsonAnswer.h"
#include "simulator/faults/ServiceFaultKinds.h"

namespace simulator::faults
{

namespace
{

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

/// The member in "Member" has another JSON type than it should; without one, the whole answer has.
FaultKind const wrongType = {
    .name = "wrongType",
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
