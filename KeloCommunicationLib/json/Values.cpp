#include <KeloCommunicationLib/json/internal/Styles.h>
#include <KeloCommunicationLib/json/internal/Value.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace jsonSerializer::implementation
{

void Value<QString>::read(QString& value, QJsonValueConstRef json)
{
    value = json.toString();
}

QJsonValue Value<QString>::write(QString const& value)
{
    // A null text is written as an empty one, like every other text.
    return value;
}

void Value<bool>::read(bool& value, QJsonValueConstRef json)
{
    value = json.toBool(false);
}

QJsonValue Value<bool>::write(bool const& value)
{
    return value;
}

void Value<int>::read(int& value, QJsonValueConstRef json)
{
    value = json.toInt(0);
}

QJsonValue Value<int>::write(int const& value)
{
    return value;
}

void Value<quint64>::read(quint64& value, QJsonValueConstRef json)
{
    // Whole numbers up to 2^63 arrive exactly; a double would lose digits beyond 2^53.
    constexpr double limit = 18446744073709551616.0; // 2^64
    double const number = json.toDouble();
    qint64 const exact = json.toInteger(-1);
    if (exact >= 0)
    {
        value = static_cast<quint64>(exact);
    }
    else if (!(number > 0.0))
    {
        value = 0;
    }
    else
    {
        value = number < limit ? static_cast<quint64>(number) : std::numeric_limits<quint64>::max();
    }
}

QJsonValue Value<quint64>::write(quint64 const& value)
{
    return value <= static_cast<quint64>(std::numeric_limits<qint64>::max()) ? QJsonValue(static_cast<qint64>(value))
                                                                             : QJsonValue(static_cast<double>(value));
}

void Value<double>::read(double& value, QJsonValueConstRef json)
{
    value = json.toDouble(0.0);
}

QJsonValue Value<double>::write(double const& value)
{
    return value;
}

void Value<QDate>::read(QDate& value, QJsonValueConstRef json)
{
    value = QDate::fromString(json.toString(), Qt::ISODate);
}

QJsonValue Value<QDate>::write(QDate const& value)
{
    return value.toString(Qt::ISODate);
}

void Value<QDateTime>::read(QDateTime& value, QJsonValueConstRef json)
{
    value = QDateTime::fromString(json.toString(), Qt::ISODateWithMs);
}

QJsonValue Value<QDateTime>::write(QDateTime const& value)
{
    return value.toString(Qt::ISODateWithMs);
}

void Value<QVersionNumber>::read(QVersionNumber& value, QJsonValueConstRef json)
{
    value = QVersionNumber::fromString(json.toString());
}

QJsonValue Value<QVersionNumber>::write(QVersionNumber const& value)
{
    return value.toString();
}

void Value<QUrl>::read(QUrl& value, QJsonValueConstRef json)
{
    value = QUrl(json.toString());
}

QJsonValue Value<QUrl>::write(QUrl const& value)
{
    return value.toString();
}

int nearestInt(double number)
{
    if (std::isnan(number))
    {
        return 0;
    }
    return static_cast<int>(std::clamp(
        number, static_cast<double>(std::numeric_limits<int>::min()),
        static_cast<double>(std::numeric_limits<int>::max())));
}

} // namespace jsonSerializer::implementation
