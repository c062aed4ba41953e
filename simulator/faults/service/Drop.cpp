#include "simulator/faults/ServiceFaultKinds.h"

namespace simulator::faults
{

/// The connection is closed without an answer.
FaultKind const drop = {.name = "drop", .replacement = [](QJsonObject const&) { return Answer::drop(); }};

} // namespace simulator::faults
