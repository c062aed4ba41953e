#pragma once

#include <optional>
#include <utility>
#include <vector>

#include <unistd.h>

#include <QJsonValue>
#include <QString>
#include <QStringList>

#include "cli/shell/Outcome.h"

namespace cli
{

/// The text with control and direction-changing characters, line breaks included, written as escapes: what a service
/// sends must not steer the terminal.
QString printable(QString const& text);

/// What a column's cells are for, in the order in which they are shortened.
enum class Cells : int
{
    Read,
    Whole, ///< dates and numbers: a part of one tells little
    Copied ///< ids and references
};

/// The head of a column.
struct Heading
{
    Heading(QString const& text, Cells use = Cells::Read) : title(text), cells(use) {}

    QString title;
    Cells cells;
};

/// The cells in a line of the terminal behind a descriptor; none if it is no terminal, or one of unknown width.
std::optional<int> terminalWidth(int descriptor);

/// Rows below a header, columns aligned by the width that the terminal gives each character. Cells are made printable.
/// No line is wider than `room`: the widest columns are shortened first, and what is copied only after all else.
/// Without `room` nothing is shortened, and a very long cell makes its own line longer but not the others.
QString tableText(
    std::vector<Heading> const& header, std::vector<QStringList> const& rows,
    std::optional<int> room = terminalWidth(STDOUT_FILENO));

/// One "Name  value" line each; empty values are left out. Values are made printable.
QString fieldsText(std::vector<std::pair<QString, QString>> const& fields);

/// Standard output, in one of two forms.
class Output
{
public:
    explicit Output(bool json) : json_(json) {}

    bool isJson() const { return json_; }

    /// Writes `json` if the user asked for JSON, else `text`. Throws a Failure when standard output cannot be written.
    void show(QJsonValue const& json, QString const& text) const;
    /// As `show`, of what the service has done: when it cannot be written, the Failure tells it.
    void showDone(QJsonValue const& json, QString const& text) const;

private:
    bool json_;
};

/// The text as one word of a command line, whatever is in it.
QString shellQuoted(QString const& text);

/// Whether what the library logs goes to standard error; until the first call it goes where Qt sends it.
void showLibraryLog(bool show);

/// Writes the failure to standard error: "kelo: message" as one line or, for programs, the object "error" with the
/// message and what else is known ("code" and "httpStatus" of the service, "place" in a text).
void writeError(Failure const& failure, bool json);

/// The last that is written to standard error, by whatever thread; with nothing to tell, no half line stays.
void writeLastError(std::optional<Failure> const& failure, bool json);

/// The last line of standard error, drawn again and again: it is gone before anything else is written to standard error
/// or by `Output`, and no longer than the terminal is wide. An empty text takes it away. May be called from any thread.
void drawStatusLine(QString const& text);

} // namespace cli
