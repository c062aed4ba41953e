#include "simulator/StateJson.h"

#include "simulator/StateChecks.h"
#include "simulator/StateMembers.h"

#include <QJsonDocument>

namespace simulator
{

namespace
{

struct AnyVisitor
{
    template <class Value>
    void operator()(char const* key, Value& value);
};

template <class Value>
concept Record = requires(AnyVisitor& visit, Value& value)
{
    members(visit, value);
};

template <class Value>
concept Enumeration = std::is_enum_v<Value>;

// ---- writing -------------------------------------------------------------------------------------------------------

class Writer
{
public:
    template <class Value>
    void operator()(char const* key, Value& value)
    {
        json_.insert(QLatin1String(key), write(value));
    }

    template <Record Value>
    static QJsonObject record(Value& value)
    {
        Writer writer;
        members(writer, value);
        return writer.json_;
    }

private:
    static QJsonValue write(bool value) { return value; }
    static QJsonValue write(int value) { return value; }
    static QJsonValue write(qint64 value) { return value; }
    static QJsonValue write(QString const& text) { return text; }
    static QJsonValue write(QStringList const& texts) { return QJsonArray::fromStringList(texts); }
    static QJsonValue write(QByteArray const& text) { return QString::fromLatin1(text); }
    static QJsonValue write(Binary const& data) { return QString::fromLatin1(data.bytes.toBase64()); }
    static QJsonValue write(QDate const& day) { return day.toString(Qt::ISODate); }
    static QJsonValue write(QDateTime const& time) { return time.toString(Qt::ISODateWithMs); }
    static QJsonValue write(QJsonArray const& array) { return array; }
    static QJsonValue write(QJsonObject const& object) { return object; }

    template <class Value>
    static QJsonValue write(QMap<QString, Value> const& map)
    {
        QJsonObject object;
        for (auto const& key : map.keys())
        {
            object.insert(key, write(map[key]));
        }
        return object;
    }
    template <class Element>
    static QJsonValue write(std::vector<Element>& list)
    {
        return writeList(list);
    }
    template <class Element>
    static QJsonValue write(IdList<Element>& list)
    {
        return writeList(list);
    }
    template <class List>
    static QJsonValue writeList(List& list)
    {
        QJsonArray array;
        for (auto& element : list)
        {
            array.append(record(element));
        }
        return array;
    }
    template <Enumeration Value>
    static QJsonValue write(Value value)
    {
        return static_cast<int>(value);
    }
    template <Record Value>
    static QJsonValue write(Value& value)
    {
        return record(value);
    }

    QJsonObject json_ = {};
};

// ---- reading -------------------------------------------------------------------------------------------------------

constexpr int lastOf(RequestKind)
{
    return static_cast<int>(RequestKind::Referral);
}
constexpr int lastOf(OrderKind)
{
    return static_cast<int>(OrderKind::CaseDesigner);
}
constexpr int lastOf(OrderState)
{
    return static_cast<int>(OrderState::Completed);
}

class Reader
{
public:
    template <class Value>
    void operator()(char const* key, Value& value)
    {
        known_ << QLatin1String(key);
        if (auto const json = json_.value(known_.last()); !json.isUndefined())
        {
            read(json, value, place_ + (place_.isEmpty() ? "" : ".") + known_.last());
        }
    }

    template <Record Value>
    static void record(QJsonValue const& json, Value& value, QString const& place)
    {
        require(json.isObject(), Reason::WrongType, place, "an object is wanted");
        Reader reader(json.toObject(), place);
        members(reader, value);
        for (auto const& key : reader.json_.keys())
        {
            require(reader.known_.contains(key), Reason::UnknownMember, place, key);
        }
    }

private:
    Reader(QJsonObject json, QString place) : json_(std::move(json)), place_(std::move(place)) {}

    static void read(QJsonValue const& json, bool& value, QString const& place)
    {
        require(json.isBool(), Reason::WrongType, place, "true or false is wanted");
        value = json.toBool();
    }
    static void read(QJsonValue const& json, qint64& value, QString const& place)
    {
        auto const isWhole = json.toInteger(0) == json.toInteger(1);
        require(json.isDouble() && isWhole, Reason::WrongType, place, "an integer is wanted");
        value = json.toInteger();
    }
    static void read(QJsonValue const& json, int& value, QString const& place)
    {
        qint64 number = 0;
        read(json, number, place);
        require(number == static_cast<int>(number), Reason::BadValue, place, QString::number(number));
        value = static_cast<int>(number);
    }
    static void read(QJsonValue const& json, QString& text, QString const& place)
    {
        require(json.isString(), Reason::WrongType, place, "a text is wanted");
        text = json.toString();
    }
    static void read(QJsonValue const& json, QByteArray& text, QString const& place)
    {
        QString whole;
        read(json, whole, place);
        text = whole.toLatin1();
    }
    static void read(QJsonValue const& json, Binary& data, QString const& place)
    {
        QByteArray text;
        read(json, text, place);
        auto const decoded = QByteArray::fromBase64Encoding(text, QByteArray::AbortOnBase64DecodingErrors);
        require(static_cast<bool>(decoded), Reason::BadValue, place, "base64 is wanted");
        data.bytes = decoded.decoded;
    }
    static void read(QJsonValue const& json, QDate& day, QString const& place)
    {
        day = QDate::fromString(json.toString(), Qt::ISODate);
        require(day.isValid() || json == QJsonValue(""), Reason::WrongType, place, "a day as YYYY-MM-DD is wanted");
    }
    static void read(QJsonValue const& json, QDateTime& time, QString const& place)
    {
        time = QDateTime::fromString(json.toString(), Qt::ISODateWithMs);
        require(time.isValid() || json == QJsonValue(""), Reason::WrongType, place, "a time in ISO form is wanted");
    }
    static void read(QJsonValue const& json, QJsonObject& object, QString const& place)
    {
        require(json.isObject(), Reason::WrongType, place, "an object is wanted");
        object = json.toObject();
    }
    static void read(QJsonValue const& json, QJsonArray& array, QString const& place)
    {
        require(json.isArray(), Reason::WrongType, place, "a list is wanted");
        array = json.toArray();
    }
    static void read(QJsonValue const& json, QStringList& texts, QString const& place)
    {
        readList(
            json, place,
            [&texts](QJsonValue const& element, QString const& at)
            {
                QString text;
                read(element, text, at);
                texts << text;
            });
    }
    template <class Value>
    static void read(QJsonValue const& json, QMap<QString, Value>& map, QString const& place)
    {
        QJsonObject object;
        read(json, object, place);
        for (auto const& key : object.keys())
        {
            read(object[key], map[key], place + '.' + key);
        }
    }
    template <class Element>
    static void read(QJsonValue const& json, std::vector<Element>& list, QString const& place)
    {
        readList(
            json, place,
            [&list](QJsonValue const& element, QString const& at) { record(element, list.emplace_back(), at); });
    }
    template <class Element>
    static void read(QJsonValue const& json, IdList<Element>& list, QString const& place)
    {
        readList(
            json, place,
            [&list](QJsonValue const& item, QString const& at)
            {
                Element element;
                record(item, element, at);
                require(!element.id.isEmpty(), Reason::MissingMember, at, "Id");
                require(!list.contains(element.id), Reason::BadValue, at, element.id + " is there twice");
                list.add(std::move(element));
            });
    }
    template <class ReadElement>
    static void readList(QJsonValue const& json, QString const& place, ReadElement readElement)
    {
        QJsonArray array;
        read(json, array, place);
        for (qsizetype at = 0; at < array.size(); ++at)
        {
            readElement(array.at(at), QStringLiteral("%1[%2]").arg(place).arg(at));
        }
    }
    template <Enumeration Value>
    static void read(QJsonValue const& json, Value& value, QString const& place)
    {
        int number = 0;
        read(json, number, place);
        auto const fits = number >= 0 && number <= lastOf(value);
        require(fits, Reason::BadValue, place, QStringLiteral("from 0 to %1").arg(lastOf(value)));
        value = static_cast<Value>(number);
    }
    template <Record Value>
    static void read(QJsonValue const& json, Value& value, QString const& place)
    {
        record(json, value, place);
    }

    QJsonObject const json_;
    QString const place_;
    QStringList known_ = {};
};

} // namespace

QJsonObject toJson(State const& state)
{
    // The list of members serves both directions, and the writer changes nothing.
    return Writer::record(const_cast<State&>(state));
}

State stateFromText(QByteArray const& text)
{
    QJsonParseError error;
    auto const document = QJsonDocument::fromJson(text, &error);
    auto const line = text.left(error.offset).count('\n') + 1;
    require(document.isObject(), Reason::MalformedBody, QStringLiteral("line %1").arg(line), error.errorString());
    State state;
    Reader::record(document.object(), state, {});
    require(state.now.isValid(), Reason::MissingMember, {}, "Now");
    check(state);
    raiseLastNumbers(state);
    return state;
}

} // namespace simulator
