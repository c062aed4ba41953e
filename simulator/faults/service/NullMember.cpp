#include "simulator/faults/JsonAnswer.h"
#include "simulator/faults/ServiceFaultKinds.h"

namespace simulator::faults
{

/// The member in "Member" is null; without one, all are.
FaultKind const nullMember = {.name = "nullMember", .distort = [](Answer& answer, QJsonObject const& settings) {
                                  changeMembers(answer, settings, [](QJsonValue const&) { return QJsonValue(); });
                              }};

} // namespace simulator::faults
