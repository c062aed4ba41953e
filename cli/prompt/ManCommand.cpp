#include "cli/Commands.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonObject>

#include "cli/prompt/CommandLine.h"
#include "cli/prompt/ManPage.h"
#include "cli/shell/OutputFile.h"

namespace cli
{

namespace
{

using namespace Qt::Literals::StringLiterals;

QStringList pageWords()
{
    return Program().wordsBehind({});
}

/// The paths of all pages, which are written.
QStringList writePages(Program const& program, QString const& folder)
{
    QStringList paths;
    for (QString const& word : QStringList{QString()} + program.wordsBehind({}))
    {
        paths << QDir(folder).filePath(manPageName(word) + ".1"_L1);
        OutputFile("manual page", paths.last(), 0644).write(manPage(program, word).toUtf8());
    }
    return paths;
}

} // namespace

Action man(Arguments& arguments)
{
    auto const word = arguments.text("COMMAND", "The first word of a command; without it, the page kelo(1)", pageWords);
    auto const folder =
        arguments.text("--into", "Writes all pages to this folder instead of showing one", Offer::Kind::Folders);
    return [=](Context const& context)
    {
        Program const program;
        if (!folder->isNull())
        {
            auto const paths = writePages(program, *folder);
            context.output().show(QJsonArray::fromStringList(paths), paths.join(u'\n') + u'\n');
            return;
        }
        if (!word->isEmpty() && !program.wordsBehind({}).contains(*word))
        {
            throw unknownCommand(program, {}, *word);
        }
        auto const text = manPage(program, *word);
        context.output().show(QJsonObject{{u"Page"_s, text}}, text);
    };
}

} // namespace cli
