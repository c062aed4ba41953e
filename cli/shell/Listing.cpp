#include "cli/shell/Listing.h"

namespace cli
{

using namespace Qt::Literals::StringLiterals;

QString cellText(QJsonValue const& value)
{
    if (value.isBool())
    {
        return value.toBool() ? u"yes"_s : u"no"_s;
    }
    if (value.isObject())
    {
        // What it is called first: the members are in the order of the alphabet.
        QStringList texts;
        for (auto const& member : value.toObject())
        {
            texts << cellText(member);
        }
        QString const first = texts.takeFirst();
        return texts.isEmpty() ? first : u"%1 (%2)"_s.arg(first, texts.join(", "_L1));
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

void showTable(Output const& output, QJsonValue const& objects, std::vector<Column> const& columns)
{
    std::vector<Heading> header;
    for (Column const& column : columns)
    {
        header.emplace_back(column.title, column.cells);
    }
    auto const rowOf = [&columns](QJsonValue const& object)
    {
        QStringList row;
        for (Column const& column : columns)
        {
            row << cellText(object[column.key]);
        }
        return row;
    };
    output.show(objects, tableOf(header, objects.toArray(), rowOf));
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

QStringList const& secretKeys()
{
    static QStringList const keys{u"PasswordHash"_s, u"TwoFactorKey"_s};
    return keys;
}

QJsonValue withoutSecrets(QJsonValue const& json, QJsonValue const& replacement)
{
    if (json.isArray())
    {
        QJsonArray array;
        for (auto const& element : json.toArray())
        {
            array.append(withoutSecrets(element, replacement));
        }
        return array;
    }
    if (!json.isObject())
    {
        return json;
    }
    QJsonObject const object = json.toObject();
    QJsonObject shown;
    for (auto member = object.begin(); member != object.end(); ++member)
    {
        // Inserting an undefined value leaves the member out.
        bool const isSecret = secretKeys().contains(member.key());
        shown.insert(member.key(), isSecret ? replacement : withoutSecrets(member.value(), replacement));
    }
    return shown;
}

} // namespace cli
