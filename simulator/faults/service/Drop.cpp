#include "simulator/faults/ServiceFaultKinds.h"

namespace simulator::faults
{

FaultKind const drop = {
    .name = "drop", .meaning = "The connection is closed without an answer.", .replacement = [](QJsonObject const&) {
        return Answer::drop();
    }};

} // namespace simulator::faults
