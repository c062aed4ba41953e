#include "cli/prompt/Completion.h"

namespace cli
{

namespace
{

using namespace Qt::Literals::StringLiterals;

/// Works on three functions that are made of the program: they set REPLY to the words behind a command's words, to its
/// options, and to what stands at an option or a position: "flag", "text", "file", "folder" or words, with a "+" before
/// it where there may be several.
constexpr auto script = R"bash(
_kelo()
{
    local IFS=$' \t\n' REPLY='' word='' path='' option='' position=0 i
    local -a words=()
    # Bash takes "=", ":" and "@" for words of their own.
    for ((i = 1; i <= COMP_CWORD; ++i)); do
        word=${COMP_WORDS[i]}
        if [[ ${#words[@]} -gt 0 && ($word == :* || ${COMP_WORDS[i - 1]} == [:@]) ]]; then
            words[-1]+=$word
        elif [[ $word != = ]]; then
            words+=("$word")
        elif ((i == COMP_CWORD)); then
            words+=('')
        fi
    done
    local cur=${words[-1]} last=${COMP_WORDS[COMP_CWORD]}
    [[ $last == [=:@] ]] && last=''
    for ((i = 0; i < ${#words[@]} - 1; ++i)); do
        word=${words[i]}
        if [[ $word == -* ]]; then
            _kelo_value "$path" "$word"
            option=''
            [[ -z $REPLY || $REPLY == flag ]] || option=$word
        elif [[ -n $option ]]; then
            _kelo_value "$path" "$option"
            [[ $REPLY == +* ]] || option=''
        else
            _kelo_words "$path"
            if ((position == 0)) && [[ " $REPLY " == *" $word "* ]]; then
                path=${path:+$path }$word
            else
                ((++position))
            fi
        fi
    done
    local offered=''
    COMPREPLY=()
    if [[ $cur == -* ]]; then
        _kelo_options "$path"
        offered="words $REPLY"
    elif [[ -n $option ]]; then
        _kelo_value "$path" "$option"
        offered=${REPLY#+}
    else
        _kelo_value "$path" "$((position + 1))"
        offered=${REPLY#+}
        ((position == 0)) && _kelo_words "$path" && [[ -n $REPLY ]] && offered="words $REPLY"
    fi
    case $offered in
    words\ *) mapfile -t COMPREPLY < <(compgen -W "${offered#words }" -- "$cur") ;;
    folder) mapfile -t COMPREPLY < <(compgen -d -- "$cur") ;;
    file)
        if [[ $cur == @* ]]; then
            mapfile -t COMPREPLY < <(compgen -P @ -f -- "${cur#@}")
        else
            mapfile -t COMPREPLY < <(compgen -f -- "$cur")
        fi
        ;;
    esac
    [[ $offered == words* ]] || compopt -o filenames 2>/dev/null
    # What stands before the last of bash's words is not typed again.
    COMPREPLY=("${COMPREPLY[@]#"${cur%"$last"}"}")
}

complete -F _kelo kelo
)bash";

QString valueOf(DeclaredArgument const& argument)
{
    if (argument.isFlag())
    {
        return u"flag"_s;
    }
    QString value = u"text"_s;
    switch (argument.offer.kind)
    {
    case Offer::Kind::Files:
        value = u"file"_s;
        break;
    case Offer::Kind::Folders:
        value = u"folder"_s;
        break;
    case Offer::Kind::Words:
        value = "words "_L1 + argument.words().join(u' ');
        break;
    case Offer::Kind::Nothing:
        break;
    }
    return argument.takesSeveral() ? u'+' + value : value;
}

QString caseText(QString const& pattern, QString const& reply)
{
    return u"    %1) REPLY=%2 ;;\n"_s.arg(pattern, shellQuoted(reply));
}

QString functionText(QString const& name, QString const& subject, QString const& cases)
{
    return u"\n%1()\n{\n    case %2 in\n%3    *) REPLY='' ;;\n    esac\n}\n"_s.arg(name, subject, cases);
}

QString valueCases(std::vector<DeclaredArgument> const& arguments, QString const& path)
{
    QString cases;
    int position = 0;
    for (DeclaredArgument const& argument : arguments)
    {
        if (!argument.isOption())
        {
            ++position;
            QString const place = argument.takesSeveral() ? u"[1-9]*"_s : QString::number(position);
            cases += caseText(path + shellQuoted(u"|"_s) + place, valueOf(argument));
        }
        for (QString const& name : argument.optionNames())
        {
            cases += caseText(path + shellQuoted(u'|' + name), valueOf(argument));
        }
    }
    return cases;
}

QStringList optionNames(std::vector<DeclaredArgument> const& arguments)
{
    QStringList names;
    for (DeclaredArgument const& argument : arguments)
    {
        names << argument.optionNames();
    }
    return names;
}

} // namespace

QString bashCompletion(Program const& program)
{
    auto const common = program.commonOptions();
    QString words;
    QString options;
    QString values;
    for (QStringList const& path : program.paths())
    {
        QString const name = shellQuoted(path.join(u' '));
        if (auto const behind = program.wordsBehind(path); !behind.isEmpty())
        {
            words += caseText(name, behind.join(u' '));
        }
        auto const own = program.argumentsOf(path);
        options += caseText(name, (optionNames(own) + optionNames(common)).join(u' '));
        values += valueCases(own, name);
    }
    return "# Completes kelo's command lines in bash; made by \"kelo completion bash\".\n"_L1
           + functionText(u"_kelo_words"_s, u"$1"_s, words) + functionText(u"_kelo_options"_s, u"$1"_s, options)
           + functionText(u"_kelo_value"_s, u"\"$1|$2\""_s, values + valueCases(common, u"*"_s))
           + QLatin1String(script);
}

} // namespace cli
