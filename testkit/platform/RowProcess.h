#pragma once

#include <chrono>
#include <string>

#include <QByteArray>

#include "testkit/platform/Rows.h"

namespace platformcheck
{

enum class Result : int
{
    Ok,
    Failed,
    NotOffered
};

struct Outcome
{
    Result result = Result::Failed;
    std::string seen; ///< why it failed or is not offered, in a sentence
    QByteArray log;   ///< what the row's process wrote to its standard error
};

/// How each row runs.
struct RunOptions
{
    std::chrono::seconds limit{30}; ///< of a row
    bool hasApplication = false;    ///< rows have a QCoreApplication from their start
};

/// The first argument by which this program runs one row: --row NAME SECONDS [--application].
inline constexpr auto rowOption = "--row";
inline constexpr auto applicationOption = "--application";

/// Runs the row in a process of its own, so that one that crashes or hangs costs no other its result.
Outcome runInProcess(NamedRow const& row, RunOptions const& options);

/// That process. Returns its exit code.
int runHere(int argc, char** argv);

} // namespace platformcheck
