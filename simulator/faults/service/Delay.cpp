#include "simulator/faults/ServiceFaultKinds.h"

namespace simulator::faults
{

/// Nothing but the time that every rule can take ("Milliseconds").
FaultKind const delay = {.name = "delay"};

} // namespace simulator::faults
