#include "simulator/Simulator.h"
#include "simulator/faults/ServiceFaultKinds.h"
#include "simulator/faults/ToxicKinds.h"

#include <CLI/CLI.hpp>

#include <csignal>
#include <ctime>
#include <iostream>
#include <optional>
#include <string>
#include <unistd.h>
#include <vector>

namespace
{

struct CommandLine
{
    simulator::SimulatorOptions options;
    bool exitWithParent = false;
    std::vector<std::string> faults;
};

std::string faultHelp()
{
    std::string text =
        "Transport faults, with stream=upstream|downstream and toxicity=0..1 beside their own attributes:\n";
    for (auto const* const kind : simulator::faults::toxicKinds())
    {
        text += std::string("  ") + kind->name;
        for (auto const& attribute : kind->attributes)
        {
            text += attribute.name == nullptr
                        ? std::string()
                        : std::string(" ") + attribute.name + "=" + std::to_string(attribute.usual);
        }
        text += '\n';
    }
    text += "Faults of the service, with operation=NAME, times=N (-1: always) and milliseconds=N (delay):\n ";
    for (auto const* const kind : simulator::faults::serviceFaultKinds())
    {
        text += std::string(" ") + kind->name;
    }
    return text;
}

/// What CLI11 fills in that the options of the simulator say in other words.
struct GivenTexts
{
    explicit GivenTexts(simulator::SimulatorOptions const& defaults)
        : user(defaults.username.toStdString()), password(defaults.password.toStdString())
    {
    }

    std::string user;
    std::string password;
    std::string certificateFile;
    bool verbose = false;
    bool wantsProxy = false;
    quint64 faultSeed = 1;
};

void declareOptions(CLI::App& app, CommandLine& line, GivenTexts& given)
{
    app.set_version_flag("--version", "kelo-simulator " KELO_VERSION);
    app.add_option("--port", line.options.port, "Port to listen on; 0 takes any free one")
        ->check(CLI::Range(0, 65535))
        ->capture_default_str();
    app.add_option("--seed", line.options.seed, "Seed of the data it starts with")->capture_default_str();
    auto* const tls =
        app.add_flag("--tls", line.options.tls, "Speak HTTPS; the path of the certificate goes to standard error");
    app.add_option(
           "--certificate-file", given.certificateFile,
           "With --tls: write the certificate to this file, for kelo --ca-file")
        ->needs(tls);
    app.add_option("--user", given.user, "User name asked for; empty asks for none")->capture_default_str();
    app.add_option("--password", given.password, "Password asked for")->capture_default_str();
    app.add_flag("--verbose", given.verbose, "Write every request to standard error");
    app.add_flag("--exit-with-parent", line.exitWithParent, "Stop when the process that started it is gone");
    app.add_flag("--fault-proxy", given.wantsProxy, "Put a proxy for transport faults in front");
    app.add_option("--fault", line.faults, "A fault in force from the start, KIND[:NAME=VALUE,...]; may be repeated")
        ->allow_extra_args(false);
    app.add_option("--fault-seed", given.faultSeed, "Seed of the faults that strike by chance")->capture_default_str();
    app.footer(faultHelp());
}

/// Nothing: the program is done already (help, version, a mistake), with the exit code in `exitCode`.
std::optional<CommandLine> parse(int argc, char** argv, int& exitCode)
{
    CommandLine line;
    GivenTexts given(line.options);
    CLI::App app("A KELO service for one desk: listens on 127.0.0.1 and keeps its data in memory.", "kelo-simulator");
    declareOptions(app, line, given);
    try
    {
        app.parse(argc, argv);
    }
    catch (CLI::ParseError const& error)
    {
        exitCode = app.exit(error);
        return std::nullopt;
    }
    if (given.wantsProxy || !line.faults.empty())
    {
        line.options.faultSeed = given.faultSeed;
    }
    line.options.username = QString::fromStdString(given.user);
    line.options.password = QString::fromStdString(given.password);
    line.options.certificateFile = QString::fromStdString(given.certificateFile);
    if (given.verbose)
    {
        line.options.log = [](QString const& text) { std::cerr << (text.toStdString() + '\n') << std::flush; };
    }
    return line;
}

/// Puts the faults in force; false, with the reason on standard error, if one is not understood.
bool addFaults(simulator::Simulator& service, CommandLine const& line)
{
    for (auto const& fault : line.faults)
    {
        try
        {
            service.addFault(QString::fromStdString(fault));
        }
        catch (std::exception const& error)
        {
            std::cerr << "kelo-simulator: --fault " << fault << ": not understood (" << error.what() << ")\n";
            return false;
        }
    }
    if (line.options.faultSeed)
    {
        std::cerr << "kelo-simulator fault seed " << *line.options.faultSeed << '\n'
                  << "kelo-simulator without the faults " << service.directUrl().toStdString() << std::endl;
    }
    return true;
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
    if (!addFaults(service, line))
    {
        return EXIT_FAILURE;
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
