#include "cli/prompt/Program.h"

#include <algorithm>

namespace cli
{

void DeclaredCommand::check() const
{
    for (DeclaredArgument const& argument : arguments.all())
    {
        auto const* const text = std::get_if<DeclaredArgument::Target<QString>>(&argument.target);
        if (argument.offer.check != nullptr && text != nullptr && !(*text)->isNull())
        {
            argument.offer.check(**text);
        }
    }
}

bool DeclaredCommand::runsOffline() const
{
    auto const saysSo = [](DeclaredArgument const& argument)
    {
        // Only flags do.
        auto const* const flag = std::get_if<DeclaredArgument::Target<bool>>(&argument.target);
        return argument.needsNoService && flag != nullptr && **flag;
    };
    return row->isOffline || std::any_of(arguments.all().begin(), arguments.all().end(), saysSo);
}

Program::Program()
    : url_(common_.text("--url", "Address of the KELO service; else KELO_API_URL")),
      user_(common_.text("--user", "User name; else KELO_USERNAME")),
      password_(common_.text("--password", "Password; better given in KELO_PASSWORD, which other users cannot see")),
      installation_(common_.text("--installation", "The account's installation; else KELO_INSTALLATION")),
      certificates_(common_.text(
          "--ca-file", "PEM file of certificates to trust beside the system's; else KELO_CA_FILE", Offer::Kind::Files)),
      timeout_(common_.text(
          "--timeout", "Seconds, 0.1 to 3600, that an exchange may take, or the transfer of a file may stand still; "
                       "else KELO_TIMEOUT; 30 unless given")),
      trace_(common_.text(
          "--trace",
          "Records the exchanges in this HAR file (-: standard output): secrets redacted, patients' data not",
          Offer::Kind::Files)),
      json_(common_.flag("--json", "JSON for programs instead of tables for people")),
      verbose_(common_.flag(
          "-v,--verbose", "Shows each exchange when it ends, and the library's log lines, on standard error"))
{
    for (Command const& row : cli::commands)
    {
        DeclaredCommand& made = commands_.emplace_back();
        made.path = QString::fromLatin1(row.path).split(u' ');
        made.row = &row;
        made.action = row.declare(made.arguments);
    }
}

DeclaredCommand const* Program::command(QStringList const& path) const
{
    auto const found = std::find_if(
        commands_.begin(), commands_.end(), [&path](DeclaredCommand const& command) { return command.path == path; });
    return found == commands_.end() ? nullptr : &*found;
}

std::vector<DeclaredArgument> Program::argumentsOf(QStringList const& path) const
{
    auto const* const own = command(path);
    return own == nullptr ? std::vector<DeclaredArgument>() : own->arguments.all();
}

std::vector<DeclaredArgument> Program::commonOptions() const
{
    Arguments always;
    always.flag("-h,--help", "Shows the help of kelo, or of the command");
    always.flag("-V,--version", "Shows the version");
    auto options = common_.all();
    options.insert(options.end(), always.all().begin(), always.all().end());
    return options;
}

QList<QStringList> Program::paths() const
{
    QList<QStringList> paths{QStringList()};
    for (QString const& first : wordsBehind({}))
    {
        paths << QStringList{first};
        for (QString const& second : wordsBehind({first}))
        {
            paths << QStringList{first, second};
        }
    }
    return paths;
}

QStringList Program::wordsBehind(QStringList const& path) const
{
    QStringList words;
    for (DeclaredCommand const& command : commands_)
    {
        if (command.path.size() > path.size() && command.path.first(path.size()) == path)
        {
            words << command.path[path.size()];
        }
    }
    words.removeDuplicates();
    return words;
}

QString Program::summary(QStringList const& path) const
{
    if (auto const* const own = command(path))
    {
        return QString::fromLatin1(own->row->summary);
    }
    auto const* const group = std::find_if(
        std::begin(commandGroups), std::end(commandGroups),
        [&path](CommandGroup const& each) { return path.value(0) == QLatin1String(each.name); });
    return group == std::end(commandGroups) ? QString() : QString::fromLatin1(group->summary);
}

CommonOptions Program::options() const
{
    return {
        .url = *url_,
        .user = *user_,
        .password = *password_,
        .installation = *installation_,
        .certificateFile = *certificates_,
        .timeout = *timeout_,
        .traceFile = *trace_,
        .json = *json_,
        .verbose = *verbose_};
}

} // namespace cli
