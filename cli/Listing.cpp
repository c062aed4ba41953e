#include "cli/Listing.h"

#include "cli/Output.h"

namespace cli
{

using namespace Qt::Literals::StringLiterals;

QString cellText(QJsonValue const& value)
{
    if (value.isBool())
    {
        return value.toBool() ? u"yes"_s : u"no"_s;
    }
    if (value.isArray())
    {
        QStringList texts;
        for (auto const& element : value.toArray())
        {
            texts << cellText(element);
        }
        return texts.join(", "_L1);
    }
    return value.toVariant().toString();
}

void showTable(Output const& output, QJsonArray const& objects, QStringList const& keys, QStringList const& titles)
{
    std::vector<QStringList> rows;
    for (auto const& object : objects)
    {
        QStringList& row = rows.emplace_back();
        for (QString const& key : keys)
        {
            row << cellText(object[key]);
        }
    }
    output.show(objects, tableText(titles, rows));
}

void showObject(Output const& output, QJsonObject const& object)
{
    std::vector<std::pair<QString, QString>> fields;
    for (auto member = object.begin(); member != object.end(); ++member)
    {
        fields.emplace_back(member.key(), cellText(member.value()));
    }
    output.show(object, fieldsText(fields));
}

} // namespace cli
