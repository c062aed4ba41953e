#pragma once

#include <vector>

namespace simulator
{

struct Route;

/// The published software release and documents: instructions for use, user interface translation, about document and
/// help files. The second installation has no help files. Nothing of it changes.
std::vector<Route> documentRoutes();

} // namespace simulator
