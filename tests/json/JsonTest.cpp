#include <limits>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gmock/gmock.h>

#include <KeloCommunicationLib/json/internal/Converters.h>
#include <tests/support/LogCapture.h>

namespace
{

using namespace Qt::Literals::StringLiterals;

enum class Kind : int
{
    Unset = -1,
    Other,
    Known
};

struct Inner
{
    int number = -1;
};

/// Has a member of every type, each with a default that is not the empty value.
struct Sample
{
    QString text = u"default"_s;
    bool flag = true;
    int number = -1;
    quint64 size = 9;
    double ratio = 0.5;
    QDate date{2000, 1, 1};
    QDateTime time{QDate(2000, 1, 1), QTime(0, 0)};
    QVersionNumber version{9};
    Kind kind = Kind::Unset;
    Kind named = Kind::Unset;
    Kind generic = Kind::Other;
    Inner inner;
    QList<QString> texts{u"default"_s};
    std::optional<std::vector<Inner>> list;
    QString within = u"default"_s;
    Inner flat{5};
};

} // namespace

namespace jsonSerializer::implementation
{

template <>
inline constexpr auto fieldsOf<Inner> = fields<Inner>({field<&Inner::number>(u"Number")});

inline constexpr auto withinRows = fields<Sample>({field<&Sample::within>(u"Text")});
inline constexpr TextTable<Kind, 1> kindTexts{{{{latin1("Known"), Kind::Known}}}, Kind::Other};

template <>
inline constexpr auto fieldsOf<Sample> = fields<Sample>({
    field<&Sample::text>(u"Text"),
    field<&Sample::flag>(u"Flag"),
    field<&Sample::number>(u"Int"),
    field<&Sample::size>(u"Size"),
    field<&Sample::ratio>(u"Ratio"),
    field<&Sample::date>(u"Date"),
    field<&Sample::time>(u"Time"),
    field<&Sample::version>(u"Version"),
    field<&Sample::kind>(u"Kind", leftOutWhenUnset),
    field<&Sample::named>(u"Named", texts<kindTexts>),
    field<&Sample::generic>(u"Generic", alwaysZero),
    field<&Sample::inner>(u"Inner"),
    field<&Sample::texts>(u"Texts"),
    field<&Sample::list>(u"List"),
    within<Sample, withinRows>(u"Within"),
    flat<&Sample::flat>(),
});

} // namespace jsonSerializer::implementation

namespace
{

QJsonObject object(QByteArray const& json)
{
    QJsonDocument const document = QJsonDocument::fromJson(json);
    EXPECT_TRUE(document.isObject()) << json.toStdString();
    return document.object();
}

/// What a record holds after reading, as it is written.
QJsonObject afterReading(QByteArray const& json)
{
    return jsonSerializer::toJson(jsonSerializer::fromJson<Sample>(object(json))).toObject();
}

std::vector<int> numbersOf(QByteArray const& json)
{
    using Converter = jsonSerializer::implementation::FromJSON<std::vector<Inner>, 1>;
    std::vector<int> numbers;
    for (Inner const& inner : Converter::convert(QJsonDocument::fromJson(json)))
    {
        numbers.push_back(inner.number);
    }
    return numbers;
}

QJsonObject const defaults = object(
    R"({"Text":"default","Flag":true,"Int":-1,"Size":9,"Ratio":0.5,"Date":"2000-01-01","Time":"2000-01-01T00:00:00.000",
        "Version":"9","Named":"","Generic":0,"Inner":{"Number":-1},"Texts":["default"],"Within":{"Text":"default"},"Number":5})");

TEST(Json, AMemberIsReadByItsTypesRule)
{
    struct
    {
        QByteArray key;
        QByteArray value;
        QByteArray expected; ///< as it is written afterwards; empty: left out
    } const rows[] = {
        {"Text", R"("ä\u0000")", R"("ä\u0000")"},
        {"Text", "5", R"("")"},
        {"Flag", "false", "false"},
        {"Flag", R"("true")", "false"},
        {"Int", "7", "7"},
        {"Int", "7.5", "0"},
        {"Int", "3000000000", "0"},
        {"Int", R"("7")", "0"},
        {"Size", "9007199254740993", "9007199254740993"},
        {"Size", "7.9", "7"},
        {"Size", "-7", "0"},
        {"Size", R"("7")", "0"},
        {"Ratio", "7", "7"},
        {"Ratio", "[]", "0"},
        {"Date", R"("2024-01-31")", R"("2024-01-31")"},
        {"Date", R"("2024-02-30")", R"("")"},
        {"Date", "20240131", R"("")"},
        {"Time", R"("2024-01-31T10:20:30.4Z")", R"("2024-01-31T10:20:30.400Z")"},
        {"Time", R"("31.1.2024")", R"("")"},
        {"Version", R"("1.2.3-beta")", R"("1.2.3")"},
        {"Version", R"("beta")", R"("")"},
        {"Version", "1.2", R"("")"},
        {"Kind", "42", "42"},
        {"Kind", "0", "0"},
        {"Kind", "-1", ""},
        {"Kind", R"("Known")", "0"},
        {"Named", R"("Known")", R"("Known")"},
        {"Named", R"("known")", R"("")"},
        {"Generic", "1", "0"},
        {"Generic", R"("Known")", "0"},
        {"Generic", "{}", "0"},
        {"Inner", R"({"Number":7,"More":8})", R"({"Number":7})"},
        {"Inner", "[7]", R"({"Number":-1})"},
        {"Texts", R"(["a",5,null])", R"(["a","",""])"},
        {"Texts", R"("a")", "[]"},
        {"List", R"([{"Number":7},5,null])", R"([{"Number":7},{"Number":-1},{"Number":-1}])"},
        {"List", "{}", "[]"},
        {"Within", R"({"Text":"t","Number":7})", R"({"Text":"t"})"},
        {"Within", R"("t")", R"({"Text":"default"})"},
        {"Number", "7", "7"},
    };
    for (auto const& row : rows)
    {
        QByteArray const json = "{\"" + row.key + "\":" + row.value + '}';
        QJsonObject expected = defaults;
        QJsonArray const value = QJsonDocument::fromJson('[' + row.expected + ']').array();
        expected.insert(
            QString::fromLatin1(row.key), value.isEmpty() ? QJsonValue(QJsonValue::Undefined) : value.at(0));
        EXPECT_EQ(afterReading(json), expected) << json.toStdString();
    }
}

TEST(Json, MissingAndNullMembersKeepTheirDefaults)
{
    EXPECT_EQ(afterReading("{}"), defaults);
    QJsonObject nulls = defaults;
    for (QString const& key : defaults.keys() + QStringList{u"Kind"_s, u"List"_s})
    {
        nulls.insert(key, QJsonValue::Null);
    }
    EXPECT_EQ(afterReading(QJsonDocument(nulls).toJson()), defaults);
    EXPECT_EQ(afterReading(R"({"Within":{"Text":null},"text":"t"})"), defaults);
}

TEST(Json, EnumerationsOutsideOfObjects)
{
    EXPECT_EQ((jsonSerializer::fromJson<Kind, QJsonValue>(QJsonValue(42))), Kind(42));
    EXPECT_EQ((jsonSerializer::fromJson<Kind, QJsonValue>(QJsonValue(u"1"_s))), Kind::Other);
    EXPECT_EQ((jsonSerializer::fromJson<Kind, QJsonValue>(QJsonValue(QJsonValue::Undefined))), Kind::Other);
}

TEST(Json, ListReplies)
{
    test::LogCapture const log;
    EXPECT_THAT(numbersOf("[]"), testing::IsEmpty());
    EXPECT_THAT(numbersOf(""), testing::IsEmpty());
    EXPECT_THAT(numbersOf(R"({"items":[{"Number":1},{"Number":2}]})"), testing::ElementsAre(1, 2));
    EXPECT_THAT(numbersOf(R"([{"Number":1},5,null,[{"Number":3}],{}])"), testing::ElementsAre(1, -1, -1, -1, -1));
    EXPECT_THAT(log.warnings(), testing::IsEmpty());

    std::vector<std::string> expected;
    for (char const* const json : {R"({"a":[],"b":1})", "{}", R"({"a":{}})", R"({"a":null})"})
    {
        EXPECT_THAT(numbersOf(json), testing::IsEmpty()) << json;
        expected.emplace_back(
            "jsonSerializer::implementation::FromJSON::convert cannot convert json object to container type.");
        EXPECT_EQ(log.warnings(), expected) << json;
    }
}

TEST(Json, WholeNumbersKeepTheirDigits)
{
    Sample sample;
    for (quint64 const size : {quint64(0), (quint64(1) << 53) + 1, quint64(std::numeric_limits<qint64>::max())})
    {
        sample.size = size;
        QJsonObject const json = object(QJsonDocument(jsonSerializer::toJson(sample).toObject()).toJson());
        EXPECT_EQ(jsonSerializer::fromJson<Sample>(json).size, size);
    }
    EXPECT_EQ(jsonSerializer::fromJson<Sample>(object(R"({"Size":1e300})")).size, std::numeric_limits<quint64>::max());
}

} // namespace
