#include "tests/soak/Resources.h"

#include <malloc.h>
#include <unistd.h>

#include <QFile>

#include <tests/support/OpenSockets.h>

namespace soak
{

Resources Resources::now()
{
    ::malloc_trim(0);
    QFile file(QStringLiteral("/proc/self/statm"));
    auto const pages = file.open(QIODevice::ReadOnly) ? file.readAll().split(' ').value(1).toLongLong() : 0;
    return {.sockets = test::openSockets(), .residentKibibytes = pages * (::sysconf(_SC_PAGESIZE) / 1024)};
}

} // namespace soak
