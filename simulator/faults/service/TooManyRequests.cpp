#include "simulator/faults/ServiceFaultKinds.h"

namespace simulator::faults
{

namespace
{

constexpr Member parameters[] = {
    integer("Seconds", 0, 86'400, "1", "after which the client may try again"),
};

} // namespace

FaultKind const tooManyRequests = {
    .name = "tooManyRequests",
    .meaning = "HTTP 429 with the time to wait.",
    .parameters = parameters,
    .replacement = [](QJsonObject const& settings)
    {
        auto answer = errorAnswer(429, "4290", "Too many requests");
        answer.headers.emplace_back("Retry-After", QByteArray::number(settings["Seconds"].toInt()));
        return answer;
    }};

} // namespace simulator::faults
