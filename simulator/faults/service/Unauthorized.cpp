#include "simulator/faults/ServiceFaultKinds.h"

namespace simulator::faults
{

/// As if the credentials were wrong.
FaultKind const unauthorized = {.name = "unauthorized", .replacement = [](QJsonObject const&) {
                                    return Refusal(Reason::Unauthorized, {}).answer();
                                }};

} // namespace simulator::faults
