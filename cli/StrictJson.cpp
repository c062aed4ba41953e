#include "cli/StrictJson.h"

#include <algorithm>

#include <QJsonArray>
#include <QJsonDocument>
#include <QSet>

#include "cli/Outcome.h"

namespace cli
{

namespace
{

using namespace Qt::Literals::StringLiterals;

/// Walks a text that is known to be JSON, looking at the names of members only.
class DuplicateSearch
{
public:
    DuplicateSearch(QString const& fileName, QByteArray const& text) : fileName_(fileName), text_(text) {}

    void run() { passValue(QString()); }

private:
    void passValue(QString const& path)
    {
        passSpace();
        switch (current())
        {
        case '{':
            passObject(path);
            break;
        case '[':
            passArray(path);
            break;
        case '"':
            passString();
            break;
        default:
            while (!QByteArrayView(",]} \t\r\n").contains(current()))
            {
                ++at_;
            }
        }
        passSpace();
    }

    void passObject(QString const& path)
    {
        QSet<QString> seen;
        ++at_;
        passSpace();
        while (current() != '}')
        {
            QString const key = passString();
            QString const keyPath = path.isEmpty() ? key : path + u'.' + key;
            if (seen.contains(key))
            {
                throw badInput(u"%1: %2 is given twice"_s.arg(fileName_, keyPath));
            }
            seen.insert(key);
            passSpace();
            ++at_; // the colon
            passValue(keyPath);
            passComma();
        }
        ++at_;
    }

    void passArray(QString const& path)
    {
        ++at_;
        passSpace();
        for (int index = 0; current() != ']'; ++index)
        {
            passValue(u"%1[%2]"_s.arg(path).arg(index));
            passComma();
        }
        ++at_;
    }

    /// The string without its escapes: a name may be spelled in several ways.
    QString passString()
    {
        auto const begin = at_;
        for (++at_; current() != '"'; ++at_)
        {
            at_ += current() == '\\' ? 1 : 0;
        }
        ++at_;
        return QJsonDocument::fromJson('[' + text_.mid(begin, at_ - begin) + ']').array().at(0).toString();
    }

    void passComma()
    {
        if (current() == ',')
        {
            ++at_;
            passSpace();
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

    QString const& fileName_;
    QByteArray const& text_;
    qsizetype at_ = 0;
};

QString placeAt(QByteArray const& text, int offset)
{
    auto const before = text.left(std::max(0, offset));
    auto const lineStart = before.lastIndexOf('\n') + 1;
    return u"line %1, column %2"_s.arg(before.count('\n') + 1).arg(QString::fromUtf8(before.mid(lineStart)).size() + 1);
}

} // namespace

QJsonObject strictObject(QString const& fileName, QByteArray const& text)
{
    static QByteArray const byteOrderMark("\xEF\xBB\xBF");
    // The parser skips a mark, too: another one behind the first would be seen by the search only.
    QByteArray content = text;
    while (content.startsWith(byteOrderMark))
    {
        content.remove(0, byteOrderMark.size());
    }
    QJsonParseError error;
    auto const document = QJsonDocument::fromJson(content, &error);
    if (error.error != QJsonParseError::NoError)
    {
        throw badInput(
            u"%1: %2: this is not JSON (%3)"_s.arg(fileName, placeAt(content, error.offset), error.errorString()));
    }
    if (!document.isObject())
    {
        throw badInput(u"%1: this is not a JSON object"_s.arg(fileName));
    }
    DuplicateSearch(fileName, content).run();
    return document.object();
}

} // namespace cli
