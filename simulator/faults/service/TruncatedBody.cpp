#include "simulator/faults/JsonAnswer.h"
#include "simulator/faults/ServiceFaultKinds.h"

namespace simulator::faults
{

FaultKind const truncatedBody = {
    .name = "truncatedBody",
    .meaning = "The operation is carried out, and the connection closed after half of the body that was announced.",
    .distort =
        [](Answer& answer, QJsonObject const&)
    {
        // An answer without a body is given one, lest there be nothing to cut.
        auto const body = answer.body.isEmpty() ? QByteArray("{}") : answer.body;
        auto const length = "Content-Length: " + QByteArray::number(body.size()) + "\r\n";
        answer.raw = {.bytes = wireHead(answer, length) + body.left(body.size() / 2)};
    },
    .writesRaw = true};

} // namespace simulator::faults
