#include "simulator/faults/JsonAnswer.h"
#include "simulator/faults/ServiceFaultKinds.h"

namespace simulator::faults
{

FaultKind const cutChunk = {
    .name = "cutChunk",
    .meaning =
        "The operation is carried out, its answer comes in chunks, and the connection is closed within the second.",
    .distort =
        [](Answer& answer, QJsonObject const&)
    {
        auto const body = answer.body.isEmpty() ? QByteArray("{}") : answer.body;
        auto const first = body.left(body.size() / 2);
        auto const rest = body.mid(first.size());
        answer.raw = {
            .bytes = wireHead(answer, "Transfer-Encoding: chunked\r\n") + QByteArray::number(first.size(), 16) + "\r\n"
                     + first + "\r\n" + QByteArray::number(rest.size() + 8, 16) + "\r\n" + rest};
    },
    .writesRaw = true};

} // namespace simulator::faults
