#pragma once

#include <dirent.h>
#include <sys/stat.h>

namespace test
{

/// The sockets that this process has open.
inline int openSockets()
{
    DIR* const descriptors = ::opendir("/proc/self/fd");
    int count = 0;
    while (dirent const* const entry = ::readdir(descriptors))
    {
        struct stat status = {};
        count += ::fstatat(::dirfd(descriptors), entry->d_name, &status, 0) == 0 && S_ISSOCK(status.st_mode) ? 1 : 0;
    }
    ::closedir(descriptors);
    return count;
}

} // namespace test
