#include "simulator/faults/ServiceFaultKinds.h"

namespace simulator::faults
{

/// The operation is carried out, its answer has no body.
FaultKind const emptyBody = {
    .name = "emptyBody", .distort = [](Answer& answer, QJsonObject const&) { answer.body.clear(); }};

} // namespace simulator::faults
