#pragma once

#include <functional>
#include <vector>

#include <QJsonArray>
#include <QJsonObject>
#include <QString>

namespace cli
{

class Output;

/// One member of a record: its key in JSON, the head of its column, and its value.
template <class T>
struct Column
{
    QString key;
    QString title;
    std::function<QJsonValue(T const&)> value;
};

/// What a table's cell holds of a JSON value.
QString cellText(QJsonValue const& value);

/// Shows objects as they are, or as a table with a row for each of them and a column for each of the keys.
void showTable(Output const& output, QJsonArray const& objects, QStringList const& keys, QStringList const& titles);

/// Shows one object as it is, or a line for each of its members that is not empty.
void showObject(Output const& output, QJsonObject const& object);

/// Shows records as objects, or as a table.
template <class T>
void showList(Output const& output, std::vector<T> const& records, std::vector<Column<T>> const& columns)
{
    QStringList keys, titles;
    for (auto const& column : columns)
    {
        keys << column.key;
        titles << column.title;
    }
    QJsonArray objects;
    for (auto const& record : records)
    {
        QJsonObject object;
        for (auto const& column : columns)
        {
            object.insert(column.key, column.value(record));
        }
        objects.append(object);
    }
    showTable(output, objects, keys, titles);
}

} // namespace cli
