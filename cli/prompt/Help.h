#pragma once

#include <span>
#include <utility>
#include <vector>

#include <QString>
#include <QStringList>

#include "cli/prompt/Program.h"

namespace cli
{

/// The help of the program, of a group or of a command.
QString helpText(Program const& program, QStringList const& path);

/// How a command, a group or the program is called: one line.
QString usageText(Program const& program, QStringList const& path);

/// Something that is explained, and the explanation.
using Entry = std::pair<QString, QString>;

/// An argument as it is written, e.g. "--type TYPE", and what it is.
Entry entryOf(DeclaredArgument const& argument);
/// The options or the positions among these.
std::vector<Entry> entriesOf(std::vector<DeclaredArgument> const& arguments, bool areOptions);
std::vector<Entry> entriesOf(std::vector<DeclaredCommand const*> const& those);
std::vector<Entry> entriesOf(std::span<Explained const> all);

/// The commands that begin with these words, but for the one that consists of them.
std::vector<DeclaredCommand const*> commandsBehind(Program const& program, QStringList const& path);

/// A title and indented explanations in two columns; empty without entries.
QString sectionText(QString const& title, std::vector<Entry> const& entries);

} // namespace cli
