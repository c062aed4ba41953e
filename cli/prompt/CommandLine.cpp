#include "cli/prompt/CommandLine.h"

#include <CLI/CLI.hpp>

#include <string>
#include <type_traits>
#include <vector>

#include "cli/prompt/Suggestion.h"

namespace cli
{

namespace
{

using namespace Qt::Literals::StringLiterals;

CLI::Option* addOption(CLI::App& app, std::string const& names, DeclaredArgument::Target<bool> const& target)
{
    return app.add_flag_callback(names, [target] { *target = true; });
}

CLI::Option* addOption(CLI::App& app, std::string const& names, DeclaredArgument::Target<QString> const& target)
{
    return app.add_option_function<std::string>(
        names, [target](std::string const& text) { *target = QString::fromStdString(text); });
}

CLI::Option* addOption(CLI::App& app, std::string const& names, DeclaredArgument::Target<QStringList> const& target)
{
    auto const take = [target](std::vector<std::string> const& texts)
    {
        for (auto const& text : texts)
        {
            *target << QString::fromStdString(text);
        }
    };
    return app.add_option_function<std::vector<std::string>>(names, take);
}

CLI::Option* addOption(CLI::App& app, std::string const& names, DeclaredArgument::Target<int> const& target)
{
    return app.add_option_function<int>(names, [target](int number) { *target = number; });
}

void add(CLI::App& app, std::vector<DeclaredArgument> const& arguments)
{
    for (DeclaredArgument const& argument : arguments)
    {
        auto const names = argument.names.join(u',').toStdString();
        auto* const option =
            std::visit([&app, &names](auto const& target) { return addOption(app, names, target); }, argument.target);
        option->required(argument.isRequired);
        if (argument.isSplit)
        {
            option->delimiter(',');
        }
    }
}

/// The commands, each below the word that it begins with.
void addCommands(CLI::App& app, Program const& program)
{
    for (QString const& word : program.wordsBehind({}))
    {
        // A second word may follow, and only one.
        app.add_subcommand(word.toStdString())->require_subcommand(0, 1);
    }
    for (DeclaredCommand const& command : program.commands())
    {
        CLI::App* own = app.get_subcommand(command.path.first().toStdString());
        own = command.path.size() == 1 ? own : own->add_subcommand(command.path.last().toStdString());
        add(*own, command.arguments.all());
    }
}

/// What was called, behind all words that were read.
CLI::App const& called(CLI::App const& app, QStringList& path)
{
    CLI::App const* last = &app;
    while (!last->get_subcommands().empty())
    {
        last = last->get_subcommands().front();
        path << QString::fromStdString(last->get_name());
    }
    return *last;
}

QString helpHint(QStringList const& path)
{
    return u"see %1 --help."_s.arg((QStringList{u"kelo"_s} + path).join(u' '));
}

Failure unknownOption(Program const& program, QStringList const& path, QString const& given)
{
    QString const name = given.startsWith("--"_L1) ? given.section(u'=', 0, 0) : given.left(2);
    QStringList known;
    for (auto const& arguments : {program.argumentsOf(path), program.commonOptions()})
    {
        for (auto const& argument : arguments)
        {
            known << argument.optionNames();
        }
    }
    auto const suggestion = didYouMean(name, known);
    return badInput(
        u"Unknown option \"%1\"%2"_s.arg(name, suggestion.isEmpty() ? u"; "_s + helpHint(path) : suggestion));
}

Failure mistake(CLI::App const& app, Program const& program, CLI::ParseError const& error)
{
    QStringList path;
    called(app, path);
    auto const unread = app.remaining(true);
    if (unread.empty())
    {
        return badInput(u"%1; %2"_s.arg(QString::fromStdString(error.what()), helpHint(path)));
    }
    QString const word = QString::fromStdString(unread.front());
    if (word.startsWith(u'-') && word.size() > 1)
    {
        return unknownOption(program, path, word);
    }
    if (program.command(path) == nullptr)
    {
        return unknownCommand(program, path, word);
    }
    return badInput(u"Unexpected argument \"%1\"; %2"_s.arg(word.section(u'=', 0, 0), helpHint(path)));
}

} // namespace

Failure unknownCommand(Program const& program, QStringList const& path, QString const& word)
{
    auto const suggestion = didYouMean(word, program.wordsBehind(path));
    return badInput(u"Unknown command \"%1\"%2"_s.arg(
        (path + QStringList{word}).join(u' '), suggestion.isEmpty() ? u"; "_s + helpHint(path) : suggestion));
}

CommandLine readCommandLine(Program const& program, int argc, char** argv)
{
    CLI::App app(std::string(), "kelo");
    app.set_version_flag("-V,--version", std::string());
    // Options of every command may stand behind its words, too.
    app.fallthrough();
    app.require_subcommand(0, 1);
    add(app, program.commonArguments());
    addCommands(app, program);
    CommandLine line;
    try
    {
        app.parse(argc, argv);
    }
    catch (CLI::CallForHelp const&)
    {
        line.wish = CommandLine::Wish::Help;
    }
    catch (CLI::CallForVersion const&)
    {
        line.wish = CommandLine::Wish::Version;
    }
    catch (CLI::ParseError const& error)
    {
        throw mistake(app, program, error);
    }
    for (auto const* const option : called(app, line.path).get_options())
    {
        if (option->get_positional())
        {
            for (auto const& word : option->results())
            {
                line.positions << QString::fromStdString(word);
            }
        }
    }
    return line;
}

} // namespace cli
