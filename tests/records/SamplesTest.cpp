#include <QFile>
#include <QSet>

#include <gmock/gmock.h>

#include <KeloCommunicationLib/account/internal/AccountFields.h>
#include <KeloCommunicationLib/json/internal/Converters.h>
#include <tests/wire/BothWays.h>

// samples.json holds one object of every record as it stands on the wire, each member with another value than its
// default: what the tables are held against.

namespace
{

using namespace Qt::Literals::StringLiterals;
using jsonSerializer::MemberSchema;
using jsonSerializer::ValueKind;
using jsonSerializer::ValueSchema;
using test::WireType;

QJsonObject const& samples()
{
    static QJsonObject const all = []
    {
        QFile file(QStringLiteral(KELO_SAMPLES));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return QJsonDocument::fromJson(file.readAll()).object();
    }();
    return all;
}

QString nameOf(WireType const& type)
{
    return ValueSchema(*type.type).recordName();
}

QJsonObject sampleOf(WireType const& type)
{
    return samples().value(nameOf(type)).toObject();
}

QByteArray textOf(QJsonObject const& json)
{
    return QJsonDocument(json).toJson(QJsonDocument::Compact);
}

QJsonObject described(WireType const& type, void const* record)
{
    return jsonSerializer::implementation::describeRecord(*type.type, record);
}

/// What is written after the sample was read.
QJsonObject expectedOf(WireType const& type)
{
    QJsonObject expected = sampleOf(type);
    for (QString const& alwaysZero : {u"PriceType"_s, u"ConnectionStatus"_s})
    {
        if (expected.contains(alwaysZero))
        {
            expected.insert(alwaysZero, 0);
        }
    }
    return expected;
}

/// Every key of the schema stands in the sample, and once in the schema.
void expectAllKeys(ValueSchema const& schema, QJsonValue const& sample)
{
    if (schema.kind() == ValueKind::List)
    {
        EXPECT_FALSE(sample.toArray().isEmpty());
        for (QJsonValue const element : sample.toArray())
        {
            expectAllKeys(schema.items(), element);
        }
    }
    QSet<QString> keys;
    for (MemberSchema const& member : schema.members())
    {
        QString const key = member.key().toString();
        SCOPED_TRACE(key.toStdString());
        EXPECT_FALSE(key.isEmpty() || keys.contains(key));
        EXPECT_TRUE(sample.toObject().contains(key));
        keys.insert(key);
        expectAllKeys(member, sample.toObject().value(key));
    }
}

/// An object that has the same value under all of the record's keys, those in its inner objects included.
QJsonObject filledWith(ValueSchema const& schema, QJsonValue const& value)
{
    QJsonObject object;
    for (MemberSchema const& member : schema.members())
    {
        bool const isPart = member.kind() == ValueKind::Record && member.recordName().isEmpty();
        object.insert(member.key(), isPart ? QJsonValue(filledWith(member, value)) : value);
    }
    return object;
}

TEST(Samples, EveryKeyOfEveryRecordHasOne)
{
    QStringList names;
    for (WireType const& type : test::allRecords())
    {
        SCOPED_TRACE(nameOf(type).toStdString());
        names.append(nameOf(type));
        QJsonObject const sample = sampleOf(type);
        expectAllKeys(ValueSchema(*type.type), sample);
        QJsonObject const defaults = described(type, type.make().get());
        for (QString const& key : sample.keys())
        {
            EXPECT_NE(sample.value(key), defaults.value(key)) << key.toStdString() << " has its default";
        }
    }
    names.sort();
    EXPECT_EQ(names, samples().keys());
}

TEST(Samples, ReadEitherWayAndWrittenAgainTheyAreTheSame)
{
    auto const& records = test::allRecords();
    auto const& lists = test::listsOfAllRecords();
    for (std::size_t index = 0; index < records.size(); ++index)
    {
        WireType const& type = records[index];
        SCOPED_TRACE(nameOf(type).toStdString());
        QJsonObject const sample = sampleOf(type);
        QByteArray const text = textOf(sample);
        test::Reading const reading = test::readFromText(type, text);
        EXPECT_TRUE(reading.isFromText) << "else the fast way is none, and untested";
        EXPECT_EQ(reading.content, test::readFromDocument(type, QJsonDocument(sample)).content);
        for (QByteArray const& list : {'[' + text + ',' + text + ']', R"({ "Any" : [)" + text + ", " + text + "]}\n"})
        {
            test::Reading const two = test::readFromText(lists[index], list);
            EXPECT_TRUE(two.isFromText);
            EXPECT_EQ(two.content, (QJsonArray{reading.content, reading.content}));
        }
        if (nameOf(type) == u"VantorStats")
        {
            // Only written.
            QByteArray const data = QByteArray::fromBase64(sample[u"Data"].toString().toLatin1());
            EXPECT_EQ(jsonSerializer::toJson(VantorStats(sample[u"SelectedType"].toString(), data)), sample);
            continue;
        }
        EXPECT_EQ(described(type, reading.value.get()), expectedOf(type));
    }
}

TEST(Samples, AnyTypeUnderAnyKeyCanBeRead)
{
    QJsonValue const values[] = {
        QJsonValue::Null,
        true,
        7,
        -1e300,
        u""_s,
        u"text"_s,
        u"2024-01-31T10:20:30.400"_s,
        QJsonObject{{u"Id"_s, 5}},
        QJsonArray{5, QJsonValue(), QJsonArray(), u"text"_s, QJsonObject()}};
    for (WireType const& type : test::allRecords())
    {
        for (QJsonValue const& value : values)
        {
            QJsonObject const json = filledWith(ValueSchema(*type.type), value);
            SCOPED_TRACE(nameOf(type).toStdString() + ' ' + textOf(json).toStdString());
            test::Reading const reading = test::readFromText(type, textOf(json));
            EXPECT_TRUE(reading.isFromText);
            EXPECT_EQ(reading.content, test::readFromDocument(type, QJsonDocument(json)).content);
            QJsonObject const written = described(type, reading.value.get());
            EXPECT_EQ(described(type, test::readFromText(type, textOf(written)).value.get()), written)
                << "does not settle";
            if (value.isNull())
            {
                EXPECT_EQ(reading.content, test::readFromText(type, "{}").content) << "is not like missing";
            }
        }
    }
}

} // namespace
