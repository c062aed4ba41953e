#include "simulator/faults/JsonAnswer.h"
#include "simulator/faults/ServiceFaultKinds.h"

namespace simulator::faults
{

namespace
{

constexpr Member parameters[] = {
    integer("Status", 200, 599, "502", "the HTTP status"),
    optional("Body", Kind::Any, "the page unless it is the usual one"),
};

} // namespace

FaultKind const html = {
    .name = "html",
    .meaning = "A page of HTML: what a gateway answers in the place of a service.",
    .parameters = parameters,
    .replacement = [](QJsonObject const& settings)
    {
        return Answer{
            .status = settings["Status"].toInt(),
            .body = bodyOr(settings, "<!DOCTYPE html><html><body><h1>Bad Gateway</h1></body></html>"),
            .contentType = "text/html"};
    }};

} // namespace simulator::faults
