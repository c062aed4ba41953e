#include "simulator/faults/ServiceFaultKinds.h"

namespace simulator::faults
{

FaultKind const earlyHints = {
    .name = "earlyHints",
    .meaning = "An interim answer, HTTP 103, comes before the real one, on a connection that goes on.",
    .distort =
        [](Answer& answer, QJsonObject const&) {
            answer.raw = {
                .bytes = "HTTP/1.1 103 Early Hints\r\nLink: </style.css>; rel=preload\r\n\r\n", .isInterim = true};
        },
    .writesRaw = true};

} // namespace simulator::faults
