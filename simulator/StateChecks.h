#pragma once

#include "simulator/Http.h"
#include "simulator/State.h"

namespace simulator
{

/// Throws a Refusal with the place unless it fits.
void require(bool fits, Reason reason, QString const& place, QString const& why);

/// What holds a state together: throws a Refusal for a reference to something that is not there, and for what would be
/// found out only when somebody asks for it.
void check(State const& state);

/// Lest an id be given out that somebody has written into the state.
void raiseLastNumbers(State& state);

} // namespace simulator
