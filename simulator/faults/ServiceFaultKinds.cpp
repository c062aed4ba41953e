#include "simulator/faults/ServiceFaultKinds.h"

#include <algorithm>
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
    auto const kinds = serviceFaultKinds();
    auto const found = std::find_if(
        kinds.begin(), kinds.end(), [&name](auto const* kind) { return name == QLatin1String(kind->name); });
    return found == kinds.end() ? nullptr : *found;
}

} // namespace simulator::faults
