#include <algorithm>
#include <clocale>
#include <cstdio>
#include <optional>
#include <string_view>

#include <QCoreApplication>
#include <QString>

#include "cli/prompt/CommandLine.h"
#include "cli/prompt/Help.h"
#include "cli/shell/Context.h"
#include "cli/shell/Interruption.h"

namespace
{

using namespace Qt::Literals::StringLiterals;
using cli::CommandLine;

/// Runs the action; the trace is written whether it succeeds, fails or is interrupted.
void runTraced(cli::Action const& action, cli::Context& context)
{
    cli::doWhenInterrupted(context.traceWriter());
    try
    {
        action(context);
    }
    catch (cli::Failure const& failure)
    {
        throw cli::afterStep(failure, context.traceWriter());
    }
    context.traceWriter()();
}

void run(cli::DeclaredCommand const& command, cli::CommonOptions const& options)
{
    std::optional<cli::Context> context;
    try
    {
        command.check();
        command.runsOffline() ? context.emplace(cli::Context::withoutService(options)) : context.emplace(options);
        runTraced(command.action, *context);
    }
    catch (cli::Failure const& failure)
    {
        bool const hasAsked = context && context->hasAsked();
        bool const isHarmless = failure.code() == cli::ExitCode::FileFailed && !hasAsked;
        throw isHarmless ? failure.with(cli::ExitCode::BadInput) : failure;
    }
}

/// On standard output, where nothing but this was asked for.
void print(QString const& text)
{
    try
    {
        cli::Output(false).show({}, text);
    }
    catch (cli::Failure const& failure)
    {
        throw failure.with(cli::ExitCode::BadInput);
    }
}

QString helpOf(cli::Program const& program, CommandLine const& line)
{
    auto const* const command = program.command(line.path);
    bool const isMore = command != nullptr && command->row->help != nullptr && !line.positions.isEmpty();
    return isMore ? command->row->help(line.positions) : cli::helpText(program, line.path);
}

/// For a command line that stops before a command.
cli::ExitCode showWhatMayFollow(cli::Program const& program, QStringList const& path, bool json)
{
    if (json)
    {
        throw cli::badInput(u"No command is given; see --help."_s);
    }
    std::fputs(cli::helpText(program, path).toUtf8().constData(), stderr);
    return cli::ExitCode::BadInput;
}

cli::ExitCode start(int argc, char** argv)
{
    cli::Program const program;
    auto const line = cli::readCommandLine(program, argc, argv);
    auto const options = program.options();
    if (line.wish != CommandLine::Wish::Run)
    {
        print(line.wish == CommandLine::Wish::Version ? u"kelo " KELO_VERSION ""_s : helpOf(program, line));
        return cli::ExitCode::Success;
    }
    auto const* const command = program.command(line.path);
    if (command == nullptr)
    {
        return showWhatMayFollow(program, line.path, options.json);
    }
    // A failure that the library logs is told in kelo's own words, so nothing is lost without it.
    cli::showLibraryLog(options.verbose);
    QCoreApplication const application(argc, argv);
    // Output is UTF-8 whatever the user's locale is, and so must be the table of the characters' widths.
    std::setlocale(LC_CTYPE, "C.UTF-8");
    run(*command, options);
    return cli::ExitCode::Success;
}

} // namespace

int main(int argc, char** argv)
{
    // Known even where the command line cannot be read.
    bool const json = std::find(argv, argv + argc, std::string_view("--json")) != argv + argc;
    cli::listenForInterruption(json);
    try
    {
        return static_cast<int>(start(argc, argv));
    }
    catch (cli::Failure const& failure)
    {
        cli::writeError(failure, json);
        return static_cast<int>(failure.code());
    }
    catch (std::exception const& error)
    {
        cli::writeError(cli::badInput(QString::fromLocal8Bit(error.what())), json);
        return static_cast<int>(cli::ExitCode::BadInput);
    }
}
