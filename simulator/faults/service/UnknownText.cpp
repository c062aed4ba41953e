#include "simulator/faults/JsonAnswer.h"
#include "simulator/faults/ServiceFaultKinds.h"

namespace simulator::faults
{

namespace
{

constexpr Member parameters[] = {
    optional("Member", Kind::Text, "which; all that are texts unless given"),
};

} // namespace

FaultKind const unknownText = {
    .name = "unknownText",
    .meaning = "A text in the answer is one that no client knows.",
    .parameters = parameters,
    .distort = [](Answer& answer, QJsonObject const& settings)
    {
        changeMembers(
            answer, settings,
            [](QJsonValue const& before) { return before.isString() ? QJsonValue("NoSuchText") : before; });
    }};

} // namespace simulator::faults
