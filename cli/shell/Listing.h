#pragma once

#include <vector>

#include <QJsonArray>
#include <QJsonObject>
#include <QString>
#include <QStringList>

#include <KeloCommunicationLib/json/RecordSchema.h>

#include "cli/shell/Output.h"

namespace cli
{

/// One member of an object: its key and the head of its column.
struct Column
{
    QString key;
    QString title;
    Cells cells = Cells::Read;
};

/// Records, or other values, in the service's own form.
template <class T>
QJsonValue described(T const& value)
{
    if constexpr (requires { value.begin(); })
    {
        QJsonArray array;
        for (auto const& element : value)
        {
            array.append(described(element));
        }
        return array;
    }
    else
    {
        return jsonSerializer::describe(value);
    }
}

/// A row for each element below the header.
template <class List, class Writer>
QString tableOf(std::vector<Heading> const& header, List const& list, Writer const& rowOf)
{
    std::vector<QStringList> rows;
    for (auto const& element : list)
    {
        rows.push_back(rowOf(element));
    }
    return tableText(header, rows);
}

/// What a table's cell holds of a JSON value.
QString cellText(QJsonValue const& value);

/// Shows objects as they are, or as a table with a row for each of them.
void showTable(Output const& output, QJsonValue const& objects, std::vector<Column> const& columns);

/// Shows one object as it is, or a line for each of its members that is not empty.
void showObject(Output const& output, QJsonObject const& object);

/// The keys of members that hold a user's secrets.
QStringList const& secretKeys();

/// The value with these members replaced, wherever they stand; an undefined replacement leaves them out.
QJsonValue withoutSecrets(QJsonValue const& json, QJsonValue const& replacement = QJsonValue::Undefined);

} // namespace cli
