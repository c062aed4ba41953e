#include "simulator/faults/ToxicKinds.h"

#include "simulator/faults/FindByName.h"

#include <array>

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
    return findByName(toxicKinds(), name);
}

} // namespace simulator::faults
