#include "simulator/faults/JsonAnswer.h"
#include "simulator/faults/ServiceFaultKinds.h"

namespace simulator::faults
{

FaultKind const endlessHeaders = {
    .name = "endlessHeaders",
    .meaning = "The operation is carried out, and its answer begins with headers that do not end.",
    .distort =
        [](Answer& answer, QJsonObject const&)
    {
        auto head = wireHead(answer, {});
        head.chop(2);
        answer.raw = {.bytes = head, .repeated = ("X-More: " + QByteArray(1000, 'x') + "\r\n").repeated(64)};
    },
    .writesRaw = true};

} // namespace simulator::faults
