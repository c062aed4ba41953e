#include "cli/Commands.h"

#include <algorithm>

#include <QJsonDocument>

#include "cli/call/Operations.h"
#include "cli/shell/Arguments.h"
#include "cli/shell/Context.h"
#include "cli/shell/Listing.h"

namespace cli
{

namespace
{

using namespace Qt::Literals::StringLiterals;

void listOperations(Output const& output)
{
    QJsonArray list;
    for (auto const& operation : allOperations())
    {
        auto const form = operation.form();
        list.append(QJsonObject{
            {u"Operation"_s, operation.name()},
            {u"Arguments"_s, QJsonArray::fromStringList(operation.usage())},
            {u"Members"_s, form ? membersText(*form) : QString()}});
    }
    showTable(
        output, list,
        {{u"Operation"_s, u"OPERATION"_s, Cells::Copied},
         {u"Arguments"_s, u"ARGUMENTS"_s},
         {u"Members"_s, u"MEMBERS OF THE JSON"_s}});
}

Operation const& operationNamed(QString const& name)
{
    auto const& all = allOperations();
    auto const found =
        std::find_if(all.begin(), all.end(), [&name](Operation const& operation) { return operation.name() == name; });
    if (found == all.end())
    {
        throw badInput(u"Unknown operation \"%1\": kelo call --list shows all."_s.arg(name));
    }
    return *found;
}

} // namespace

Action call(Arguments& arguments)
{
    auto const list = arguments.flag("--list", "Shows all operations with their arguments");
    auto const withSecrets = arguments.flag("--with-secrets", "Shows password hashes and keys, too");
    auto const name = arguments.text("OPERATION", "The operation, as --list names it");
    auto const words = arguments.paths(
        "ARGUMENTS", "Its arguments; JSON stands here itself, or as @FILE (@-: standard input). The installation comes "
                     "from the options");
    return [=](Context const& context)
    {
        if (*list)
        {
            listOperations(context.output());
            return;
        }
        auto const& operation = operationNamed(*name);
        if (auto const wanted = operation.usage(); words->size() != wanted.size())
        {
            throw badInput(u"%1 takes %2."_s.arg(
                operation.name(), wanted.isEmpty() ? u"no arguments"_s : u"the arguments "_s + wanted.join(u' ')));
        }
        if (operation.isSecret && !*withSecrets)
        {
            throw badInput(u"What %1 gives is secret: give --with-secrets to have it shown."_s.arg(operation.name()));
        }
        if (*withSecrets)
        {
            context.recordSecrets();
        }
        auto const reply = operation.call(context, *words);
        auto const shown = *withSecrets ? reply : withoutSecrets(reply);
        auto const document = shown.isArray() ? QJsonDocument(shown.toArray()) : QJsonDocument(shown.toObject());
        context.output().show(shown, QString::fromUtf8(document.toJson()));
    };
}

} // namespace cli
