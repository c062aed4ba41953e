#include "simulator/faults/ToxicKinds.h"

#include <algorithm>

namespace simulator::faults
{

std::span<ToxicKind const* const> toxicKinds()
{
    static constexpr std::array kinds = {&bandwidth, &down,   &latency,   &limitData,
                                         &resetPeer, &slicer, &slowClose, &timeout};
    return kinds;
}

ToxicKind const* findToxicKind(QString const& name)
{
    auto const kinds = toxicKinds();
    auto const found = std::find_if(
        kinds.begin(), kinds.end(), [&name](auto const* kind) { return name == QLatin1String(kind->name); });
    return found == kinds.end() ? nullptr : *found;
}

} // namespace simulator::faults
