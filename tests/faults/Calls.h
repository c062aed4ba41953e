#pragma once

#include <span>
#include <string>

#include "tests/support/FaultedService.h"

namespace test
{

enum class Outcome : int
{
    Ok,      ///< success with the right content
    Other,   ///< success with other content
    Refused, ///< status kind 2
    Lost,    ///< status kind 1
    Failed,  ///< a failure of an interface that does not tell which
    Hung     ///< not finished, or cancelled though nobody cancelled
};

/// How a call ended and what it brought, as text to be compared.
struct Result
{
    Outcome outcome = Outcome::Hung;
    QString content = {};
};

/// What a call needs to know that only the service can tell, asked for past the faults.
struct Target
{
    QString uploadReference;
    std::vector<collaboration::RequestInfo> requests;

    static Target prepare(FaultedService const& service);
};

struct Call
{
    char const* name = "";
    Result (*run)(TessalyConnection& connection, Target const& target) = nullptr;
    /// What a refusal and a loss look like to its caller.
    Outcome whenRefused = Outcome::Refused;
    Outcome whenLost = Outcome::Lost;
    bool showsSpoiling = true; ///< whether every fault that spoils answers shows in its content
};

std::span<Call const> callsOfTheMatrix();

/// The content that two different reads bring, sent at the same time; they are told apart by it.
std::pair<Result, Result> twoReads(TessalyConnection& connection);

} // namespace test
