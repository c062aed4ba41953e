#include "simulator/Simulator.h"

#include <CLI/CLI.hpp>

#include <csignal>
#include <ctime>
#include <iostream>
#include <optional>
#include <string>
#include <unistd.h>

namespace
{

struct CommandLine
{
    simulator::SimulatorOptions options;
    bool exitWithParent = false;
};

/// Nothing: the program is done already (help, version, a mistake), with the exit code in `exitCode`.
std::optional<CommandLine> parse(int argc, char** argv, int& exitCode)
{
    CommandLine line;
    std::string user = line.options.username.toStdString();
    std::string password = line.options.password.toStdString();
    bool verbose = false;
    CLI::App app("A KELO service for one desk: listens on 127.0.0.1 and keeps its data in memory.", "kelo-simulator");
    app.set_version_flag("--version", "kelo-simulator " KELO_VERSION);
    app.add_option("--port", line.options.port, "Port to listen on; 0 takes any free one")
        ->check(CLI::Range(0, 65535))
        ->capture_default_str();
    app.add_option("--seed", line.options.seed, "Seed of the data it starts with")->capture_default_str();
    app.add_flag("--tls", line.options.tls, "Speak HTTPS; the path of the certificate goes to standard error");
    app.add_option("--user", user, "User name asked for; empty asks for none")->capture_default_str();
    app.add_option("--password", password, "Password asked for")->capture_default_str();
    app.add_flag("--verbose", verbose, "Write every request to standard error");
    app.add_flag("--exit-with-parent", line.exitWithParent, "Stop when the process that started it is gone");
    try
    {
        app.parse(argc, argv);
    }
    catch (CLI::ParseError const& error)
    {
        exitCode = app.exit(error);
        return std::nullopt;
    }
    line.options.username = QString::fromStdString(user);
    line.options.password = QString::fromStdString(password);
    if (verbose)
    {
        line.options.log = [](QString const& text) { std::cerr << (text.toStdString() + '\n') << std::flush; };
    }
    return line;
}

/// Waits for SIGTERM or SIGINT, which must be blocked in all threads, or for the end of the parent.
void waitForEnd(sigset_t const& stopSignals, std::optional<pid_t> parent)
{
    constexpr timespec pause = {.tv_sec = 0, .tv_nsec = 200'000'000};
    while (::sigtimedwait(&stopSignals, nullptr, &pause) < 0)
    {
        if (parent && ::getppid() != *parent)
        {
            return;
        }
    }
}

int run(CommandLine const& line, std::optional<pid_t> parent)
{
    sigset_t stopSignals;
    ::sigemptyset(&stopSignals);
    ::sigaddset(&stopSignals, SIGTERM);
    ::sigaddset(&stopSignals, SIGINT);
    ::pthread_sigmask(SIG_BLOCK, &stopSignals, nullptr);

    simulator::Simulator service(line.options);
    auto const url = service.start();
    if (url.isEmpty())
    {
        std::cerr << "kelo-simulator: cannot listen on port " << line.options.port << '\n';
        return EXIT_FAILURE;
    }
    if (auto const file = service.certificateFile(); !file.isEmpty())
    {
        std::cerr << "kelo-simulator certificate " << file.toStdString() << std::endl;
    }
    std::cout << "kelo-simulator listening on " << url.toStdString() << std::endl;
    waitForEnd(stopSignals, parent);
    service.stop();
    return EXIT_SUCCESS;
}

} // namespace

int main(int argc, char** argv)
{
    // Asked for at once: a parent that ends later is then always noticed.
    auto const parent = ::getppid();
    try
    {
        int exitCode = EXIT_SUCCESS;
        auto const line = parse(argc, argv, exitCode);
        return line ? run(*line, line->exitWithParent ? std::optional(parent) : std::nullopt) : exitCode;
    }
    catch (std::exception const& error)
    {
        std::cerr << "kelo-simulator: " << error.what() << '\n';
        return EXIT_FAILURE;
    }
}
