#pragma once

#include <span>

#include "tests/soak/Caller.h"

namespace soak
{

/// A kind of traffic. `run` makes one call and either waits for its end or leaves that to the ledger.
struct Traffic
{
    char const* name;
    int weight; ///< how often, compared with the others
    void (*run)(Caller& caller, char const* kind);
};

/// Every kind of call.
std::span<Traffic const> calls();
/// What happens to calls and connections in between.
std::span<Traffic const> disturbances();

} // namespace soak
