#include <CLI/CLI.hpp>

#include <algorithm>
#include <clocale>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <QCoreApplication>
#include <QString>

#include "cli/Commands.h"
#include "cli/shell/Arguments.h"
#include "cli/shell/Context.h"
#include "cli/shell/Interruption.h"

namespace
{

using namespace Qt::Literals::StringLiterals;
using cli::Value;

constexpr auto exitCodes =
    "Exit codes: 0 success, 1 the service answered with an error, 2 a mistake in what was asked for (nothing was\n"
    "sent, or nothing but questions), 3 no connection or no usable answer, 4 the service was asked, but a file or "
    "pipe\n"
    "on this side failed, 130 interrupted. With --json errors are JSON, too, on standard error.\n"
    "Settings may come from KELO_API_URL, KELO_USERNAME, KELO_PASSWORD, KELO_INSTALLATION,\n"
    "KELO_CA_FILE, KELO_PROXY_AUTO_DISCOVERY (1: use the system's proxies, or those of http_proxy,\n"
    "https_proxy, all_proxy and no_proxy) and KELO_COLLABORATION_VERSION.";

/// The options before or after any command.
class CommonArguments
{
public:
    explicit CommonArguments(cli::Arguments&& arguments)
        : url_(arguments.text("--url", "Address of the KELO service; else KELO_API_URL")),
          user_(arguments.text("--user", "User name; else KELO_USERNAME")),
          password_(
              arguments.text("--password", "Password; better given in KELO_PASSWORD, which other users cannot see")),
          installation_(arguments.text("--installation", "The account's installation; else KELO_INSTALLATION")),
          certificates_(
              arguments.text("--ca-file", "PEM file of certificates to trust beside the system's; else KELO_CA_FILE")),
          trace_(arguments.text(
              "--trace",
              "Records the exchanges in this HAR file (-: standard output): secrets redacted, patients' data not")),
          json_(arguments.flag("--json", "JSON for programs instead of tables for people")),
          verbose_(arguments.flag("--verbose", "Shows the library's own log lines on standard error"))
    {
    }

    cli::CommonOptions options() const
    {
        return {
            .url = *url_,
            .user = *user_,
            .password = *password_,
            .installation = *installation_,
            .certificateFile = *certificates_,
            .traceFile = *trace_,
            .json = *json_};
    }

    bool isVerbose() const { return *verbose_; }

private:
    Value<QString> url_, user_, password_, installation_, certificates_, trace_;
    Value<bool> json_, verbose_;
};

/// What the command line calls.
struct Called
{
    cli::Action action;
    bool isOffline = false;
};

/// Adds the command; when the command line calls it, `called` is set.
void addCommand(CLI::App& app, cli::Command const& command, Called& called)
{
    std::string const path = command.path;
    auto const space = path.find(' ');
    CLI::App& parent = space == std::string::npos ? app : *app.get_subcommand(path.substr(0, space));
    CLI::App& own = *parent.add_subcommand(path.substr(space == std::string::npos ? 0 : space + 1), command.summary);
    own.footer(std::string("Example:\n  ") + command.example + "\n\nOptions that all commands have: kelo --help");
    cli::Arguments arguments(own);
    own.callback(
        [&own, &called, declared = Called{command.declare(arguments), command.isOffline}]
        {
            // Called after the callback of a second word, which has said already what is to be done.
            if (own.get_subcommands().empty())
            {
                called = declared;
            }
        });
}

/// One sentence for a command line that cannot be read. Of words that nobody asked for only the first is named, without
/// a value: what follows a mistyped option may be a password.
QString mistake(CLI::App const& app, CLI::ParseError const& error)
{
    QString text = QString::fromStdString(error.what());
    if (auto const words = app.remaining(true); !words.empty())
    {
        text = u"Unknown option or argument \"%1\""_s.arg(QString::fromStdString(words.front()).section(u'=', 0, 0));
    }
    return text + u"; see --help."_s;
}

/// Runs the action; the trace is written whether it succeeds or not.
void runTraced(cli::Action const& action, cli::Context& context)
{
    try
    {
        action(context);
    }
    catch (cli::Failure const& failure)
    {
        throw cli::afterStep(failure, [&context] { context.writeTrace(); });
    }
    context.writeTrace();
}

void run(Called const& called, cli::CommonOptions const& options)
{
    std::optional<cli::Context> context;
    try
    {
        called.isOffline ? context.emplace(cli::Context::withoutService(options)) : context.emplace(options);
        runTraced(called.action, *context);
    }
    catch (cli::Failure const& failure)
    {
        bool const hasAsked = context && context->hasAsked();
        bool const isHarmless = failure.code() == cli::ExitCode::FileFailed && !hasAsked;
        throw isHarmless ? failure.with(cli::ExitCode::BadInput) : failure;
    }
}

cli::ExitCode start(int argc, char** argv)
{
    CLI::App app("Talks to the KELO service from the shell.", "kelo");
    app.set_version_flag("--version", "kelo " KELO_VERSION);
    app.fallthrough();
    app.require_subcommand(1);
    app.footer(exitCodes);
    CommonArguments const common{cli::Arguments(app)};
    Called called;
    for (auto const& group : cli::commandGroups)
    {
        app.add_subcommand(group.name, group.summary)->require_subcommand(1);
    }
    for (auto const& command : cli::commands)
    {
        addCommand(app, command, called);
    }
    try
    {
        app.parse(argc, argv);
    }
    catch (CLI::ParseError const& error)
    {
        if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success))
        {
            app.exit(error);
            return cli::ExitCode::Success;
        }
        throw cli::badInput(mistake(app, error));
    }
    // A failure that the library logs is told in kelo's own words, so nothing is lost without it.
    cli::showLibraryLog(common.isVerbose());
    QCoreApplication const application(argc, argv);
    // Output is UTF-8 whatever the user's locale is, and so must be the table of the characters' widths.
    std::setlocale(LC_CTYPE, "C.UTF-8");
    run(called, common.options());
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
