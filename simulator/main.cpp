#include "simulator/Simulator.h"
#include "simulator/faults/ServiceFaultKinds.h"
#include "simulator/faults/ToxicKinds.h"

#include <QFile>
#include <QJsonArray>
#include <QRegularExpression>

#include <CLI/CLI.hpp>

#include <cctype>
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
    std::string dataFile;
    std::vector<std::string> recordings;
    bool exitWithParent = false;
    std::vector<std::string> faults;
};

/// As CLI programs have it: the command line asks for something that cannot be had.
constexpr int badCommandLine = 2;

std::string parametersText(simulator::Schema parameters)
{
    std::string text;
    for (auto const& parameter : parameters)
    {
        auto name = std::string(parameter.key);
        name.front() = static_cast<char>(std::tolower(name.front()));
        text += ' ' + name + '=' + (parameter.usual == nullptr ? "..." : parameter.usual);
    }
    return text + '\n';
}

std::string faultHelp()
{
    std::string text =
        "Transport faults, with stream=upstream|downstream and toxicity=0..1 beside their own attributes:\n";
    for (auto const* const kind : simulator::faults::toxicKinds())
    {
        text += std::string("  ") + kind->name + parametersText(kind->attributes);
    }
    text += "Faults of the service, with operation=NAME, times=N (-1: always) and milliseconds=N:\n";
    for (auto const* const kind : simulator::faults::serviceFaultKinds())
    {
        text += std::string("  ") + kind->name + parametersText(kind->parameters);
    }
    return text + "What they do, and everything else it can be told: GET /_control, or /_control/ in a browser";
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
    std::string listenAddress = "127.0.0.1";
    std::string basePath;
    bool verbose = false;
    bool wantsProxy = false;
    quint64 faultSeed = 1;
};

bool isPath(std::string const& path)
{
    return path.size() > 1 && path.front() == '/' && path.back() != '/'
           && path.find_first_of("?#% ") == std::string::npos;
}

/// No more than what a recording may be long, and a byte.
QByteArray contentOf(std::string const& file)
{
    QFile source(QString::fromStdString(file));
    auto const content =
        source.open(QIODevice::ReadOnly) ? source.read(simulator::RecordedFile::mostBytes + 1) : QByteArray();
    if (source.error() != QFile::NoError)
    {
        throw std::runtime_error(file + ": " + source.errorString().toStdString());
    }
    return content;
}

void declareOptions(CLI::App& app, CommandLine& line, GivenTexts& given)
{
    app.set_version_flag("--version", "kelo-simulator " KELO_VERSION);
    app.add_option("--port", line.options.port, "Port to listen on; 0 takes any free one")
        ->check(CLI::Range(0, 65535))
        ->capture_default_str();
    app.add_option("--listen", given.listenAddress, "IPv4 address to listen on; 0.0.0.0 takes all of this machine")
        ->check(CLI::ValidIPV4)
        ->capture_default_str();
    app.add_option("--base-path", given.basePath, "What all paths stand below, as /api/v1")
        ->check([](std::string const& path) { return isPath(path) ? "" : path + " is no path such as /api/v1"; });
    app.add_option("--threads", line.options.workerThreads, "How many connections can be open at once")
        ->check(CLI::Range(1, 4096))
        ->capture_default_str();
    auto* const data = app.add_option("--data", line.dataFile, "The data it starts with, from GET /_control/state")
                           ->check(CLI::ExistingFile);
    auto* const seed =
        app.add_option("--seed", line.options.seed, "Seed of the data it starts with")->capture_default_str();
    auto* const replay =
        app.add_option(
               "--replay", line.recordings,
               "Answer what was answered in this HTTP archive (kelo --trace), of 256 MiB at most; may be repeated. Any "
               "credentials will do")
            ->check(CLI::ExistingFile)
            ->allow_extra_args(false)
            ->excludes(data)
            ->excludes(seed);
    app.add_flag("--replay-delays", line.options.recordedDelays, "With --replay: answers take as long as they took")
        ->needs(replay);
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
    CLI::App app(
        "A KELO service for one desk with the installations INST-1001 and INST-2002; keeps its data in memory.",
        "kelo-simulator");
    declareOptions(app, line, given);
    try
    {
        app.parse(argc, argv);
    }
    catch (CLI::ParseError const& error)
    {
        exitCode = error.get_exit_code() == 0 ? app.exit(error) : badCommandLine;
        if (exitCode != 0)
        {
            std::cerr << "kelo-simulator: " << error.what() << "; see --help\n";
        }
        return std::nullopt;
    }
    if (given.wantsProxy || !line.faults.empty())
    {
        line.options.faultSeed = given.faultSeed;
    }
    line.options.username = QString::fromStdString(given.user);
    line.options.password = QString::fromStdString(given.password);
    line.options.certificateFile = QString::fromStdString(given.certificateFile);
    line.options.listenAddress = QString::fromStdString(given.listenAddress);
    line.options.basePath = QString::fromStdString(given.basePath);
    line.options.state = line.dataFile.empty() ? QByteArray() : contentOf(line.dataFile);
    for (auto const& file : line.recordings)
    {
        line.options.recordings.push_back({QString::fromStdString(file), contentOf(file)});
    }
    line.options.unmatched = [](QString const& text)
    { std::cerr << ("kelo-simulator: not in the recording: " + text.toStdString() + '\n') << std::flush; };
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
            std::cerr << "kelo-simulator: --fault " << fault << ": not understood: " << error.what() << '\n';
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

/// A word of the shell.
std::string quoted(QString word)
{
    static QRegularExpression const plain("^[A-Za-z0-9_./:@%+=-]+$");
    return plain.match(word).hasMatch() ? word.toStdString() : "'" + word.replace("'", "'\\''").toStdString() + "'";
}

/// What a host needs to know, to be pasted into a shell.
std::string exportLine(
    simulator::Simulator const& service, QString const& url, simulator::SimulatorOptions const& options)
{
    auto text = "export KELO_API_URL=" + quoted(url) + " KELO_USERNAME=" + quoted(options.username)
                + " KELO_PASSWORD=" + quoted(options.password);
    if (auto const id = service.control("GET", "")["Installations"][0]["Id"]; id.isString())
    {
        text += " KELO_INSTALLATION=" + quoted(id.toString());
    }
    if (options.tls)
    {
        text += " KELO_CA_FILE=" + quoted(service.certificateFile());
    }
    return text;
}

std::unique_ptr<simulator::Simulator> makeSimulator(CommandLine const& line)
try
{
    return std::make_unique<simulator::Simulator>(line.options);
}
catch (std::invalid_argument const& error)
{
    throw std::runtime_error((line.recordings.empty() ? "--data " + line.dataFile + ": " : "--replay ") + error.what());
}

int run(CommandLine const& line, std::optional<pid_t> parent)
{
    sigset_t stopSignals;
    ::sigemptyset(&stopSignals);
    ::sigaddset(&stopSignals, SIGTERM);
    ::sigaddset(&stopSignals, SIGINT);
    ::pthread_sigmask(SIG_BLOCK, &stopSignals, nullptr);

    auto const simulator = makeSimulator(line);
    auto& service = *simulator;
    auto const url = service.start();
    auto const address = line.options.listenAddress.toStdString();
    if (url.isEmpty())
    {
        std::cerr << "kelo-simulator: cannot listen on " << address << ':' << line.options.port
                  << ": the port is in use, or the address is none of this machine\n";
        return badCommandLine;
    }
    if (!address.starts_with("127."))
    {
        std::cerr << "kelo-simulator: listens on " << address
                  << ": whoever can reach this machine can read and change the data" << std::endl;
    }
    if (!line.options.recordings.empty())
    {
        auto const count = service.control("GET", "replay")["Entries"].toInt();
        std::cerr << "kelo-simulator replays " << count << (count == 1 ? " request" : " requests")
                  << ", to any credentials" << std::endl;
    }
    if (auto const file = service.certificateFile(); !file.isEmpty())
    {
        std::cerr << "kelo-simulator certificate " << file.toStdString() << std::endl;
    }
    if (!addFaults(service, line))
    {
        return badCommandLine;
    }
    // In one piece: who reads the first line only may be gone when another comes.
    auto const text =
        "kelo-simulator listening on " + url.toStdString() + '\n' + exportLine(service, url, line.options);
    std::cout << (text + '\n') << std::flush;
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
        // Data that do not fit, a certificate that cannot be written.
        std::cerr << "kelo-simulator: " << error.what() << '\n';
        return badCommandLine;
    }
}
