#pragma once

#include <QString>

#include "cli/prompt/Program.h"

namespace cli
{

/// The manual page of a first word, with all commands that begin with it, or of the program for an empty one.
QString manPage(Program const& program, QString const& word);

/// How that page is called, without its section.
QString manPageName(QString const& word);

} // namespace cli
