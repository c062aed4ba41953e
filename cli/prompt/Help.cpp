#include "cli/prompt/Help.h"

#include <algorithm>

namespace cli
{

namespace
{

using namespace Qt::Literals::StringLiterals;

constexpr qsizetype lineWidth = 100;
constexpr qsizetype widestName = 26;

/// The text in lines of that many characters at most, each behind the indentation.
QString wrapped(QString const& text, qsizetype width, QString const& indentation)
{
    QStringList lines{QString()};
    for (QString const& word : text.split(u' ', Qt::SkipEmptyParts))
    {
        QString& line = lines.last();
        if (line.isEmpty())
        {
            line = word;
        }
        else if (line.size() + 1 + word.size() <= width)
        {
            line += u' ' + word;
        }
        else
        {
            lines << word;
        }
    }
    return lines.join(u'\n' + indentation);
}

QString positionText(DeclaredArgument const& argument)
{
    QString const name = argument.names.first() + (argument.takesSeveral() ? "..."_L1 : ""_L1);
    return argument.isRequired ? name : u"[%1]"_s.arg(name);
}

QString textOfProgram(Program const& program)
{
    QString text = u"Talks to the KELO service from the shell.\n\nUsage: %1\n"_s.arg(usageText(program, {}));
    auto const all = commandsBehind(program, {});
    auto const begins = [](CommandSection const& section)
    {
        return [&section](DeclaredCommand const* command)
        { return QLatin1String(command->row->path) == QLatin1String(section.firstCommand); };
    };
    auto begin = all.begin();
    for (auto const* section = std::begin(commandSections); section != std::end(commandSections); ++section)
    {
        auto const* const next = section + 1;
        auto const end = next == std::end(commandSections) ? all.end() : std::find_if(begin, all.end(), begins(*next));
        text += sectionText(QLatin1String(section->title), entriesOf({begin, end}));
        begin = end;
    }
    return text + sectionText(u"Options of every command"_s, entriesOf(program.commonOptions(), true))
           + sectionText(u"Settings from the environment"_s, entriesOf(settings))
           + sectionText(u"Exit codes"_s, entriesOf(exitCodes))
           + "\nWith --json errors are JSON, too, on standard error. kelo help COMMAND tells more.\n"_L1;
}

} // namespace

QString usageText(Program const& program, QStringList const& path)
{
    QString usage = u"kelo"_s;
    for (QString const& word : path)
    {
        usage += u' ' + word;
    }
    auto const* const command = program.command(path);
    if (command == nullptr)
    {
        return usage + " COMMAND [OPTIONS] [ARGUMENTS]"_L1;
    }
    usage += " [OPTIONS]"_L1;
    for (DeclaredArgument const& argument : command->arguments.all())
    {
        if (!argument.isOption())
        {
            usage += u' ' + positionText(argument);
        }
        else if (argument.isRequired)
        {
            usage += u" %1 %2"_s.arg(argument.names.first(), argument.valueName());
        }
    }
    return usage;
}

Entry entryOf(DeclaredArgument const& argument)
{
    QString name = argument.names.join(", "_L1);
    if (argument.isOption() && !argument.isFlag())
    {
        name += u' ' + argument.valueName() + (argument.takesSeveral() ? "..."_L1 : ""_L1);
    }
    auto const words = argument.words();
    bool const isShort = !words.isEmpty() && words.join(", "_L1).size() < 2 * lineWidth;
    QString const values = isShort ? u": "_s + words.join(", "_L1) : QString();
    return {name, argument.help + values + (argument.isOption() && argument.isRequired ? " (required)"_L1 : ""_L1)};
}

std::vector<Entry> entriesOf(std::vector<DeclaredArgument> const& arguments, bool areOptions)
{
    std::vector<Entry> entries;
    for (DeclaredArgument const& argument : arguments)
    {
        if (argument.isOption() == areOptions)
        {
            entries.push_back(entryOf(argument));
        }
    }
    return entries;
}

std::vector<Entry> entriesOf(std::vector<DeclaredCommand const*> const& those)
{
    std::vector<Entry> entries;
    for (auto const* const command : those)
    {
        entries.emplace_back(command->path.join(u' '), QString::fromLatin1(command->row->summary));
    }
    return entries;
}

std::vector<Entry> entriesOf(std::span<Explained const> all)
{
    std::vector<Entry> entries;
    for (Explained const& each : all)
    {
        entries.emplace_back(QString::fromLatin1(each.name), QString::fromLatin1(each.meaning));
    }
    return entries;
}

std::vector<DeclaredCommand const*> commandsBehind(Program const& program, QStringList const& path)
{
    std::vector<DeclaredCommand const*> behind;
    for (DeclaredCommand const& command : program.commands())
    {
        if (command.path.size() > path.size() && command.path.first(path.size()) == path)
        {
            behind.push_back(&command);
        }
    }
    return behind;
}

QString sectionText(QString const& title, std::vector<Entry> const& entries)
{
    if (entries.empty())
    {
        return {};
    }
    qsizetype width = 0;
    for (auto const& [name, meaning] : entries)
    {
        width = std::max(width, std::min(name.size(), widestName));
    }
    QString const indentation(width + 4, u' ');
    QString text = u"\n%1:\n"_s.arg(title);
    for (auto const& [name, meaning] : entries)
    {
        // What is too wide for its column has a line of its own.
        QString const begin =
            name.size() > width ? u"  %1\n%2"_s.arg(name, indentation) : "  "_L1 + name.leftJustified(width + 2);
        text += begin + wrapped(meaning, lineWidth - indentation.size(), indentation) + u'\n';
    }
    return text;
}

QString helpText(Program const& program, QStringList const& path)
{
    if (path.isEmpty())
    {
        return textOfProgram(program);
    }
    auto const behind = sectionText(u"Commands"_s, entriesOf(commandsBehind(program, path)));
    QString text = u"%1.\n\nUsage: %2\n"_s.arg(program.summary(path), usageText(program, path));
    auto const* const command = program.command(path);
    if (command == nullptr)
    {
        return text + behind + u"\nkelo help %1 COMMAND tells more.\n"_s.arg(path.join(u' '));
    }
    text += sectionText(u"Arguments"_s, entriesOf(command->arguments.all(), false))
            + sectionText(u"Options"_s, entriesOf(command->arguments.all(), true)) + behind;
    return text
           + u"\nExample:\n  %1\n\nOptions of every command, settings and exit codes: kelo --help\n"_s.arg(
               QLatin1String(command->row->example));
}

} // namespace cli
