#pragma once

#include <exception>

#include <QString>

namespace cli
{

/// What the program's exit code tells a script.
enum class ExitCode : int
{
    Success = 0,
    ServiceError = 1, ///< the service answered with an error
    BadInput = 2,     ///< a mistake in what was asked for or in a file on this side; nothing was sent
    NoConnection = 3  ///< no connection, or no answer that could be used
};

/// Thrown by whatever cannot go on; `main` writes the message to standard error, as one line, and exits with the code.
class Failure : public std::exception
{
public:
    Failure(ExitCode code, QString const& message) : code_(code), message_(message) {}

    ExitCode code() const { return code_; }

    QString const& message() const { return message_; }

    char const* what() const noexcept override { return "the command failed"; }

private:
    ExitCode code_;
    QString message_;
};

inline Failure badInput(QString const& message)
{
    return {ExitCode::BadInput, message};
}

} // namespace cli
