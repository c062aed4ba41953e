#include "testkit/platform/Rows.h"

#include <algorithm>

#include <fnmatch.h>

namespace platformcheck
{

namespace
{

bool matches(std::string const& pattern, std::string const& name)
{
    return ::fnmatch(pattern.c_str(), name.c_str(), 0) == 0;
}

} // namespace

std::vector<NamedRow> rowsMatching(std::vector<std::string> const& patterns)
{
    std::vector<NamedRow> rows;
    for (Group const* const group : groups)
    {
        for (Row const& row : group->rows)
        {
            std::string name = std::string(group->name) + '/' + row.name;
            bool const isAskedFor = std::any_of(
                patterns.begin(), patterns.end(),
                [&](std::string const& pattern) { return matches(pattern, name) || matches(pattern, group->name); });
            if (patterns.empty() || isAskedFor)
            {
                rows.push_back({std::move(name), &row});
            }
        }
    }
    return rows;
}

} // namespace platformcheck
