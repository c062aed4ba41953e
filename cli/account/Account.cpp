#include "cli/Commands.h"

#include <KeloCommunicationLib/account/AccountSettingsRetriever.h>

#include "cli/shell/Context.h"
#include "cli/shell/Listing.h"
#include "cli/shell/Progress.h"

namespace cli
{

namespace
{

using namespace Qt::Literals::StringLiterals;

std::vector<QStringList> rowsOf(QJsonObject const& settings)
{
    std::vector<QStringList> rows;
    for (auto setting = settings.begin(); setting != settings.end(); ++setting)
    {
        rows.push_back({setting.key(), cellText(setting.value())});
    }
    return rows;
}

} // namespace

Action account(Arguments& /*arguments*/)
{
    return [](Context const& context)
    {
        // What the retriever cannot get it tells only there.
        showLibraryLog(true);
        AccountSettingsRetriever retriever;
        {
            Waiting const waiting([] { return u"Fetching the account's settings"_s; });
            retriever.retrieveAccountSettings(context.connection());
        }
        constexpr std::size_t objects = 4; // the replies before the list of help files
        context.check(retriever.lastStatus(), Shape::Object, objects);
        auto const settings = QJsonObject::fromVariantHash(retriever.getAccountSettings());
        auto const references = QJsonObject::fromVariantHash(retriever.getUpdateReferences());
        context.output().show(
            QJsonObject{{u"AccountSettings"_s, settings}, {u"UpdateReferences"_s, references}},
            tableText({u"SETTING"_s, u"VALUE"_s}, rowsOf(settings)) + u'\n'
                + tableText({u"DOCUMENT"_s, {u"FILE"_s, Cells::Copied}}, rowsOf(references)));
    };
}

} // namespace cli
