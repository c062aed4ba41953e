#pragma once

#include <string>
#include <vector>

namespace bench
{

/// A comparison to print after the run: the time of `subject` over that of `peer`, both names of benchmarks with their
/// argument (`name/1000`). Without a peer it is the time itself.
struct Ratio
{
    std::string subject;
    std::string peer;
    std::string meaning;
};

/// Runs all registered benchmarks, several repetitions each, interleaved by chance, and prints the ratio of the medians
/// for each comparison.
int runWithRatios(int argc, char** argv, std::vector<Ratio> const& ratios);

} // namespace bench
