#pragma once

#include <QString>
#include <QStringList>

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

template <class Kind>
QStringList namesOf(std::span<Kind const* const> kinds)
{
    QStringList names;
    for (auto const* kind : kinds)
    {
        names << QLatin1String(kind->name);
    }
    return names;
}

} // namespace simulator::faults
