#pragma once

#include <QtGlobal>

namespace soak
{

/// What this process holds.
struct Resources
{
    int sockets = 0;
    qint64 residentKibibytes = 0;

    /// Free memory is given back to the system first.
    static Resources now();
};

} // namespace soak
