#include "cli/prompt/Completion.h"

namespace cli
{

namespace
{

using namespace Qt::Literals::StringLiterals;

constexpr auto head = R"(#compdef kelo
# Completes kelo's command lines in zsh; made by "kelo completion zsh".

# Files, also behind an "@".
_kelo_files()
{
    compset -P @
    _files
}
)";

/// What stands in an argument of _arguments between colons and brackets.
QString escaped(QString text)
{
    for (QChar const special : {u'\\', u':', u'[', u']'})
    {
        text.replace(special, u'\\' + QString(special));
    }
    return text;
}

/// The name of a value and how it is completed.
QString valueText(DeclaredArgument const& argument)
{
    QString action = u" "_s;
    switch (argument.offer.kind)
    {
    case Offer::Kind::Files:
        action = u"_kelo_files"_s;
        break;
    case Offer::Kind::Folders:
        action = u"_files -/"_s;
        break;
    case Offer::Kind::Words:
        action = u'(' + escaped(argument.words().join(u' ')) + u')';
        break;
    case Offer::Kind::Nothing:
        break;
    }
    return u":%1:%2"_s.arg(escaped(argument.valueName()), action);
}

QString zshArgumentsOf(DeclaredArgument const& argument)
{
    if (!argument.isOption())
    {
        return u" \\\n        %1"_s.arg(shellQuoted((argument.takesSeveral() ? u"*"_s : u""_s) + valueText(argument)));
    }
    QString text;
    for (QString const& name : argument.names)
    {
        // The other names of an option that is given are not offered any more.
        QString const begin = argument.takesSeveral() ? u"*"_s : u"(%1)"_s.arg(argument.names.join(u' '));
        text += u" \\\n        %1"_s.arg(shellQuoted(
            u"%1%2[%3]%4"_s.arg(begin, name, escaped(argument.help), argument.isFlag() ? u""_s : valueText(argument))));
    }
    return text;
}

QString functionName(QStringList const& path)
{
    return "_kelo"_L1 + (path.isEmpty() ? QString() : u'_' + path.join(u'_').replace(u'-', u'_'));
}

/// Offers the words behind a path, and hands over to the function of the one that was taken.
QString wordsText(Program const& program, QStringList const& path)
{
    QString described;
    QString cases;
    for (QString const& word : program.wordsBehind(path))
    {
        QStringList const behind = path + QStringList{word};
        described += u" \\\n            %1"_s.arg(shellQuoted(escaped(word) + u':' + program.summary(behind)));
        cases += u"        %1) %2 && ret=0 ;;\n"_s.arg(word, functionName(behind));
    }
    return u"    case $state in\n    word)\n        described=(%1\n        )\n"
           "        _describe -t commands command described && ret=0\n        ;;\n"
           "    behind)\n        words=($line[1] \"${words[@]}\")\n        ((CURRENT += 1))\n"
           "        curcontext=\"${curcontext%:*:*}:kelo-$line[1]:\"\n        case $line[1] in\n%2        esac\n       "
           " ;;\n"
           "    esac\n"_s.arg(described, cases);
}

QString functionText(Program const& program, QStringList const& path)
{
    QString arguments;
    for (auto const& each : {program.argumentsOf(path), program.commonOptions()})
    {
        for (DeclaredArgument const& argument : each)
        {
            arguments += zshArgumentsOf(argument);
        }
    }
    bool const hasWords = !program.wordsBehind(path).isEmpty();
    arguments += hasWords ? u" \\\n        ': :->word' '*::: :->behind'"_s : u""_s;
    return u"\n%1()\n{\n    local curcontext=$curcontext state line ret=1\n    local -a described\n"
           "    typeset -A opt_args\n    _arguments -C%2 && ret=0\n%3    return ret\n}\n"_s.arg(
               functionName(path), arguments, hasWords ? wordsText(program, path) : QString());
}

} // namespace

QString zshCompletion(Program const& program)
{
    QString functions;
    for (QStringList const& path : program.paths())
    {
        functions += functionText(program, path);
    }
    return QLatin1String(head) + functions
           + u"\nif [[ $funcstack[1] == _kelo ]]; then\n    _kelo \"$@\"\nelse\n    compdef _kelo kelo\nfi\n"_s;
}

} // namespace cli
