#pragma once

#include <optional>
#include <utility>
#include <vector>

#include <QJsonValue>
#include <QString>
#include <QStringList>

#include "cli/shell/Outcome.h"

namespace cli
{

/// The text with control and direction-changing characters, line breaks included, written as escapes: what a service
/// sends must not steer the terminal.
QString printable(QString const& text);

/// Rows below a header, columns aligned by the width that the terminal gives each character. Cells are made printable.
QString tableText(QStringList const& header, std::vector<QStringList> const& rows);

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

/// The last line of standard error, drawn again and again: it is gone before anything else is written. An empty text
/// takes it away. May be called from any thread.
void drawStatusLine(QString const& text);

} // namespace cli
