#pragma once

#include <vector>

namespace simulator
{

struct Route;

/// The article catalogue on offer and what it is to a client that has another version of it. The versions are those of
/// the table in Catalog.cpp:
///
/// | the client's version                    | "Status"    |
/// |-----------------------------------------|-------------|
/// | the one on offer, or newer              | "None"      |
/// | older, but from the oldest usable one on | "Optional"  |
/// | older than the oldest usable one        | "Mandatory" |
std::vector<Route> catalogRoutes();

} // namespace simulator
