#include <functional>
#include <memory>
#include <typeinfo>

#include <QJsonArray>
#include <QJsonDocument>

#include <gmock/gmock.h>

#include <tests/support/AllRecords.h>

namespace
{

using jsonSerializer::implementation::Field;
using jsonSerializer::implementation::Table;

/// A record type with its type taken away.
struct Entry
{
    char const* name;
    Table table;
    std::shared_ptr<void> (*make)();
};

template <class... Records>
std::vector<Entry> entriesOf(test::RecordList<Records...>)
{
    return {{typeid(Records).name(), jsonSerializer::implementation::fieldsOf<Records>, [] {
                 return std::shared_ptr<void>(std::make_shared<Records>());
             }}...};
}

std::vector<Entry> allRecords()
{
    return entriesOf(test::AllRecords());
}

QJsonObject written(Entry const& entry, QJsonObject const& json = {})
{
    std::shared_ptr<void> const record = entry.make();
    readRecord(record.get(), entry.table, json);
    return writeRecord(record.get(), entry.table);
}

/// The keys of one object, flat parts included. `each` is told about every row.
void collectKeys(Table table, QStringList& keys, std::function<void(Field const&)> const& each)
{
    for (Field const& field : table)
    {
        each(field);
        if (field.placement == Field::Placement::Flat)
        {
            collectKeys(field.rows, keys, each);
        }
        else
        {
            keys.append(field.key.toString());
        }
        if (field.placement == Field::Placement::Within)
        {
            QStringList inner;
            collectKeys(field.rows, inner, each);
        }
    }
}

QStringList keysOf(
    Entry const& entry, std::function<void(Field const&)> const& each = [](Field const&) {})
{
    QStringList keys;
    collectKeys(entry.table, keys, each);
    return keys;
}

/// An object that has the same value under all of the record's keys, those in its inner objects included.
QJsonObject filledWith(Table table, QJsonValue const& value)
{
    QJsonObject object;
    for (Field const& field : table)
    {
        if (field.placement == Field::Placement::Flat)
        {
            QJsonObject const part = filledWith(field.rows, value);
            for (auto member = part.begin(); member != part.end(); ++member)
            {
                object.insert(member.key(), member.value());
            }
        }
        else
        {
            bool const isWithin = field.placement == Field::Placement::Within;
            object.insert(field.key, isWithin ? QJsonValue(filledWith(field.rows, value)) : value);
        }
    }
    return object;
}

/// What some member's type takes; each type's default is not among them.
QJsonArray const samples = {
    true,
    7,
    QStringLiteral("2024-01-31T10:20:30.400"),
    QStringLiteral("2024-01-31"),
    QStringLiteral("1.2.3"),
    QStringLiteral("7"),
    QStringLiteral("MSG_VOUCHER_107"),
    QStringLiteral("text"),
    QJsonArray{QStringLiteral("text")},
    QJsonArray{QJsonObject()}};

/// What a member can hold beside its default, as it is written; the default if there is no such value.
QJsonValue sampleFor(Entry const& entry, QString const& key)
{
    QJsonValue const byDefault = written(entry).value(key);
    for (QJsonValue const sample : samples)
    {
        QJsonValue const result = written(entry, {{key, sample}}).value(key);
        if (result != byDefault && (result == sample || sample.isArray()))
        {
            return result;
        }
    }
    return byDefault;
}

TEST(RoundTrip, KeysAreUniqueAndEveryRowServes)
{
    std::vector<Entry> const records = allRecords();
    EXPECT_EQ(records.size(), 92U);
    for (Entry const& entry : records)
    {
        SCOPED_TRACE(entry.name);
        QStringList const keys = keysOf(
            entry,
            [](Field const& field)
            {
                bool const isMember = field.placement == Field::Placement::Member;
                EXPECT_TRUE(isMember ? field.read != nullptr || field.write != nullptr : !field.rows.empty());
            });
        EXPECT_EQ(QSet<QString>(keys.begin(), keys.end()).size(), keys.size()) << keys.join(u' ').toStdString();
        EXPECT_FALSE(keys.contains(QString()));
    }
}

TEST(RoundTrip, WhatIsReadIsWrittenUnderTheSameKey)
{
    int count = 0;
    for (Entry const& entry : allRecords())
    {
        if (!test::goesBothWays(entry.table))
        {
            continue;
        }
        SCOPED_TRACE(entry.name);
        ++count;
        QJsonObject const byDefault = written(entry);
        QJsonObject filled = byDefault;
        for (QString const& key : keysOf(entry))
        {
            QJsonValue const sample = sampleFor(entry, key);
            // One reads as 0 on purpose, whatever it holds.
            ASSERT_EQ(sample == byDefault.value(key), key == QLatin1String("PriceType")) << key.toStdString();
            QJsonObject changed = byDefault;
            changed.insert(key, sample);
            EXPECT_EQ(written(entry, {{key, sample}}), changed) << key.toStdString() << " changes another member";
            filled.insert(key, sample);
        }
        EXPECT_EQ(written(entry, filled), filled);
    }
    EXPECT_GT(count, 40);
}

TEST(RoundTrip, MissingAndNullLeaveTheMemberAlone)
{
    for (Entry const& entry : allRecords())
    {
        SCOPED_TRACE(entry.name);
        QJsonObject const byDefault = written(entry);
        EXPECT_EQ(written(entry, filledWith(entry.table, QJsonValue::Null)), byDefault);
        for (QString const& key : keysOf(entry))
        {
            EXPECT_EQ(written(entry, {{key, QJsonValue::Null}}), byDefault) << key.toStdString();
        }
    }
}

TEST(RoundTrip, AnyTypeUnderAnyKeyCanBeRead)
{
    QJsonArray values = samples;
    for (QJsonValue const& value :
         {QJsonValue(-1e300), QJsonValue(QString()), QJsonValue(QJsonObject{{QStringLiteral("Id"), 5}}),
          QJsonValue(QJsonArray{5, QJsonValue(), QJsonArray()})})
    {
        values.append(value);
    }
    for (Entry const& entry : allRecords())
    {
        for (QJsonValue const value : values)
        {
            QJsonObject const once = written(entry, filledWith(entry.table, value));
            if (test::goesBothWays(entry.table))
            {
                EXPECT_EQ(written(entry, once), once) << entry.name << " does not settle";
            }
        }
    }
}

} // namespace
