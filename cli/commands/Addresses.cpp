#include "cli/commands/Commands.h"

#include <QJsonArray>
#include <QJsonObject>

#include "cli/Arguments.h"
#include "cli/Context.h"

namespace cli
{

using namespace Qt::Literals::StringLiterals;

Action addresses(Arguments& /*arguments*/)
{
    return [](Context const& context)
    {
        auto const list = context.valueOf(context.connection().getShippingAddresses(context.installation()));
        QJsonArray json;
        std::vector<QStringList> rows;
        for (auto const& address : list.addresses)
        {
            json.append(QJsonObject{
                {u"Identifier"_s, address.identifier},
                {u"Name"_s, address.name},
                {u"Street"_s, address.street},
                {u"PostalCode"_s, address.postalCode},
                {u"City"_s, address.city},
                {u"Region"_s, address.region},
                {u"Country"_s, address.country}});
            rows.push_back(
                {address.identifier, address.name, address.street, address.postalCode, address.city, address.country});
        }
        context.output().show(
            json, tableText({u"ADDRESS"_s, u"NAME"_s, u"STREET"_s, u"POSTAL CODE"_s, u"CITY"_s, u"COUNTRY"_s}, rows));
    };
}

} // namespace cli
