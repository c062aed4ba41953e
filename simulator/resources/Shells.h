#pragma once

#include <vector>

namespace simulator
{

struct Route;

/// The temporary shells of orders: one for every item on teeth, once its order is Checked; until then the list is
/// empty and the files do not exist. They are made of the order alone, binary STL, the same bytes each time.
std::vector<Route> shellRoutes();

} // namespace simulator
