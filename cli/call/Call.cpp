#include "cli/Commands.h"

#include <QJsonDocument>

#include "cli/call/OpenApi.h"
#include "cli/call/Operations.h"
#include "cli/prompt/Help.h"
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

/// A row for each member, those of nested objects behind theirs.
void addMembers(std::vector<Entry>& entries, Form const& form, QString const& place)
{
    for (Form const& member : form.parts)
    {
        // The elements of a list have no key of their own.
        QString const path = member.key.isEmpty() ? place + "[]"_L1
                             : place.isEmpty()    ? member.key
                                                  : place + u'.' + member.key;
        if (!member.key.isEmpty())
        {
            entries.emplace_back(path, wantedText(member) + (member.isRequired ? " (required)"_L1 : ""_L1));
        }
        addMembers(entries, member, path);
    }
}

} // namespace

QString callHelp(QStringList const& words)
{
    auto const& operation = operationNamed(words.first());
    auto const usage = operation.usage();
    auto const& route = operation.schema.route;
    static constexpr char const* methods[] = {"GET", "PUT", "POST"};
    QString text = u"Usage: kelo call %1%2\n\n%3 %4\n"_s.arg(
        operation.name(), usage.isEmpty() ? QString() : u' ' + usage.join(u' '),
        QLatin1String(methods[static_cast<std::size_t>(route.method)]), pathOf(route));
    std::vector<Entry> members;
    if (auto const form = operation.form())
    {
        addMembers(members, *form, {});
    }
    return text + sectionText(u"Members of the JSON, which is given itself or as @FILE"_s, members);
}

Action call(Arguments& arguments)
{
    auto const list = arguments.offlineFlag("--list", "Shows all operations with their arguments; needs no service");
    auto const withSecrets = arguments.flag("--with-secrets", "Shows password hashes and keys, too");
    auto const name = arguments.text(
        "OPERATION", "The operation; kelo help call OPERATION tells what it takes",
        {operationNames, [](QString const& word) { operationNamed(word); }});
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
        if (name->isEmpty())
        {
            throw badInput(u"OPERATION is required: kelo call --list shows all."_s);
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
        auto const text = QString::fromUtf8(document.toJson());
        bool const changes = operation.schema.route.method != rest::HttpMethod::Get && !operation.schema.route.isQuery;
        changes ? context.output().showDone(shown, text) : context.output().show(shown, text);
    };
}

} // namespace cli
