#pragma once

#include "simulator/faults/ServiceFaults.h"

#include <span>

namespace simulator::faults
{

// One file each in service/, and a row in ServiceFaultKinds.cpp.
extern FaultKind const cutChunk;
extern FaultKind const delay;
extern FaultKind const drop;
extern FaultKind const earlyHints;
extern FaultKind const emptyBody;
extern FaultKind const endlessHeaders;
extern FaultKind const gzipBomb;
extern FaultKind const html;
extern FaultKind const missingMember;
extern FaultKind const nullMember;
extern FaultKind const redirect;
extern FaultKind const status;
extern FaultKind const tooManyRequests;
extern FaultKind const truncatedBody;
extern FaultKind const unauthorized;
extern FaultKind const unknownText;
extern FaultKind const wrongType;

/// Every fault of the service there is.
std::span<FaultKind const* const> serviceFaultKinds();
/// Null if there is none of that name.
FaultKind const* findServiceFaultKind(QString const& name);

} // namespace simulator::faults
