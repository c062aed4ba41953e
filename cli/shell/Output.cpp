#include "cli/shell/Output.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cwchar>
#include <mutex>
#include <system_error>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace cli
{

namespace
{

using namespace Qt::Literals::StringLiterals;

/// Control characters, line and paragraph separators, and those that change the direction of what follows.
bool isUnsafe(QChar character)
{
    auto const code = character.unicode();
    return character.category() == QChar::Other_Control || code == 0x2028 || code == 0x2029 || code == 0x200E
           || code == 0x200F || code == 0x061C || (code >= 0x202A && code <= 0x202E)
           || (code >= 0x2066 && code <= 0x2069);
}

/// The escape is valid in JSON as well.
QString escaped(QString const& text, bool keepLines)
{
    QString safe;
    safe.reserve(text.size());
    for (QChar const character : text)
    {
        if (!isUnsafe(character) || (keepLines && character == u'\n'))
        {
            safe += character;
        }
        else if (character == u'\n')
        {
            safe += "\\n"_L1;
        }
        else
        {
            safe += u"\\u%1"_s.arg(uint(character.unicode()), 4, 16, QChar(u'0'));
        }
    }
    return safe;
}

int displayWidth(QString const& text)
{
    int width = 0;
    for (char32_t const character : text.toUcs4())
    {
        int const columns = ::wcwidth(static_cast<wchar_t>(character));
        width += columns < 0 ? 1 : columns; // one that the C library does not know
    }
    return width;
}

QString padded(QString const& text, int width)
{
    return text + QString(std::max(0, width - displayWidth(text)), u' ');
}

QString jsonText(QJsonValue const& json)
{
    auto const document = json.isArray() ? QJsonDocument(json.toArray()) : QJsonDocument(json.toObject());
    return QString::fromUtf8(document.toJson());
}

/// Standard error and what is drawn at its end. Left to the end of the process: other threads may still write.
struct Errors
{
    std::mutex mutex;
    bool hasStatusLine = false;

    /// With the mutex held.
    void write(QString const& text)
    {
        std::fputs((hasStatusLine ? "\r\x1b[K"_L1 + text : text).toUtf8().constData(), stderr);
        std::fflush(stderr);
        hasStatusLine = false;
    }
};

Errors& errors()
{
    static auto& all = *new Errors;
    return all;
}

QString errorText(Failure const& failure, bool json)
{
    if (!json)
    {
        return "kelo: "_L1 + printable(failure.message()) + u'\n';
    }
    auto const& details = failure.details();
    QJsonObject error{{u"message"_s, failure.message()}};
    auto const add = [&error](QString const& key, QJsonValue const& value, bool isKnown)
    {
        if (isKnown)
        {
            error.insert(key, value);
        }
    };
    add(u"code"_s, details.serviceCode.value_or(0), details.serviceCode.has_value());
    add(u"httpStatus"_s, details.httpStatus.value_or(0), details.httpStatus.has_value());
    add(u"place"_s, details.place, !details.place.isEmpty());
    auto const document = QJsonDocument(QJsonObject{{u"error"_s, error}}).toJson(QJsonDocument::Compact);
    return printable(QString::fromUtf8(document)) + u'\n';
}

} // namespace

QString printable(QString const& text)
{
    return escaped(text, false);
}

QString tableText(QStringList const& header, std::vector<QStringList> const& rows)
{
    std::vector<QStringList> lines{header};
    for (auto const& row : rows)
    {
        QStringList& line = lines.emplace_back();
        std::transform(row.begin(), row.end(), std::back_inserter(line), printable);
    }
    std::vector<int> widths(static_cast<std::size_t>(header.size()), 0);
    for (auto const& line : lines)
    {
        for (qsizetype column = 0; column < line.size(); ++column)
        {
            int& width = widths.at(static_cast<std::size_t>(column));
            width = std::max(width, displayWidth(line[column]));
        }
    }
    QString text;
    for (auto const& line : lines)
    {
        QString aligned;
        for (qsizetype column = 0; column < line.size(); ++column)
        {
            aligned += padded(line[column], widths.at(static_cast<std::size_t>(column)) + 2);
        }
        while (aligned.endsWith(u' '))
        {
            aligned.chop(1);
        }
        text += aligned + u'\n';
    }
    return text;
}

QString fieldsText(std::vector<std::pair<QString, QString>> const& fields)
{
    int width = 0;
    for (auto const& [name, value] : fields)
    {
        width = std::max(width, value.isEmpty() ? 0 : displayWidth(name));
    }
    QString text;
    for (auto const& [name, value] : fields)
    {
        if (!value.isEmpty())
        {
            text += padded(name, width + 2) + printable(value) + u'\n';
        }
    }
    return text;
}

void Output::show(QJsonValue const& json, QString const& text) const
{
    auto bytes = escaped(json_ ? jsonText(json) : text, true).toUtf8();
    if (!bytes.isEmpty() && !bytes.endsWith('\n'))
    {
        bytes += '\n';
    }
    auto const written = std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stdout);
    if (written != static_cast<std::size_t>(bytes.size()) || std::fflush(stdout) != 0)
    {
        auto const reason = std::generic_category().message(errno);
        throw Failure(
            ExitCode::FileFailed, u"Cannot write to standard output: %1."_s.arg(QString::fromStdString(reason)));
    }
}

QString shellQuoted(QString const& text)
{
    return u'\'' + QString(text).replace(u'\'', "'\\''"_L1) + u'\'';
}

void showLibraryLog(bool show)
{
    static bool isShown = false;
    isShown = show;
    qInstallMessageHandler(
        [](QtMsgType, QMessageLogContext const&, QString const& message)
        {
            if (isShown)
            {
                writeError({ExitCode::Success, message}, false);
            }
        });
}

void writeError(Failure const& failure, bool json)
{
    if (failure.message().isEmpty())
    {
        return;
    }
    std::lock_guard const lock(errors().mutex);
    errors().write(errorText(failure, json));
}

void writeLastError(std::optional<Failure> const& failure, bool json)
{
    errors().mutex.lock(); // for good
    errors().write(failure ? errorText(*failure, json) : QString());
}

void drawStatusLine(QString const& text)
{
    std::lock_guard const lock(errors().mutex);
    if (errors().hasStatusLine || !text.isEmpty())
    {
        errors().write(text);
        errors().hasStatusLine = !text.isEmpty();
    }
}

} // namespace cli
