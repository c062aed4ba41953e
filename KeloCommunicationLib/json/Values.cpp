#include <KeloCommunicationLib/json/internal/Styles.h>
#include <KeloCommunicationLib/json/internal/Value.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace jsonSerializer::implementation
{

namespace
{

/// Dates and times in the forms that a service writes, read as Qt reads them in a fraction of its time: replies have
/// some in every entry. Any other form is null, and for Qt.
class UsualForm
{
public:
    explicit UsualForm(QStringView text) : text_(text) {}

    /// "2026-03-10"
    QDate date() const { return text_.size() == dateSize ? dateAtBegin() : QDate(); }

    /// "2026-03-10T15:20:05", with or without thousandths and "Z".
    QDateTime dateTime() const
    {
        bool const isUtc = text_.endsWith(u'Z');
        qsizetype const size = text_.size() - (isUtc ? 1 : 0);
        bool const hasThousandths = size == wholeSize + 4;
        if (size != wholeSize && !hasThousandths)
        {
            return {};
        }
        bool const isSeparated = text_[10] == u'T' && text_[13] == u':' && text_[16] == u':'
                                 && (!hasThousandths || text_[wholeSize] == u'.');
        QDate const date = dateAtBegin();
        QTime const time(number(11, 2), number(14, 2), number(17, 2), hasThousandths ? number(20, 3) : 0);
        bool const isUsual = isSeparated && date.isValid() && time.isValid();
        return isUsual ? QDateTime(date, time, isUtc ? Qt::UTC : Qt::LocalTime) : QDateTime();
    }

private:
    static constexpr qsizetype dateSize = 10;
    static constexpr qsizetype wholeSize = 19;

    QDate dateAtBegin() const
    {
        bool const isSeparated = text_[4] == u'-' && text_[7] == u'-';
        int const year = number(0, 4);
        return isSeparated && year > 0 ? QDate(year, number(5, 2), number(8, 2)) : QDate();
    }

    /// Of so many digits; -1 if one is something else.
    int number(qsizetype begin, qsizetype size) const
    {
        int value = 0;
        for (QChar const digit : text_.sliced(begin, size))
        {
            if (digit < u'0' || digit > u'9')
            {
                return -1;
            }
            value = value * 10 + (digit.unicode() - u'0');
        }
        return value;
    }

    QStringView text_;
};

} // namespace

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
    value = UsualForm(scalar.text).date();
    if (value.isNull())
    {
        value = QDate::fromString(scalar.text, Qt::ISODate);
    }
}

QJsonValue Value<QDate>::write(QDate const& value)
{
    return value.toString(Qt::ISODate);
}

void Value<QDateTime>::read(QDateTime& value, Scalar& scalar)
{
    value = UsualForm(scalar.text).dateTime();
    if (value.isNull())
    {
        value = QDateTime::fromString(scalar.text, Qt::ISODateWithMs);
    }
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
