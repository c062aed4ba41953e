#pragma once

#include <QString>

/// Ctrl-C (SIGINT) and SIGTERM end the program as they would any other, and so exit codes 130 and 143 at a shell
/// prompt; but before that it says how things stand.
namespace cli
{

/// To be called once, before there is another thread. A signal that the program was started to ignore stays ignored.
void listenForInterruption(bool json);

/// What is said when the program is interrupted from now on; nothing for an empty text.
void sayWhenInterrupted(QString const& text);

} // namespace cli
