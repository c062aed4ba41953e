#include <set>

#include <gmock/gmock.h>

#include <KeloCommunicationLib/json/internal/Converters.h>
#include <tests/support/LogCapture.h>
#include <tests/wire/BothWays.h>

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

/// Reads the text both ways, as whatever may stand in a reply.
void expectTheSame(QByteArray const& text)
{
    for (test::WireType const& type :
         {test::wireType<Sample>(), test::wireType<std::vector<Sample>>(), test::wireType<std::vector<QString>>(),
          test::wireType<std::vector<std::vector<double>>>()})
    {
        test::LogCapture const log;
        QJsonValue const content = test::readFromText(type, text).content;
        auto const warnings = log.warnings();
        EXPECT_EQ(content, test::readFromDocument(type, QJsonDocument::fromJson(text)).content) << text.toStdString();
        EXPECT_EQ(log.warnings().size(), 2 * warnings.size()) << text.toStdString();
    }
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
        {"Size", "9223372036854775807", "9223372036854775807"},
        {"Size", "1e300", "18446744073709551615"},
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

/// The usual texts, cut off anywhere, and every text that differs from one of them in one place.
std::set<QString> textsLike(QStringList const& usual)
{
    std::set<QString> texts;
    for (QString const& text : usual)
    {
        for (qsizetype at = 0; at < text.size(); ++at)
        {
            texts.insert(text.left(at));
            texts.insert(text.left(at) + text.mid(at + 1));
            for (QChar const other : u"0123456789-+:.,TtZz /\u0660"_s)
            {
                texts.insert(text.left(at) + other + text.mid(at + 1));
                texts.insert(text.left(at) + other + text.mid(at));
            }
        }
    }
    return texts;
}

TEST(Json, DatesAndTimesAreReadAsQtReadsThem)
{
    namespace json = jsonSerializer::implementation;
    auto texts = textsLike(
        {u"2024-02-29"_s, u"2024-02-29T10:20:30"_s, u"2024-02-29T10:20:30Z"_s, u"2024-02-29T23:59:59.123"_s,
         u"2024-02-29T10:20:30.123Z"_s, u"2024-02-29T24:00:00.000Z"_s});
    for (int thousandth = 0; thousandth < 1000; ++thousandth)
    {
        texts.insert(u"2024-02-29T10:20:30."_s + QString::number(thousandth).rightJustified(3, u'0'));
    }
    for (QString const& text : texts)
    {
        QDate date(2000, 1, 1);
        json::Scalar ofDate{.is = json::Scalar::Is::Text, .text = text};
        json::Value<QDate>::read(date, ofDate);
        EXPECT_EQ(date, QDate::fromString(text, Qt::ISODate)) << text.toStdString();
        QDateTime time(QDate(2000, 1, 1), QTime(0, 0));
        json::Scalar ofTime{.is = json::Scalar::Is::Text, .text = text};
        json::Value<QDateTime>::read(time, ofTime);
        QDateTime const expected = QDateTime::fromString(text, Qt::ISODateWithMs);
        EXPECT_EQ(time, expected) << text.toStdString();
        EXPECT_EQ(time.timeSpec(), expected.timeSpec()) << text.toStdString();
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

QByteArrayList words(char const* text)
{
    return QByteArray(text).simplified().split(' ');
}

TEST(Json, TextAndDocumentReadAsTheSameWhateverStandsUnderAKey)
{
    QByteArrayList const values =
        words(R"(null true false tru nul nullx truefalse True [] {} [[[7]]] {"Number":7} [{"Number":7},5,null,{}] ,
            ["a",null,["b"],{"c":1}] {"a":[1]} {"a":[1],"b":[2]} 0 -0 0.0 -0.0 0e5 -0e-5 7 7.0 7.5 70e-1 7e0 7E+2
            2147483647 2147483648 -2147483648 -2147483649 2147483647.5 4294967303 9007199254740991 9007199254740992
            9007199254740993 -9007199254740993 9007199254740993.0 9223372036854775807 9223372036854775808
            -9223372036854775808 -9223372036854775809 9223372036854775807.0 9223372036854774784.0 18446744073709551615
            18446744073709551616 1e18 1e19 1e300 1e308 1e309 1e999 -1e999 1e-300 1e-308 2.2250738585072014e-308
            2.2250738585072011e-308 5e-324 1e-400 -1e-400 0.1 0.30000000000000004 123456789012345678901234567890
            0.000000000000000000000000000000000000000000000000000000000000000001 1. .5 01 -01 00 +1 - 1e 1e+ 0x10 1_0
            NaN Infinity -Infinity 1.5.5 --1 "" "text" "ä€😀" "\u00e4\u20AC\ud83d\ude00" "\"\\\/\b\f\n\r\t" "\u0000"
            "\x" "\u12" "\u12G4" "\ud800" "\ud800x" "\udc00" "\ud800\u0041" "\ud800\ud800\udc00" "\uFFFF" "\uFEFFx"
            "x\uFEFF" "a a" a" "a\ "a\" "a""b" 'a' "2024-01-31" "2024-01-31T10:20:30.4+02:00" "1.2-beta" "Known")")
        + QByteArrayList{
            "",
            "1 2",
            "\"a\" ",
            "\"\xEF\xBB\xBFx\"",
            "\"\xEF\xBB\xBF\"",
            "\"x\xEF\xBB\xBF\"",
            "\"\xEF\xBF\xBF\"",
            "\"\x80\"",
            "\"a\xC3\"",
            "\"\xC0\x80\"",
            "\"\xED\xA0\x80\"",
            "\"\xF4\x90\x80\x80\"",
            "\"\xFF\"",
            "\"a\x01\x1F\x7F\"",
            "\"a\nb\tc\"",
            QByteArray("\"a\0b\"", 5)};
    QByteArrayList const places =
        words(R"(@ @x @@ [@] [@,7] [7,@ {"Other":@} {"Other":[@],"Int":7} {"Other":{"a":@,"b":[{"c":@}]},"Int":7}
            {"Text":@} {"Flag":@,"Int":7} {"Int":@} {"Size":@} {"Ratio":@} {"Date":@,"Time":@,"Version":@}
            {"Kind":@,"Named":@,"Generic":@} {"Inner":@} {"Inner":{"Number":@},"Int":7} {"Texts":@} {"Texts":["a",@]}
            {"List":@,"Int":7} {"List":[{"Number":@},@]} {"Within":@} {"Within":{"Text":@}} {"Number":@} {@:7}
            {"Int":@,"Int":7} {"Int":7,"Int":@} {"Inner":@,"Inner":@} {"List":[{"Number":1}],"List":@}
            {"Other":@,"Other":@,"Int":7} {"a":[{"b":@,"b":7}],"Int":7})")
        + QByteArrayList{" @\r\n\t", "@ x", "{ \"Int\" : @\n}"};
    for (QByteArray const& place : places)
    {
        for (QByteArray const& value : values)
        {
            expectTheSame(QByteArray(place).replace('@', value));
        }
    }
}

TEST(Json, TextAndDocumentReadAsTheSameWhateverTheShape)
{
    QByteArrayList texts =
        words(R"({"\u0049nt":7} {"Int":1,"\u0049nt":7} {"Other":{"\u0061":1}} {"In\u0000t":7} {"":7,"Int":7} {"Int":7,}
            {,"Int":7} {"Int"7} {"Int"=7} {Int:7} {"Int":7"Size":7} {"Int":7,"Size"} {7:7} {"Int":7]} [{"Int":7},] [,]
            [7,,7] [} {] [7} {}{} [][] {"Int":7}/**/ {"Other":/**/1,"Int":7})")
        + QByteArrayList{
            "",
            " ",
            "{\"Int\":7 \"Size\":7}",
            "{\"Int\xFF\":7}",
            "{\"Oth\ner\":1,\"Int\":7}",
            "\f{}",
            "\xEF\xBB\xBF",
            "\xEF\xBB\xBF{\"Int\":7}",
            QByteArray("\0", 1),
            QByteArray("{\"Int\":7}\0 ", 11),
            QByteArray("\xFE\xFF\0{\0}", 6)};
    for (qsizetype const depth : {1, 2, 126, 127, 128, 129, 511, 512, 513, 1022, 1023, 1024, 1025, 2000})
    {
        for (auto const& [open, close] : {std::pair("[", "]"), {R"({"List":)", "}"}, {R"([{"a":)", "}]"}})
        {
            QByteArray const opened = QByteArray(open).repeated(depth);
            QByteArray const nested = opened + "[7]" + QByteArray(close).repeated(depth);
            texts += {opened, nested, R"({"Int":7,"Other":)" + nested + '}', "[[7.5]," + nested + ']'};
        }
    }
    texts += {QByteArray("[").repeated(1000000), QByteArray(R"({"a":)").repeated(1000000)};
    // A long list whose elements are not like the first ones.
    texts += '[' + QByteArray("0,").repeated(99) + R"({"Number":7},"text",[7.5]])";
    QByteArray const whole = QJsonDocument(QJsonArray{defaults, defaults}).toJson();
    for (qsizetype size = 1; size <= whole.size(); ++size)
    {
        texts += {whole.first(size), whole.sliced(1, size - 1)};
    }
    for (QByteArray const& text : texts)
    {
        expectTheSame(text);
    }
}

} // namespace
