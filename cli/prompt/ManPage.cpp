#include "cli/prompt/ManPage.h"

#include "cli/prompt/Help.h"

namespace cli
{

namespace
{

using namespace Qt::Literals::StringLiterals;

/// As it is read, whatever is in it.
QString plain(QString text)
{
    text.replace(u'\\', "\\e"_L1).replace(u'-', "\\-"_L1);
    return text.startsWith(u'.') || text.startsWith(u'\'') ? "\\&"_L1 + text : text;
}

QString section(QString const& title, QString const& text)
{
    return text.isEmpty() ? QString() : u".SH %1\n%2"_s.arg(title, text);
}

QString paragraph(QString const& text)
{
    return u".PP\n%1\n"_s.arg(plain(text));
}

QString list(std::vector<Entry> const& entries)
{
    QString text;
    for (auto const& [name, meaning] : entries)
    {
        text += u".TP\n\\fB%1\\fR\n%2\n"_s.arg(plain(name), plain(meaning));
    }
    return text;
}

QString header(QString const& name, QString const& summary)
{
    // Programs that index pages want a name, a dash and one line.
    return u".TH %1 1 \"\" \"kelo %2\" \"KELO\"\n"_s.arg(plain(name.toUpper()), QStringLiteral(KELO_VERSION))
           + section(u"NAME"_s, u"%1 \\- %2\n"_s.arg(plain(name), plain(summary)));
}

QString commandText(DeclaredCommand const& command)
{
    auto const& arguments = command.arguments.all();
    return u".SS \"%1\"\n"_s.arg(plain("kelo "_L1 + command.path.join(u' ')))
           + paragraph(QString::fromLatin1(command.row->summary) + u'.') + list(entriesOf(arguments, false))
           + list(entriesOf(arguments, true))
           + u".PP\nExample:\n.PP\n.RS 4\n.nf\n%1\n.fi\n.RE\n"_s.arg(plain(QString::fromLatin1(command.row->example)));
}

std::vector<DeclaredCommand const*> commandsOf(Program const& program, QString const& word)
{
    auto shown = commandsBehind(program, {word});
    if (auto const* const own = program.command({word}))
    {
        shown.insert(shown.begin(), own);
    }
    return shown;
}

QString synopsis(Program const& program, std::vector<DeclaredCommand const*> const& shown)
{
    QString text;
    for (auto const* const command : shown)
    {
        text += (text.isEmpty() ? QString() : u".br\n"_s) + plain(usageText(program, command->path)) + u'\n';
    }
    return text;
}

} // namespace

QString manPageName(QString const& word)
{
    return word.isEmpty() ? u"kelo"_s : "kelo-"_L1 + word;
}

QString manPage(Program const& program, QString const& word)
{
    auto const shown = word.isEmpty() ? commandsBehind(program, {}) : commandsOf(program, word);
    QString others;
    for (QString const& other : word.isEmpty() ? program.wordsBehind({}) : QStringList{QString()})
    {
        others += u"%1\\fB%2\\fR(1)"_s.arg(others.isEmpty() ? u""_s : u",\n"_s, plain(manPageName(other)));
    }
    QString text;
    if (word.isEmpty())
    {
        text = header(manPageName(word), u"talks to the KELO service from the shell"_s)
               + section(u"SYNOPSIS"_s, plain(usageText(program, {})) + u'\n')
               + section(u"COMMANDS"_s, list(entriesOf(shown)))
               + section(u"OPTIONS"_s, list(entriesOf(program.commonOptions(), true)))
               + section(u"ENVIRONMENT"_s, list(entriesOf(settings)))
               + section(u"EXIT STATUS"_s, list(entriesOf(exitCodes)));
    }
    else
    {
        text = header(manPageName(word), program.summary({word})) + section(u"SYNOPSIS"_s, synopsis(program, shown));
        QString described;
        for (auto const* const command : shown)
        {
            described += commandText(*command);
        }
        text += section(u"DESCRIPTION"_s, described)
                + section(
                    u"OPTIONS OF EVERY COMMAND"_s,
                    paragraph(u"They are in kelo(1), with the settings and the exit codes."_s));
    }
    return text + section(u"SEE ALSO"_s, others + u'\n');
}

} // namespace cli
