#include "simulator/faults/ToxicKinds.h"

namespace simulator::faults
{

/// The proxy does not listen, and its open connections are reset. Fires when it begins and for each of them; attempts
/// to connect are refused by the system and cannot be counted.
ToxicKind const down = {.name = "down"};

} // namespace simulator::faults
