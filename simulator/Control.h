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
///   The kinds, and what else they can be told, stand in faults/service/, one file each.
/// - GET faults: the rules and how often each has fired. DELETE faults.
/// - POST toxic: `{"Type": ..., "Stream": "upstream" or "downstream", "Toxicity": 1, "Attributes": {...}}`, in force at
///   the fault proxy in front until cleared. The types stand in faults/toxics/. Better sent to the direct address.
/// - GET toxics: those in force and how often each has fired. DELETE toxics.
/// - GET cases: the portal's cases with the files announced to them.
/// - GET stats: the usage statistics received.
///
/// `contract` tells which operations a fault may name.
std::vector<Route> controlRoutes(Desk& desk, Router const& contract);

/// Adds what POST fault adds; throws a Refusal.
void addFault(Desk& desk, Router const& contract, QJsonObject const& rule);

} // namespace simulator
