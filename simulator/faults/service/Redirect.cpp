#include "simulator/faults/ServiceFaultKinds.h"

namespace simulator::faults
{

namespace
{

constexpr Member parameters[] = {
    integer("Status", 300, 399, "307", "the HTTP status"),
    optional("Location", Kind::Text, "where to; another origin unless given", "http://elsewhere.invalid/"),
};

} // namespace

FaultKind const redirect = {
    .name = "redirect",
    .meaning = "A redirect.",
    .parameters = parameters,
    .replacement = [](QJsonObject const& settings)
    {
        Answer answer{.status = settings["Status"].toInt()};
        answer.headers.emplace_back("Location", settings["Location"].toString().toUtf8());
        return answer;
    }};

} // namespace simulator::faults
