#include "simulator/faults/JsonAnswer.h"
#include "simulator/faults/ServiceFaultKinds.h"

namespace simulator::faults
{

namespace
{

constexpr Member parameters[] = {
    optional("Member", Kind::Text, "which; all of them unless given"),
};

} // namespace

FaultKind const missingMember = {
    .name = "missingMember",
    .meaning = "A member of the answer is missing, wherever it stands.",
    .parameters = parameters,
    .distort = [](Answer& answer, QJsonObject const& settings)
    { changeMembers(answer, settings, [](QJsonValue const&) { return QJsonValue(QJsonValue::Undefined); }); }};

} // namespace simulator::faults
