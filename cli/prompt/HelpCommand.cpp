#include "cli/Commands.h"

#include <QJsonObject>

#include "cli/prompt/CommandLine.h"
#include "cli/prompt/Help.h"

namespace cli
{

namespace
{

QStringList firstWords()
{
    return Program().wordsBehind({});
}

/// The help of what these words call; of some commands it depends on what stands behind them.
QString helpOf(QStringList const& words)
{
    Program const program;
    QStringList path;
    while (path.size() < words.size() && program.wordsBehind(path).contains(words[path.size()]))
    {
        path << words[path.size()];
    }
    auto const behind = words.sliced(path.size());
    if (behind.isEmpty())
    {
        return helpText(program, path);
    }
    auto const* const command = program.command(path);
    if (command == nullptr || command->row->help == nullptr)
    {
        throw unknownCommand(program, path, behind.first());
    }
    return command->row->help(behind);
}

} // namespace

Action help(Arguments& arguments)
{
    auto const words = arguments.texts("COMMAND", "The words of a command, or its first one", firstWords);
    return [=](Context const& context)
    {
        auto const text = helpOf(*words);
        context.output().show(QJsonObject{{QStringLiteral("Help"), text}}, text);
    };
}

} // namespace cli
