#pragma once

#include "simulator/Routing.h"

namespace simulator
{

struct Desk;

/// The control resources below "/_control/", by which a test or a demonstration plays the rest of the world. They ask
/// for no credentials and stand in no journal.
///
/// - POST reset: as freshly started; `{"Seed": n}` changes the seed.
/// - POST partner-action: `{"Action": ..., "RequestId": ...}`; the partner's "note" ("Text"), "addFile" ("Name",
///   "FileType", "Size"), "status" ("Status"), "reply" (all three), "withdraw", or "create" ("Type", "ConnectionId").
///   The service's own action is "advanceOrder": the order in "Reference" gets to its next state.
/// - GET orders: every stored order with its uploads, and in "TimesCreated" how many orders its body has created.
/// - GET journal: every request in the order of arrival, and how often each method and path was called. DELETE journal.
/// - POST fault: `{"Kind": ..., "Operation": name or "*", "Times": 1, "Milliseconds": 0}`; "Times" -1: until cleared.
///   The kinds "status" ("Status", "Body"), "html" and "drop" keep the operation from being carried out; "wrongType"
///   and "emptyBody" spoil its answer; "delay" only takes time.
/// - GET faults: the rules and how often each has fired. DELETE faults.
/// - GET cases: the portal's cases with the files announced to them.
/// - GET stats: the usage statistics received.
///
/// `contract` tells which operations a fault may name.
std::vector<Route> controlRoutes(Desk& desk, Router const& contract);

} // namespace simulator
