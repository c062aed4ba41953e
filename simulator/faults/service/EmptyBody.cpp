#include "simulator/faults/ServiceFaultKinds.h"

namespace simulator::faults
{

FaultKind const emptyBody = {
    .name = "emptyBody",
    .meaning = "The operation is carried out, its answer has no body.",
    .distort = [](Answer& answer, QJsonObject const&) { answer.body.clear(); }};

} // namespace simulator::faults
