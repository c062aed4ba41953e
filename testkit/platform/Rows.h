#pragma once

#include <span>
#include <string>
#include <vector>

namespace platformcheck
{

/// One promise of a platform library to its host.
struct Row
{
    char const* name;
    char const* promise; ///< in a sentence
    /// Returns if the promise is held; see `Evidence.h` for all other cases.
    void (*hold)();
};

/// The promises of one subject; one source file each, below groups/.
struct Group
{
    char const* name;
    std::span<Row const> rows;
};

extern Group const futures;
extern Group const continuations;
extern Group const waits;
extern Group const locks;
extern Group const requests;
extern Group const answers;
extern Group const writes;
extern Group const idle;
extern Group const origins;
extern Group const timeouts;
extern Group const cancelling;
extern Group const closing;
extern Group const traces;

/// All groups, in the order of the table.
inline constexpr Group const* groups[] = {
    &futures, &continuations, &waits,    &locks,      &requests, &answers, &writes,
    &idle,    &origins,       &timeouts, &cancelling, &closing,  &traces,
};

/// A row by its name in the table.
struct NamedRow
{
    std::string name; ///< group/name
    Row const* row;
};

/// The rows whose name, or whose group's name, matches one of the patterns (with the shell's * and ?); all rows if
/// there are no patterns.
std::vector<NamedRow> rowsMatching(std::vector<std::string> const& patterns);

} // namespace platformcheck
