#pragma once

#include "simulator/faults/Toxic.h"

#include <span>

namespace simulator::faults
{

// One file each in toxics/, and a row in ToxicKinds.cpp.
extern ToxicKind const bandwidth;
extern ToxicKind const down;
extern ToxicKind const latency;
extern ToxicKind const limitData;
extern ToxicKind const resetPeer;
extern ToxicKind const slicer;
extern ToxicKind const slowClose;
extern ToxicKind const timeout;

/// Every toxic there is.
std::span<ToxicKind const* const> toxicKinds();
/// Null if there is none of that name.
ToxicKind const* findToxicKind(QString const& name);

} // namespace simulator::faults
