#include "cli/commands/Commands.h"

#include <QJsonArray>
#include <QJsonObject>

#include "cli/Arguments.h"
#include "cli/Context.h"
#include "cli/Input.h"

namespace cli
{

using namespace Qt::Literals::StringLiterals;

Action connectionsList(Arguments& /*arguments*/)
{
    return [](Context const& context)
    {
        QJsonArray json;
        std::vector<QStringList> rows;
        for (auto const& partner :
             context.valueOf(context.connection().getConnectionsForLicense(context.installation())))
        {
            json.append(QJsonObject{
                {u"ConnectionId"_s, partner.getId()},
                {u"Name"_s, partner.getName()},
                {u"IsInitiator"_s, partner.isInitiator()},
                {u"ZipCode"_s, partner.getZipCode()},
                {u"Status"_s, nameOf(partner.getState())}});
            rows.push_back(
                {partner.getId(), partner.getName(), partner.getZipCode(), nameOf(partner.getState()),
                 partner.isInitiator() ? u"us"_s : u"them"_s});
        }
        context.output().show(
            json, tableText({u"CONNECTION"_s, u"PARTNER"_s, u"ZIP CODE"_s, u"STATUS"_s, u"STARTED BY"_s}, rows));
    };
}

} // namespace cli
