#pragma once

#include <vector>

namespace simulator
{

struct Route;

/// The people and parties around an installation: its users, the studies it takes part in with their clinical partners,
/// and the keys of outside parties. Nothing of it changes.
std::vector<Route> userRoutes();

} // namespace simulator
