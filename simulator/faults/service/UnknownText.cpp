#include "simulator/faults/JsonAnswer.h"
#include "simulator/faults/ServiceFaultKinds.h"

namespace simulator::faults
{

/// Where the member in "Member" (without one, any) is a text, it is one that no client knows.
FaultKind const unknownText = {
    .name = "unknownText",
    .distort = [](Answer& answer, QJsonObject const& settings)
    {
        changeMembers(
            answer, settings,
            [](QJsonValue const& before) { return before.isString() ? QJsonValue("NoSuchText") : before; });
    }};

} // namespace simulator::faults
