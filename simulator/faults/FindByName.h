#pragma once

#include <QString>

#include <algorithm>
#include <span>

namespace simulator::faults
{

/// The kind of that name; null if there is none.
template <class Kind>
Kind const* findByName(std::span<Kind const* const> kinds, QString const& name)
{
    auto const found = std::find_if(
        kinds.begin(), kinds.end(), [&name](Kind const* kind) { return name == QLatin1String(kind->name); });
    return found == kinds.end() ? nullptr : *found;
}

} // namespace simulator::faults
