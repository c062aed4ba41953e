#include "cli/shell/StrictReader.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

#include <QDate>
#include <QJsonArray>
#include <QJsonDocument>
#include <QStringList>
#include <QUrl>
#include <QVersionNumber>

#include "cli/shell/Input.h"

namespace cli
{

namespace
{

using namespace Qt::Literals::StringLiterals;
using jsonSerializer::ValueKind;
using jsonSerializer::WireForm;

// ---- values that are neither records nor lists ---------------------------------------------------------------------

/// Thrown on the way from a value to the place that it stands at.
struct Mistake
{
    QString text;
};

void require(bool isRight, QString const& wanted)
{
    if (!isRight)
    {
        throw Mistake{u"this must be %1"_s.arg(wanted)};
    }
}

bool isWhole(QJsonValue const& json, double least, double most)
{
    double const number = json.toDouble(std::numeric_limits<double>::quiet_NaN());
    return std::trunc(number) == number && number >= least && number <= most;
}

bool isInt(QJsonValue const& json)
{
    return isWhole(json, std::numeric_limits<int>::min(), std::numeric_limits<int>::max());
}

QJsonValue decimalText(QJsonValue const& json)
{
    bool isNumber = isInt(json);
    int const number = json.isString() ? json.toString().toInt(&isNumber) : json.toInt();
    require(isNumber, u"a whole number"_s);
    return QString::number(number);
}

/// What a value of the kind is called, in the order of the kinds.
constexpr char const* wantedTexts[] = {
    "a text",
    "true or false",
    "a whole number",
    "a whole number from 0",
    "a number",
    "a day of the form 2026-12-31",
    "a time of the form 2026-12-31T12:00:00Z",
    "a text with a version such as 3.1.0",
    "a text with a URL"};

QJsonValue enumeration(Form const& form, QJsonValue const& json)
{
    bool const isText = form.wire == WireForm::Texts;
    for (auto const& named : form.names)
    {
        if (json.isString() && json.toString().compare(named.name, Qt::CaseInsensitive) == 0)
        {
            return isText ? QJsonValue(named.name) : QJsonValue(named.value);
        }
    }
    require(!isText && isInt(json), wantedText(form));
    return json;
}

bool isVersion(QString const& text)
{
    qsizetype end = 0;
    return text.isEmpty() || (!QVersionNumber::fromString(text, &end).isNull() && end == text.size());
}

bool isBase64(QString const& text)
{
    return bool(QByteArray::fromBase64Encoding(text.toUtf8(), QByteArray::AbortOnBase64DecodingErrors));
}

void checkText(Form const& form, QString const& text)
{
    require(form.wire != WireForm::Base64 || isBase64(text), u"a text in Base64"_s);
    if (form.isId)
    {
        try
        {
            identifier("id", text);
        }
        catch (Failure const& failure)
        {
            throw Mistake{failure.message()};
        }
    }
}

bool hasKind(ValueKind kind, QJsonValue const& json)
{
    constexpr double mostExact = 9007199254740991.0; // beyond it JSON's numbers have gaps
    QString const text = json.toString();
    switch (kind)
    {
    case ValueKind::Boolean:
        return json.isBool();
    case ValueKind::Integer:
        return isInt(json);
    case ValueKind::Size:
        return isWhole(json, 0, mostExact);
    case ValueKind::Number:
        return json.isDouble();
    case ValueKind::Date:
        return json.isString() && (text.isEmpty() || QDate::fromString(text, u"yyyy-MM-dd"_s).isValid());
    case ValueKind::DateTime:
        return QDateTime::fromString(text, Qt::ISODateWithMs).isValid();
    case ValueKind::Version:
        return json.isString() && isVersion(text);
    case ValueKind::Url:
        return json.isString() && QUrl(text, QUrl::StrictMode).errorString().isEmpty();
    default:
        return json.isString();
    }
}

/// The value as the record takes it.
QJsonValue checkedScalar(Form const& form, QJsonValue const& json)
{
    if (form.wire == WireForm::DecimalText)
    {
        return decimalText(json);
    }
    if (form.kind == ValueKind::Enumeration)
    {
        return enumeration(form, json);
    }
    if (form.wire != WireForm::NullOrUsual || !json.isNull())
    {
        require(hasKind(form.kind, json), wantedText(form));
        checkText(form, json.toString());
    }
    return json;
}

// ---- the text ------------------------------------------------------------------------------------------------------

QString positionOf(QByteArray const& text, qsizetype offset)
{
    auto const before = text.left(std::max<qsizetype>(0, offset));
    auto const lineStart = before.lastIndexOf('\n') + 1;
    return u"line %1, column %2"_s.arg(before.count('\n') + 1).arg(QString::fromUtf8(before.mid(lineStart)).size() + 1);
}

/// Walks a text that is known to be JSON.
class Walk
{
public:
    explicit Walk(QByteArray const& text) : text_(text) {}

    QJsonValue read(Form const& form, Place const& place)
    {
        passSpace();
        auto const begin = at_;
        try
        {
            switch (form.kind)
            {
            case ValueKind::Record:
                require(current() == '{', u"an object"_s);
                return readRecord(form, place);
            case ValueKind::List:
                require(current() == '[', u"a list"_s);
                return readList(form.parts.front(), place);
            default:
                return checkedScalar(form, readScalar());
            }
        }
        catch (Mistake const& mistake)
        {
            throw mistakeAt(begin, place, mistake.text);
        }
    }

private:
    Failure mistakeAt(qsizetype offset, Place const& place, QString const& text) const
    {
        return place.mistakeAt(positionOf(text_, offset), text);
    }

    QJsonObject readRecord(Form const& form, Place const& place)
    {
        QJsonObject record;
        auto const begin = at_;
        for (passMark(); current() != '}'; passComma())
        {
            auto const keyBegin = at_;
            QString const key = readScalar().toString(); // without its escapes: a name may be spelled in several ways
            auto const member = std::find_if(
                form.parts.begin(), form.parts.end(), [&key](Form const& part) { return part.key == key; });
            if (member == form.parts.end())
            {
                throw mistakeAt(
                    keyBegin, place.member(key), u"there is no such member, only %1"_s.arg(membersText(form)));
            }
            if (record.contains(key))
            {
                throw mistakeAt(keyBegin, place.member(key), u"this is given twice"_s);
            }
            passSpace();
            passMark(); // the colon
            record.insert(key, read(*member, place.member(key)));
        }
        passMark();
        addMissing(form, record, place, begin);
        return record;
    }

    void addMissing(Form const& form, QJsonObject& record, Place const& place, qsizetype begin) const
    {
        for (Form const& member : form.parts)
        {
            bool const isMissing = !record.contains(member.key);
            if (isMissing && !member.otherwise.isNull())
            {
                record.insert(member.key, member.otherwise);
            }
            else if (isMissing && member.isRequired)
            {
                throw mistakeAt(begin, place.member(member.key), u"this is missing"_s);
            }
        }
    }

    QJsonArray readList(Form const& form, Place const& place)
    {
        QJsonArray list;
        for (passMark(); current() != ']'; passComma())
        {
            list.append(read(form, place.element(list.size())));
        }
        passMark();
        return list;
    }

    /// Of an object or a list, which is no scalar, just the mark it begins with is passed.
    QJsonValue readScalar()
    {
        auto const begin = at_;
        bool const isText = current() == '"';
        for (++at_; isText ? current() != '"' : !QByteArrayView(",:]} \t\r\n").contains(current()); ++at_)
        {
            at_ += isText && current() == '\\' ? 1 : 0;
        }
        at_ += isText ? 1 : 0;
        return QJsonDocument::fromJson('[' + text_.mid(begin, at_ - begin) + ']').array().at(0);
    }

    /// A brace, a bracket or a colon, and the space behind it.
    void passMark()
    {
        ++at_;
        passSpace();
    }

    void passComma()
    {
        passSpace();
        if (current() == ',')
        {
            passMark();
        }
    }

    void passSpace()
    {
        while (current() == ' ' || current() == '\t' || current() == '\r' || current() == '\n')
        {
            ++at_;
        }
    }

    char current() const { return at_ < text_.size() ? text_.at(at_) : '\0'; }

    QByteArray const& text_;
    qsizetype at_ = 0;
};

} // namespace

Form& Form::operator[](QStringView memberKey)
{
    auto const found =
        std::find_if(parts.begin(), parts.end(), [memberKey](Form const& part) { return part.key == memberKey; });
    return found != parts.end() ? *found : parts.emplace_back(Form{.key = memberKey.toString()});
}

void Form::remove(QStringView memberKey)
{
    std::erase_if(parts, [memberKey](Form const& part) { return part.key == memberKey; });
}

Form formOf(jsonSerializer::ValueSchema const& schema)
{
    Form form{.kind = schema.kind(), .wire = schema.form(), .names = schema.names()};
    if (form.kind == ValueKind::List)
    {
        form.parts.push_back(formOf(schema.items()));
    }
    else if (form.kind == ValueKind::Record)
    {
        for (auto const& member : schema.members())
        {
            form.parts.push_back(formOf(member));
            form.parts.back().key = member.key().toString();
        }
    }
    return form;
}

QString membersText(Form const& form)
{
    if (form.kind == ValueKind::List)
    {
        QString const items = membersText(form.parts.front());
        return items.isEmpty() ? items : u'[' + items + u']';
    }
    QStringList members;
    for (Form const& part : form.parts)
    {
        members << part.key + membersText(part);
    }
    return form.kind == ValueKind::Record ? u'{' + members.join(", "_L1) + u'}' : QString();
}

QString wantedText(Form const& form)
{
    if (form.kind == ValueKind::List)
    {
        return u"a list: "_s + wantedText(form.parts.front());
    }
    if (form.kind == ValueKind::Record)
    {
        return u"an object"_s;
    }
    if (form.wire == WireForm::Base64)
    {
        return u"a text in Base64"_s;
    }
    if (form.kind != ValueKind::Enumeration)
    {
        auto const kind = form.wire == WireForm::DecimalText ? ValueKind::Integer : form.kind;
        return QLatin1String(wantedTexts[static_cast<std::size_t>(kind)]);
    }
    QStringList wanted;
    for (auto const& named : form.names)
    {
        wanted << named.name;
    }
    wanted.removeAll(QString());
    QString const names = u"one of "_s + wanted.join(", "_L1);
    return form.wire == WireForm::Texts ? names : wanted.isEmpty() ? u"a whole number"_s : names + u" or its number"_s;
}

Failure Place::mistake(QString const& text) const
{
    QString const place = path_.isEmpty() ? source_ : u"%1: %2"_s.arg(source_, path_);
    return {ExitCode::BadInput, u"%1: %2"_s.arg(place, text), {.place = place}};
}

Failure Place::mistakeAt(QString const& position, QString const& text) const
{
    return Place(u"%1: %2"_s.arg(source_, position), path_).mistake(text);
}

QJsonObject readStrictly(QString const& source, QByteArray const& text, Form const& form)
{
    static QByteArray const byteOrderMark("\xEF\xBB\xBF");
    // The parser skips a mark, too: another one behind the first would be seen by the walk only.
    QByteArray content = text;
    while (content.startsWith(byteOrderMark))
    {
        content.remove(0, byteOrderMark.size());
    }
    Place const place(source);
    QJsonParseError error;
    QJsonDocument::fromJson(content, &error);
    if (error.error != QJsonParseError::NoError)
    {
        throw place.mistakeAt(positionOf(content, error.offset), u"this is not JSON (%1)"_s.arg(error.errorString()));
    }
    return Walk(content).read(form, place).toObject();
}

} // namespace cli
