#include "testkit/platform/Evidence.h"

#include <algorithm>

#include <unistd.h>

#include "testkit/platform/Protocol.h"

namespace platformcheck
{

namespace
{

std::chrono::milliseconds currentPatience{10'000};

// One call, so that lines of several threads do not mix.
void tell(char const* word, std::string text)
{
    std::replace(text.begin(), text.end(), '\n', ' ');
    std::string const line = protocol::mark + std::string(word) + ' ' + text + '\n';
    [[maybe_unused]] ssize_t const written = ::write(STDOUT_FILENO, line.data(), line.size());
}

/// Leaves what is still running alone, for it may hang.
[[noreturn]] void endWith(char const* word, std::string const& text)
{
    tell(word, text);
    ::_exit(0);
}

} // namespace

std::chrono::milliseconds patience()
{
    return currentPatience;
}

void setPatience(std::chrono::milliseconds duration)
{
    currentPatience = duration;
}

void doing(std::string const& what)
{
    tell(protocol::doing, what);
}

void fail(std::string const& seen)
{
    endWith(protocol::failed, seen);
}

void notOffered(std::string const& why)
{
    endWith(protocol::notOffered, why);
}

void passed()
{
    tell(protocol::passed, {});
}

} // namespace platformcheck
