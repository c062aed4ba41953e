#include "benchmarks/Ratios.h"

#include <algorithm>
#include <cstdio>
#include <map>

#include <benchmark/benchmark.h>

namespace bench
{

namespace
{

class Collector : public benchmark::ConsoleReporter
{
public:
    Collector() : ConsoleReporter(OO_Tabular) {}

    /// Takes the single runs and shows only what sums them up.
    void ReportRuns(std::vector<Run> const& runs) override
    {
        std::vector<Run> shown;
        for (Run const& run : runs)
        {
            if (run.run_type == Run::RT_Aggregate || run.error_occurred)
            {
                shown.push_back(run);
            }
            else
            {
                std::string const& argument = run.run_name.args;
                times[run.run_name.function_name + (argument.empty() ? "" : "/" + argument)].push_back(
                    run.real_accumulated_time / static_cast<double>(run.iterations));
            }
        }
        if (!shown.empty())
        {
            ConsoleReporter::ReportRuns(shown);
        }
    }

    std::map<std::string, std::vector<double>> times;
};

double median(std::vector<double> values)
{
    auto const middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

} // namespace

int runWithRatios(int argc, char** argv, std::vector<Ratio> const& ratios)
{
    std::string repetitions = "--benchmark_repetitions=9";
    std::string interleaving = "--benchmark_enable_random_interleaving=true";
    std::vector<char*> arguments{argv[0], repetitions.data(), interleaving.data()};
    // The user's own options come last and win.
    arguments.insert(arguments.end(), argv + 1, argv + argc);
    int count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data()))
    {
        return 2;
    }
    Collector collector;
    benchmark::RunSpecifiedBenchmarks(&collector);
    std::printf("\nMedian times, subject / peer\n");
    for (Ratio const& ratio : ratios)
    {
        auto const& subject = collector.times[ratio.subject];
        auto const& peer = collector.times[ratio.peer];
        if (!subject.empty() && ratio.peer.empty())
        {
            std::printf("  %6.2f ms  %s\n", median(subject) * 1000, ratio.meaning.c_str());
        }
        else if (!subject.empty() && !peer.empty())
        {
            std::printf("  %6.2f     %s\n", median(subject) / median(peer), ratio.meaning.c_str());
        }
    }
    benchmark::Shutdown();
    return 0;
}

} // namespace bench
