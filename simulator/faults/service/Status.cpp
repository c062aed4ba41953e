#include "simulator/faults/JsonAnswer.h"
#include "simulator/faults/ServiceFaultKinds.h"

namespace simulator::faults
{

/// The HTTP status in "Status", 503 unless given, with an error array or what "Body" says.
FaultKind const status = {
    .name = "status",
    .replacement = [](QJsonObject const& settings)
    {
        auto const code = settings["Status"].toInt(503);
        auto answer = errorAnswer(code, QString::number(code * 10), "The service was told to fail here");
        answer.body = bodyOr(settings, answer.body);
        return answer;
    }};

} // namespace simulator::faults
