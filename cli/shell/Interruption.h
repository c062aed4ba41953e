#pragma once

#include <functional>

#include <QString>

/// Ctrl-C (SIGINT) and SIGTERM end the program as they would any other, and so exit codes 130 and 143 at a shell
/// prompt; but before that it says how things stand.
namespace cli
{

/// To be called once, before there is another thread. A signal that the program was started to ignore stays ignored.
void listenForInterruption(bool json);

/// What is said when the program is interrupted from now on; nothing for an empty text.
void sayWhenInterrupted(QString const& text);

/// What is done before that, on another thread than those that are at work; a Failure of it is told, too. A second
/// interruption ends the program at once.
void doWhenInterrupted(std::function<void()> step);

} // namespace cli
