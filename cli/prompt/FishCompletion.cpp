#include "cli/prompt/Completion.h"

namespace cli
{

namespace
{

using namespace Qt::Literals::StringLiterals;

/// Behind the lists of all paths and of the options that take a value.
constexpr auto functions = R"fish(
# The words of the command that is being typed, each behind a space, and how many arguments stand behind them.
function __kelo_line
    set -l path
    set -l position 0
    set -l is_value 0
    for word in (commandline -opc)[2..]
        if test $is_value = 1
            set is_value 0
        else if string match -q -- '-*' $word
            contains -- $word $__kelo_with_value; and set is_value 1
        else if test $position = 0; and contains -- "$path $word" ' '$__kelo_paths
            set path "$path $word"
        else
            set position (math $position + 1)
        end
    end
    echo $path
    echo $position
end

function __kelo_is
    set -l line (__kelo_line)
    test "$line[1]" = "$argv[1]"; or return 1
    set -q argv[2]; or return 0
    test $line[2] = $argv[2]; and return 0
    test "$argv[3]" = several; and test $line[2] -ge $argv[2]
end

# Files, also behind an "@".
function __kelo_files
    set -l token (commandline -ct)
    if string match -q -- '@*' $token
        string replace -r '^' '@' (__fish_complete_path (string sub -s 2 -- $token))
    else
        __fish_complete_path $token
    end
end

complete -c kelo -f
)fish";

/// Of the value of an option, or of an argument at a position.
QString offerText(DeclaredArgument const& argument)
{
    switch (argument.offer.kind)
    {
    case Offer::Kind::Files:
        return u" -a '(__kelo_files)'"_s;
    case Offer::Kind::Folders:
        return u" -a '(__fish_complete_directories)'"_s;
    case Offer::Kind::Words:
        return " -a "_L1 + shellQuoted(argument.words().join(u' '));
    case Offer::Kind::Nothing:
        break;
    }
    return {};
}

QString optionText(DeclaredArgument const& option, QString const& condition)
{
    QString names;
    for (QString const& name : option.names)
    {
        names += name.startsWith("--"_L1) ? " -l "_L1 + name.mid(2) : " -s "_L1 + name.mid(1);
    }
    return u"complete -c kelo%1%2%3%4 -d %5\n"_s.arg(
        condition, names, option.isFlag() ? u""_s : u" -x"_s, offerText(option), shellQuoted(option.help));
}

QString positionText(DeclaredArgument const& argument, QString const& path, int position)
{
    if (argument.offer.kind == Offer::Kind::Nothing)
    {
        return {};
    }
    QString const condition = u"__kelo_is %1 %2%3"_s.arg(
        shellQuoted(path), QString::number(position), argument.takesSeveral() ? u" several"_s : u""_s);
    return u"complete -c kelo -n %1%2 -d %3\n"_s.arg(
        shellQuoted(condition), offerText(argument), shellQuoted(argument.help));
}

/// The words behind a path, and what its command takes.
QString commandText(Program const& program, QStringList const& path)
{
    QString const name = path.isEmpty() ? QString() : u' ' + path.join(u' ');
    QString text;
    for (QString const& word : program.wordsBehind(path))
    {
        QString const condition = shellQuoted(u"__kelo_is %1 0"_s.arg(shellQuoted(name)));
        text += u"complete -c kelo -n %1 -a %2 -d %3\n"_s.arg(
            condition, word, shellQuoted(program.summary(path + QStringList{word})));
    }
    int position = 0;
    for (DeclaredArgument const& argument : program.argumentsOf(path))
    {
        text += argument.isOption() ? optionText(argument, " -n "_L1 + shellQuoted("__kelo_is "_L1 + shellQuoted(name)))
                                    : positionText(argument, name, position++);
    }
    return text;
}

} // namespace

QString fishCompletion(Program const& program)
{
    QStringList paths;
    QStringList withValue;
    QString lines;
    auto const take = [&withValue](std::vector<DeclaredArgument> const& arguments)
    {
        for (DeclaredArgument const& argument : arguments)
        {
            withValue << (argument.isOption() && !argument.isFlag() ? argument.names : QStringList());
        }
    };
    take(program.commonArguments());
    for (QStringList const& path : program.paths())
    {
        paths << (path.isEmpty() ? QString() : shellQuoted(path.join(u' ')));
        take(program.argumentsOf(path));
        lines += commandText(program, path);
    }
    withValue.removeDuplicates();
    // To show the version takes no value.
    withValue.removeAll(u"--version"_s);
    for (DeclaredArgument const& option : program.commonOptions())
    {
        lines += optionText(option, {});
    }
    return u"# Completes kelo's command lines in fish; made by \"kelo completion fish\".\n"
           "set -g __kelo_paths%1\nset -g __kelo_with_value %2\n"_s.arg(paths.join(u' '), withValue.join(u' '))
           + QLatin1String(functions) + lines;
}

} // namespace cli
