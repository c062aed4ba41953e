#pragma once

#include <QString>

#include "cli/prompt/Program.h"

namespace cli
{

/// What a shell needs to complete kelo's command lines: a script that runs nothing, kelo included.
QString bashCompletion(Program const& program);
QString zshCompletion(Program const& program);
QString fishCompletion(Program const& program);

} // namespace cli
