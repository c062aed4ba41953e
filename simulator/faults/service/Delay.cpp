#include "simulator/faults/ServiceFaultKinds.h"

namespace simulator::faults
{

FaultKind const delay = {.name = "delay", .meaning = "Nothing but the time that every fault can take."};

} // namespace simulator::faults
