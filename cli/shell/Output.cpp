#include "cli/shell/Output.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cwchar>
#include <limits>
#include <mutex>
#include <numeric>
#include <system_error>

#include <sys/ioctl.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTextBoundaryFinder>

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

/// The text, or as much of it as has room with an ellipsis behind it. What is one character to people stays whole.
QString shortened(QString const& text, int width)
{
    if (displayWidth(text) <= width)
    {
        return text;
    }
    QTextBoundaryFinder characters(QTextBoundaryFinder::Grapheme, text);
    qsizetype end = 0;
    int left = width - 1;
    for (qsizetype next = characters.toNextBoundary(); next >= 0; next = characters.toNextBoundary())
    {
        left -= displayWidth(text.mid(end, next - end));
        if (left < 0)
        {
            break;
        }
        end = next;
    }
    return text.left(end) + u'\u2026';
}

constexpr int gap = 2; ///< between two columns

/// Takes from the widest columns first, and from none that is at its floor, until the table is no wider than `room`.
void squeeze(std::vector<int>& widths, std::vector<int> const& floors, int room)
{
    int excess = std::accumulate(widths.begin(), widths.end(), gap * (int(widths.size()) - 1)) - room;
    for (; excess > 0; --excess)
    {
        std::size_t widest = 0;
        int width = 0;
        for (std::size_t column = 0; column < widths.size(); ++column)
        {
            if (widths[column] > floors[column] && widths[column] > width)
            {
                widest = column;
                width = widths[column];
            }
        }
        if (width == 0)
        {
            return;
        }
        --widths[widest];
    }
}

/// The width of a column's title, and of its widest cell.
std::pair<int, int> widthsOf(QString const& title, std::vector<QStringList> const& lines, qsizetype column, bool isFull)
{
    constexpr int widestAligned = 80; // where nothing is shortened a longer cell shifts the rest of its own line only
    int widest = 0;
    for (auto const& line : lines)
    {
        int const width = displayWidth(line.value(column));
        widest = isFull && width > widestAligned ? widest : std::max(widest, width);
    }
    return {displayWidth(title), widest};
}

std::vector<int> columnWidths(
    std::vector<Heading> const& header, std::vector<QStringList> const& lines, std::optional<int> room)
{
    constexpr int shortestTitle = 3;
    constexpr int stillRead = 6;
    std::vector<int> widths, withoutTitles, readable, copied, none(header.size(), 1);
    for (Heading const& heading : header)
    {
        auto const [title, cells] = widthsOf(heading.title, lines, qsizetype(widths.size()), !room);
        int const needed = std::max(cells, std::min(title, shortestTitle));
        widths.push_back(std::max(cells, title));
        withoutTitles.push_back(needed);
        readable.push_back(heading.cells == Cells::Read ? std::min(needed, stillRead) : needed);
        copied.push_back(heading.cells == Cells::Copied ? needed : 1);
    }
    for (auto const& floors : {withoutTitles, readable, copied, none})
    {
        squeeze(widths, floors, room.value_or(std::numeric_limits<int>::max()));
    }
    return widths;
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

std::optional<int> terminalWidth(int descriptor)
{
    if (::isatty(descriptor) != 1)
    {
        return std::nullopt;
    }
    winsize size = {};
    bool const isTold = ::ioctl(descriptor, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    int const columns = isTold ? size.ws_col : qEnvironmentVariableIntValue("COLUMNS");
    return columns > 0 ? std::optional(columns) : std::nullopt;
}

QString tableText(std::vector<Heading> const& header, std::vector<QStringList> const& rows, std::optional<int> room)
{
    std::vector<QStringList> lines(rows.size());
    std::transform(
        rows.begin(), rows.end(), lines.begin(),
        [](QStringList row)
        {
            std::transform(row.begin(), row.end(), row.begin(), printable);
            return row;
        });
    auto const widths = columnWidths(header, lines, room);
    QStringList titles;
    for (Heading const& heading : header)
    {
        // A part of a word says more without an ellipsis.
        titles << heading.title.left(widths.at(static_cast<std::size_t>(titles.size())));
    }
    lines.insert(lines.begin(), titles);
    QString text;
    for (auto const& line : lines)
    {
        QString aligned;
        for (qsizetype column = 0; column < line.size(); ++column)
        {
            int const width = widths.at(static_cast<std::size_t>(column));
            aligned += padded(room ? shortened(line[column], width) : line[column], width) + QString(gap, u' ');
        }
        while (aligned.endsWith(u' '))
        {
            aligned.chop(1);
        }
        text += (room ? shortened(aligned, *room) : aligned) + u'\n';
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
    drawStatusLine({});
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

void Output::showDone(QJsonValue const& json, QString const& text) const
{
    try
    {
        show(json, text);
    }
    catch (Failure const& failure)
    {
        QString const done = json_ ? jsonText(json) : text;
        throw failure.told(u"%1 - But this is done: %2"_s.arg(failure.message(), done.simplified()));
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
    // A line that breaks could not be taken away; many terminals break one that is full.
    auto const width = terminalWidth(STDERR_FILENO);
    std::lock_guard const lock(errors().mutex);
    if (errors().hasStatusLine || !text.isEmpty())
    {
        errors().write(width ? shortened(text, std::max(*width - 1, 1)) : text);
        errors().hasStatusLine = !text.isEmpty();
    }
}

} // namespace cli
