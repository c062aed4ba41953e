#include <KeloCommunicationLib/json/internal/Styles.h>
#include <KeloCommunicationLib/json/internal/Value.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace jsonSerializer::implementation
{

void Value<QString>::read(QString& value, Scalar& scalar)
{
    value = std::move(scalar.text);
}

QJsonValue Value<QString>::write(QString const& value)
{
    // A null text is written as an empty one, like every other text.
    return value;
}

void Value<bool>::read(bool& value, Scalar& scalar)
{
    value = scalar.boolean;
}

QJsonValue Value<bool>::write(bool const& value)
{
    return value;
}

void Value<int>::read(int& value, Scalar& scalar)
{
    value = scalar.toInt();
}

QJsonValue Value<int>::write(int const& value)
{
    return value;
}

void Value<quint64>::read(quint64& value, Scalar& scalar)
{
    // Whole numbers below 2^63 arrive exactly; a double would lose digits beyond 2^53.
    constexpr double limit = 18446744073709551616.0; // 2^64
    if (scalar.is == Scalar::Is::Integer)
    {
        value = scalar.integer > 0 ? static_cast<quint64>(scalar.integer) : 0;
    }
    else if (!(scalar.number > 0.0))
    {
        value = 0;
    }
    else
    {
        value = scalar.number < limit ? static_cast<quint64>(scalar.number) : std::numeric_limits<quint64>::max();
    }
}

QJsonValue Value<quint64>::write(quint64 const& value)
{
    return value <= static_cast<quint64>(std::numeric_limits<qint64>::max()) ? QJsonValue(static_cast<qint64>(value))
                                                                             : QJsonValue(static_cast<double>(value));
}

void Value<double>::read(double& value, Scalar& scalar)
{
    value = scalar.number;
}

QJsonValue Value<double>::write(double const& value)
{
    return value;
}

void Value<QDate>::read(QDate& value, Scalar& scalar)
{
    value = QDate::fromString(scalar.text, Qt::ISODate);
}

QJsonValue Value<QDate>::write(QDate const& value)
{
    return value.toString(Qt::ISODate);
}

void Value<QDateTime>::read(QDateTime& value, Scalar& scalar)
{
    value = QDateTime::fromString(scalar.text, Qt::ISODateWithMs);
}

QJsonValue Value<QDateTime>::write(QDateTime const& value)
{
    return value.toString(Qt::ISODateWithMs);
}

void Value<QVersionNumber>::read(QVersionNumber& value, Scalar& scalar)
{
    value = QVersionNumber::fromString(scalar.text);
}

QJsonValue Value<QVersionNumber>::write(QVersionNumber const& value)
{
    return value.toString();
}

void Value<QUrl>::read(QUrl& value, Scalar& scalar)
{
    value = QUrl(scalar.text);
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
