#pragma once

#include <chrono>
#include <thread>

#include <dirent.h>
#include <sys/stat.h>

namespace testkit
{

/// Waits until the condition holds; false when that takes too long.
template <class Condition>
bool comesTrue(Condition condition)
{
    auto const deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (!condition())
    {
        if (std::chrono::steady_clock::now() > deadline)
        {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

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

} // namespace testkit
