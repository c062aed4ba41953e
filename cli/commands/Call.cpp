#include "cli/commands/Commands.h"

#include <algorithm>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include "cli/Arguments.h"
#include "cli/Context.h"
#include "cli/Listing.h"
#include "cli/Operations.h"

namespace cli
{

namespace
{

using namespace Qt::Literals::StringLiterals;

void listOperations(Output const& output)
{
    QJsonArray list;
    for (auto const& operation : operations())
    {
        list.append(QJsonObject{
            {u"Operation"_s, operation.name},
            {u"Arguments"_s, QJsonArray::fromStringList(operation.arguments)},
            {u"Members"_s, operation.members}});
    }
    showTable(
        output, list, {u"Operation"_s, u"Arguments"_s, u"Members"_s},
        {u"OPERATION"_s, u"ARGUMENTS"_s, u"MEMBERS OF THE JSON"_s});
}

Operation const& operationNamed(QString const& name)
{
    auto const& all = operations();
    auto const found =
        std::find_if(all.begin(), all.end(), [&name](Operation const& operation) { return operation.name == name; });
    if (found == all.end())
    {
        throw badInput(u"Unknown operation \"%1\": kelo call --list shows all."_s.arg(name));
    }
    return *found;
}

bool isSecret(QString const& key)
{
    return key.compare("PasswordHash"_L1, Qt::CaseInsensitive) == 0
           || key.compare("TwoFactorKey"_L1, Qt::CaseInsensitive) == 0;
}

/// The value without members that hold a user's secrets.
QJsonValue withoutSecrets(QJsonValue const& json)
{
    if (json.isArray())
    {
        QJsonArray array;
        for (auto const& element : json.toArray())
        {
            array.append(withoutSecrets(element));
        }
        return array;
    }
    if (!json.isObject())
    {
        return json;
    }
    QJsonObject object = json.toObject();
    for (QString const& key : object.keys())
    {
        if (isSecret(key))
        {
            object.remove(key);
        }
        else
        {
            object.insert(key, withoutSecrets(object[key]));
        }
    }
    return object;
}

} // namespace

Action call(Arguments& arguments)
{
    auto const list = arguments.flag("--list", "Shows all operations with their arguments");
    auto const withSecrets = arguments.flag("--with-secrets", "Shows password hashes and keys, too");
    auto const name = arguments.text("OPERATION", "The operation, as --list names it");
    auto const words = arguments.paths(
        "ARGUMENTS", "Its arguments; JSON stands here itself, or as @FILE. The installation comes from the options");
    return [=](Context const& context)
    {
        if (*list)
        {
            listOperations(context.output());
            return;
        }
        auto const& operation = operationNamed(*name);
        if (words->size() != operation.arguments.size())
        {
            QString const wanted = operation.arguments.isEmpty() ? u"no arguments"_s
                                                                 : u"the arguments "_s + operation.arguments.join(u' ');
            throw badInput(u"%1 takes %2."_s.arg(operation.name, wanted));
        }
        if (operation.isSecret && !*withSecrets)
        {
            throw badInput(u"What %1 gives is secret: give --with-secrets to have it shown."_s.arg(operation.name));
        }
        auto const reply = operation.run(context, *words);
        auto const shown = *withSecrets ? reply : withoutSecrets(reply);
        auto const document = shown.isArray() ? QJsonDocument(shown.toArray()) : QJsonDocument(shown.toObject());
        context.output().show(shown, QString::fromUtf8(document.toJson()));
    };
}

} // namespace cli
