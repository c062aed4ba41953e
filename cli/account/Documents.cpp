#include "cli/Commands.h"

#include "cli/shell/Arguments.h"
#include "cli/shell/Context.h"
#include "cli/shell/Input.h"
#include "cli/shell/Listing.h"

namespace cli
{

namespace
{

using namespace Qt::Literals::StringLiterals;

QJsonObject documentJson(QString const& kind, FileLicenseInfo const& file)
{
    auto json = jsonSerializer::describe(file);
    json.insert(u"Document"_s, kind);
    return json;
}

void appendHelp(Context const& context, QString const& language, QJsonArray& documents)
{
    if (!language.isNull())
    {
        auto json = documentJson(
            u"help"_s, context.valueOf(context.connection().getHelpFileInfo(
                           context.installation(), identifier("language code", language))));
        json.insert(u"LanguageCode"_s, language);
        documents.append(json);
        return;
    }
    for (auto const& help : context.valueOf(context.connection().getHelpFilesInfo(context.installation())))
    {
        auto json = jsonSerializer::describe(help);
        json.insert(u"Document"_s, u"help"_s);
        json.insert(u"FileId"_s, json.take(u"Id"_s)); // as of the other documents
        documents.append(json);
    }
}

} // namespace

Action documents(Arguments& arguments)
{
    auto const language = arguments.text("--language", "Only the help file in this language, with its name and size");
    return [=](Context const& context)
    {
        // Before anything is sent.
        if (!language->isNull())
        {
            identifier("language code", *language);
        }
        auto& connection = context.connection();
        auto const& installation = context.installation();
        QJsonArray list;
        list.append(documentJson(u"about"_s, context.valueOf(connection.getAboutFileInfo(installation))));
        list.append(documentJson(u"instructions"_s, context.valueOf(connection.getIfuFileInfo(installation))));
        list.append(documentJson(u"translation"_s, context.valueOf(connection.getUITranslationFileInfo(installation))));
        appendHelp(context, *language, list);
        showTable(
            context.output(), list,
            {{u"Document"_s, u"DOCUMENT"_s},
             {u"LanguageCode"_s, u"LANGUAGE"_s},
             {u"DisplayName"_s, u"LANGUAGE NAME"_s},
             {u"FileId"_s, u"FILE"_s, Cells::Copied},
             {u"FileName"_s, u"NAME"_s},
             {u"FileSize"_s, u"BYTES"_s, Cells::Whole}});
    };
}

} // namespace cli
