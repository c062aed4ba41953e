#include "simulator/faults/ToxicKinds.h"

namespace simulator::faults
{

/// Attempts to connect are refused by the system and cannot be counted.
ToxicKind const down = {
    .name = "down",
    .meaning =
        "The proxy does not listen, and its open connections are reset. Fires when it begins and for each of them."};

} // namespace simulator::faults
