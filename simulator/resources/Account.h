#pragma once

#include <vector>

namespace simulator
{

struct Route;

/// The account and site of an installation, and the addresses of the services around it. Nothing of it changes.
std::vector<Route> accountRoutes();

} // namespace simulator
