#pragma once

#include <limits>
#include <optional>
#include <type_traits>
#include <utility>
#include <vector>

#include <QDateTime>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonObject>
#include <QList>
#include <QString>
#include <QVersionNumber>

#include <KeloCommunicationLib/collaboration/ConnectionRecords.h>
#include <KeloCommunicationLib/collaboration/RequestTypes.h>
#include <platform/data/PatientGender.h>

namespace cli
{

/// What fills the members of a record that name the sender, when the JSON has none.
struct Sender
{
    QString installation;
    QString user;
};

/// Fills a record that the library only writes from JSON on the command line. More strict than the library's own
/// readers: a member that is unknown, or whose value is of another type, is a Failure that names it, so that no
/// mistyped member gets lost on its way. Every record has an overload of `readMembers` that goes through its members
/// once.
class MemberReader
{
public:
    MemberReader(QJsonObject json, Sender sender) : json_(std::move(json)), sender_(std::move(sender)) {}

    /// One that only notes the members' names.
    MemberReader() : isDescribing_(true) {}

    /// Takes the member into a data member of the record or hands it to a setter. One that is not there is left alone.
    template <class Record, class Member>
    MemberReader& operator()(QString const& key, Record& record, Member member);

    /// As above for an id that fills a place in a path and therefore must be there.
    template <class Record, class Member>
    MemberReader& id(QString const& key, Record& record, Member member);

    /// Throws a Failure if there are members that nobody took.
    void finish() const;

    /// The keys so far; in a description with those of nested records behind them.
    QStringList const& names() const { return names_; }

private:
    template <class Record, class Type>
    static Type valueType(Type Record::*);
    template <class Record, class Type>
    static std::remove_cvref_t<Type> valueType(void (Record::*)(Type));

    /// The value under the key, which counts as taken; undefined if there is none.
    QJsonValue take(QString const& key);
    /// As above for an id; throws a Failure when it is missing or not one.
    QJsonValue takeId(QString const& key);

    template <class Record, class Member>
    void assign(QString const& key, QJsonValue const& value, Record& record, Member member);

    QJsonObject json_;
    Sender sender_;
    QStringList names_;
    bool isDescribing_ = false;
};

/// A record that has an overload of `readMembers`.
template <class T>
concept MembersReadable = requires(MemberReader& reader, T& record)
{
    readMembers(reader, record);
};

/// The record that the JSON holds.
template <MembersReadable T>
T readRecord(QJsonObject const& json, Sender const& sender)
{
    T record{};
    MemberReader reader(json, sender);
    readMembers(reader, record);
    reader.finish();
    return record;
}

/// The keys of a record, or of the records in a list; empty for any other type.
template <class T>
QString membersOf();

namespace value
{

void read(QString const& key, QJsonValue const& json, QString& value);
void read(QString const& key, QJsonValue const& json, bool& value);
/// A number, or text that holds one.
void read(QString const& key, QJsonValue const& json, int& value);
void read(QString const& key, QJsonValue const& json, quint64& value);
void read(QString const& key, QJsonValue const& json, QDate& value);
/// Null, or ISO 8601 text.
void read(QString const& key, QJsonValue const& json, QDateTime& value);
void read(QString const& key, QJsonValue const& json, QVersionNumber& value);
void read(QString const& key, QJsonValue const& json, QFileInfo& value);
// By name or number.
void read(QString const& key, QJsonValue const& json, collaboration::RequestType& value);
void read(QString const& key, QJsonValue const& json, ConnectionStatus& value);
void read(QString const& key, QJsonValue const& json, PatientGender::Gender& value);

/// The elements of an array; throws a Failure for anything else.
QJsonArray elements(QString const& key, QJsonValue const& json);
QJsonObject object(QString const& key, QJsonValue const& json);

template <class T>
struct IsList : std::false_type
{
};
template <class T>
struct IsList<std::vector<T>> : std::true_type
{
};
template <class T>
struct IsList<QList<T>> : std::true_type
{
};
template <class T>
struct IsOptional : std::false_type
{
};
template <class T>
struct IsOptional<std::optional<T>> : std::true_type
{
};

template <class T>
void readAny(QString const& key, QJsonValue const& json, Sender const& sender, T& value)
{
    if constexpr (IsList<T>::value)
    {
        for (auto const& element : elements(key, json))
        {
            typename T::value_type entry{};
            readAny(key, QJsonValue(element), sender, entry);
            value.push_back(std::move(entry));
        }
    }
    else if constexpr (IsOptional<T>::value)
    {
        readAny(key, json, sender, value.emplace());
    }
    else if constexpr (MembersReadable<T>)
    {
        value = readRecord<T>(object(key, json), sender);
    }
    else if constexpr (requires { read(key, json, value); })
    {
        read(key, json, value);
    }
    else
    {
        static_assert(std::is_enum_v<T>);
        int number = 0;
        read(key, json, number);
        value = static_cast<T>(number);
    }
}

} // namespace value

template <class T>
QString membersOf()
{
    if constexpr (value::IsList<T>::value)
    {
        return QLatin1Char('[') + membersOf<typename T::value_type>() + QLatin1Char(']');
    }
    else if constexpr (MembersReadable<T>)
    {
        T record{};
        MemberReader reader;
        readMembers(reader, record);
        return QLatin1Char('{') + reader.names().join(QStringLiteral(", ")) + QLatin1Char('}');
    }
    else
    {
        return QString();
    }
}

template <class Record, class Member>
void MemberReader::assign(QString const& key, QJsonValue const& json, Record& record, Member member)
{
    using Type = decltype(valueType(member));
    if (isDescribing_)
    {
        names_.last() += membersOf<Type>();
        return;
    }
    if (json.isUndefined())
    {
        return;
    }
    Type read{};
    value::readAny(key, json, sender_, read);
    if constexpr (std::is_member_function_pointer_v<Member>)
    {
        (record.*member)(std::move(read));
    }
    else
    {
        record.*member = std::move(read);
    }
}

template <class Record, class Member>
MemberReader& MemberReader::operator()(QString const& key, Record& record, Member member)
{
    assign(key, take(key), record, member);
    return *this;
}

template <class Record, class Member>
MemberReader& MemberReader::id(QString const& key, Record& record, Member member)
{
    assign(key, takeId(key), record, member);
    return *this;
}

} // namespace cli
