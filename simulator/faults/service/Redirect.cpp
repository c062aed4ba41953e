#include "simulator/faults/ServiceFaultKinds.h"

namespace simulator::faults
{

/// A redirect (307, or "Status") to "Location", another origin unless given.
FaultKind const redirect = {
    .name = "redirect",
    .replacement = [](QJsonObject const& settings)
    {
        Answer answer{.status = settings["Status"].toInt(307)};
        answer.headers.emplace_back("Location", settings["Location"].toString("http://elsewhere.invalid/").toUtf8());
        return answer;
    }};

} // namespace simulator::faults
