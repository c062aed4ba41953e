#pragma once

#include <vector>

#include <QString>
#include <QStringList>

#include "cli/Commands.h"
#include "cli/shell/Arguments.h"
#include "cli/shell/Context.h"

namespace cli
{

/// A command with what it declares.
struct DeclaredCommand
{
    QStringList path; ///< the words that call it
    Command const* row = nullptr;
    Arguments arguments;
    Action action;

    /// Throws a Failure for an argument that cannot be meant.
    void check() const;
    /// With these arguments it runs without a service.
    bool runsOffline() const;
};

/// All that the program can be told: the table of commands, with the options that every command has.
class Program
{
public:
    Program();

    std::vector<DeclaredArgument> const& commonArguments() const { return common_.all(); }
    /// These, "--help" and "--version".
    std::vector<DeclaredArgument> commonOptions() const;

    std::vector<DeclaredCommand> const& commands() const { return commands_; }

    /// The command that these words call; none for those of a group.
    DeclaredCommand const* command(QStringList const& path) const;
    /// What the command declares; nothing for a group.
    std::vector<DeclaredArgument> argumentsOf(QStringList const& path) const;
    /// The words of all commands and groups: first none, which are the program's own, and each before those that begin
    /// with it.
    QList<QStringList> paths() const;
    /// The words that may stand behind these, in the order of the table.
    QStringList wordsBehind(QStringList const& path) const;
    /// What the command or group of these words is for.
    QString summary(QStringList const& path) const;

    /// Valid once the command line is read.
    CommonOptions options() const;

private:
    Arguments common_;
    Value<QString> url_, user_, password_, installation_, certificates_, timeout_, trace_;
    Value<bool> json_, verbose_;
    std::vector<DeclaredCommand> commands_;
};

/// A name and what it stands for, as the help and the manual pages list them.
struct Explained
{
    char const* name;
    char const* meaning;
};

inline constexpr Explained settings[] = {
    {"KELO_API_URL", "Address of the KELO service"},
    {"KELO_USERNAME", "User name"},
    {"KELO_PASSWORD", "Password"},
    {"KELO_INSTALLATION", "The account's installation"},
    {"KELO_CA_FILE", "PEM file of certificates to trust beside the system's"},
    {"KELO_TIMEOUT", "Seconds that an exchange may take"},
    {"KELO_STATS_URL", "Address of the statistics service, for kelo stats upload"},
    {"KELO_PROXY_AUTO_DISCOVERY",
     "1: use the system's proxies, or those of http_proxy, https_proxy, all_proxy and no_proxy; else none is used"},
    {"KELO_COLLABORATION_VERSION", "Version of the collaboration requests to ask for, as 1.2.3"},
};

inline constexpr Explained exitCodes[] = {
    {"0", "Success"},
    {"1", "The service answered with an error"},
    {"2", "A mistake in what was asked for; nothing was sent, or nothing but questions"},
    {"3", "No connection or no usable answer"},
    {"4", "The service was asked, but a file or pipe on this side failed"},
    {"130", "Interrupted by Ctrl-C"},
};

} // namespace cli
