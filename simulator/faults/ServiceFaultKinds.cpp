#include "simulator/faults/ServiceFaultKinds.h"

#include "simulator/faults/FindByName.h"

#include <array>

namespace simulator::faults
{

std::span<FaultKind const* const> serviceFaultKinds()
{
    static constexpr std::array kinds = {
        &cutChunk,        &delay,         &drop,          &earlyHints,  &emptyBody, &endlessHeaders,
        &gzipBomb,        &html,          &missingMember, &nullMember,  &redirect,  &status,
        &tooManyRequests, &truncatedBody, &unauthorized,  &unknownText, &wrongType};
    return kinds;
}

FaultKind const* findServiceFaultKind(QString const& name)
{
    return findByName(serviceFaultKinds(), name);
}

} // namespace simulator::faults
