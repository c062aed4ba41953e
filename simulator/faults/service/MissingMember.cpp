#include "simulator/faults/JsonAnswer.h"
#include "simulator/faults/ServiceFaultKinds.h"

namespace simulator::faults
{

/// The member in "Member" is missing; without one, all are.
FaultKind const missingMember = {
    .name = "missingMember", .distort = [](Answer& answer, QJsonObject const& settings) {
        changeMembers(answer, settings, [](QJsonValue const&) { return QJsonValue(QJsonValue::Undefined); });
    }};

} // namespace simulator::faults
