#pragma once

#include <QStringList>

#include "cli/prompt/Program.h"

namespace cli
{

/// What a command line asks for.
struct CommandLine
{
    enum class Wish : int
    {
        Run,
        Help,
        Version
    };

    Wish wish = Wish::Run;
    QStringList path;      ///< the words that call a command, or those of a group
    QStringList positions; ///< the words behind them
};

/// Reads a command line into the values that the program's arguments have declared. Throws a Failure of one sentence
/// for one that cannot be read. Of words that nobody asked for it names only the first, without a value: what follows a
/// mistyped option may be a password.
CommandLine readCommandLine(Program const& program, int argc, char** argv);

/// The Failure for a word that is none of those that may stand behind the path.
Failure unknownCommand(Program const& program, QStringList const& path, QString const& word);

} // namespace cli
