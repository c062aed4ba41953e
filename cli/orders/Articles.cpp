#include "cli/Commands.h"

#include <QJsonArray>

#include "cli/shell/Arguments.h"
#include "cli/shell/Context.h"

namespace cli
{

using namespace Qt::Literals::StringLiterals;

Action articles(Arguments& /*arguments*/)
{
    return [](Context const& context)
    {
        auto const list = context.valueOf(context.connection().getAvailableArticles(context.installation()));
        std::vector<QStringList> rows;
        for (QString const& number : list.articleNumbers)
        {
            rows.push_back({number});
        }
        context.output().show(
            QJsonArray::fromStringList(list.articleNumbers), tableText({{u"ARTICLE"_s, Cells::Copied}}, rows));
    };
}

} // namespace cli
