#pragma once

#include <QString>

#include <vector>

namespace simulator
{

struct Route;
struct State;

struct Catalog
{
    QString installation = {};
    QString version = {};
    QString oldestUsable = {};
    QString fileId = {};
    int fileSize = 0;
};

/// The article catalogue on offer and what it is to a client that has another version of it:
///
/// | the client's version                    | "Status"    |
/// |-----------------------------------------|-------------|
/// | the one on offer, or newer              | "None"      |
/// | older, but from the oldest usable one on | "Optional"  |
/// | older than the oldest usable one        | "Mandatory" |
std::vector<Route> catalogRoutes();
void seedCatalogs(State& state);

} // namespace simulator
