#include "simulator/faults/JsonAnswer.h"
#include "simulator/faults/ServiceFaultKinds.h"

namespace simulator::faults
{

/// A page of HTML with the HTTP status in "Status", 502 unless given: what a gateway answers in the place of a service.
FaultKind const html = {
    .name = "html",
    .replacement = [](QJsonObject const& settings)
    {
        return Answer{
            .status = settings["Status"].toInt(502),
            .body = bodyOr(settings, "<!DOCTYPE html><html><body><h1>Bad Gateway</h1></body></html>"),
            .contentType = "text/html"};
    }};

} // namespace simulator::faults
