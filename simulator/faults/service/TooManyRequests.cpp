#include "simulator/faults/ServiceFaultKinds.h"

namespace simulator::faults
{

/// HTTP 429, to be tried again after "Seconds", 1 unless given.
FaultKind const tooManyRequests = {
    .name = "tooManyRequests",
    .replacement = [](QJsonObject const& settings)
    {
        auto answer = errorAnswer(429, "4290", "Too many requests");
        answer.headers.emplace_back("Retry-After", QByteArray::number(settings["Seconds"].toInt(1)));
        return answer;
    }};

} // namespace simulator::faults
