#include "simulator/faults/JsonAnswer.h"
#include "simulator/faults/ServiceFaultKinds.h"

namespace simulator::faults
{

namespace
{

constexpr Member parameters[] = {
    integer("Status", 200, 599, "503", "the HTTP status"),
    optional("Body", Kind::Any, "the body, a text as it stands and JSON as JSON; an error array unless given"),
};

} // namespace

FaultKind const status = {
    .name = "status",
    .meaning = "The call is refused with a status and an error array.",
    .parameters = parameters,
    .replacement = [](QJsonObject const& settings)
    {
        auto const code = settings["Status"].toInt();
        auto answer = errorAnswer(code, QString::number(code * 10), "The service was told to fail here");
        answer.body = bodyOr(settings, answer.body);
        return answer;
    }};

} // namespace simulator::faults
