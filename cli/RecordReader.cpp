#include "cli/RecordReader.h"

#include <cmath>

#include "cli/Input.h"
#include "cli/Outcome.h"

namespace cli
{

namespace
{

using namespace Qt::Literals::StringLiterals;

Failure wrongValue(QString const& key, char const* wanted)
{
    return badInput(u"The member \"%1\" must be %2."_s.arg(key, QLatin1String(wanted)));
}

/// The text, or the number as text.
QString word(QString const& key, QJsonValue const& json)
{
    if (!json.isString() && !json.isDouble())
    {
        throw wrongValue(key, "a name or its number");
    }
    return json.toVariant().toString();
}

double wholeNumber(QString const& key, QJsonValue const& json, double least, double most)
{
    bool isNumber = json.isDouble();
    double const number = json.isString() ? json.toString().toDouble(&isNumber) : json.toDouble();
    if (!isNumber || std::trunc(number) != number || number < least || number > most)
    {
        throw wrongValue(key, "a whole number in range");
    }
    return number;
}

} // namespace

QJsonValue MemberReader::take(QString const& key)
{
    names_ << key;
    auto const json = json_.take(key);
    if (isDescribing_)
    {
        return json;
    }
    bool const isMissing = json.isUndefined();
    if (isMissing && key == "InstallationReference"_L1)
    {
        return sender_.installation;
    }
    if (isMissing && key.compare("UserReference"_L1, Qt::CaseInsensitive) == 0)
    {
        return sender_.user;
    }
    if (key == "InstallationReference"_L1)
    {
        identifier("installation", json.toString());
    }
    return json;
}

QJsonValue MemberReader::takeId(QString const& key)
{
    auto const json = take(key);
    if (isDescribing_)
    {
        return json;
    }
    if (!json.isString())
    {
        throw badInput(u"The member \"%1\" is missing: it must be an id."_s.arg(key));
    }
    identifier("id", json.toString());
    return json;
}

void MemberReader::finish() const
{
    if (!json_.isEmpty())
    {
        throw badInput(u"Unknown member \"%1\": there are %2."_s.arg(json_.begin().key(), names_.join(", "_L1)));
    }
}

namespace value
{

void read(QString const& key, QJsonValue const& json, QString& value)
{
    if (!json.isString())
    {
        throw wrongValue(key, "text");
    }
    value = json.toString();
}

void read(QString const& key, QJsonValue const& json, bool& value)
{
    if (!json.isBool())
    {
        throw wrongValue(key, "true or false");
    }
    value = json.toBool();
}

void read(QString const& key, QJsonValue const& json, int& value)
{
    using Limits = std::numeric_limits<int>;
    value = static_cast<int>(wholeNumber(key, json, Limits::min(), Limits::max()));
}

void read(QString const& key, QJsonValue const& json, quint64& value)
{
    constexpr double mostExact = 9007199254740991.0; // beyond it JSON's numbers have gaps
    value = static_cast<quint64>(wholeNumber(key, json, 0, mostExact));
}

void read(QString const& key, QJsonValue const& json, QDate& value)
{
    QString text;
    read(key, json, text);
    value = day("date", text);
}

void read(QString const& key, QJsonValue const& json, QDateTime& value)
{
    value = QDateTime::fromString(json.toString(), Qt::ISODateWithMs);
    if (!json.isNull() && !value.isValid())
    {
        throw wrongValue(key, "null or a time of the form 2026-12-31T12:00:00Z");
    }
}

void read(QString const& key, QJsonValue const& json, QVersionNumber& value)
{
    QString text;
    read(key, json, text);
    value = QVersionNumber::fromString(text);
    if (value.isNull() && !text.isEmpty())
    {
        throw wrongValue(key, "a version of the form 1.2.3");
    }
}

void read(QString const& key, QJsonValue const& json, QFileInfo& value)
{
    QString text;
    read(key, json, text);
    value = QFileInfo(text);
}

void read(QString const& key, QJsonValue const& json, collaboration::RequestType& value)
{
    value = requestType(word(key, json));
}

void read(QString const& key, QJsonValue const& json, ConnectionStatus& value)
{
    value = connectionStatus(word(key, json));
}

void read(QString const& key, QJsonValue const& json, PatientGender::Gender& value)
{
    value = gender(word(key, json));
}

QJsonArray elements(QString const& key, QJsonValue const& json)
{
    if (!json.isArray())
    {
        throw wrongValue(key, "an array");
    }
    return json.toArray();
}

QJsonObject object(QString const& key, QJsonValue const& json)
{
    if (!json.isObject())
    {
        throw wrongValue(key, "an object");
    }
    return json.toObject();
}

} // namespace value

} // namespace cli
