#include "simulator/faults/ServiceFaultKinds.h"

namespace simulator::faults
{

FaultKind const unauthorized = {
    .name = "unauthorized", .meaning = "As if the credentials were wrong.", .replacement = [](QJsonObject const&) {
        return Refusal(Reason::Unauthorized, {}).answer();
    }};

} // namespace simulator::faults
