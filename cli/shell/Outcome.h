#pragma once

#include <exception>
#include <optional>
#include <utility>

#include <QString>

namespace cli
{

/// What the program's exit code tells a script.
enum class ExitCode : int
{
    Success = 0,
    ServiceError = 1, ///< the service answered with an error
    BadInput = 2,     ///< a mistake in what was asked for; nothing was sent, or nothing but questions
    NoConnection = 3, ///< no connection, or no answer that could be used
    FileFailed = 4    ///< the service was asked, but a file or pipe on this side failed
};

/// What programs are told beside a failure's message, as far as it is known.
struct FailureDetails
{
    std::optional<int> serviceCode = {};
    std::optional<int> httpStatus = {};
    QString place = {}; ///< of a mistake in a text: its source, line and column, and the member
};

/// Thrown by whatever cannot go on; `main` writes the message to standard error and exits with the code. An empty
/// message has been told already.
class Failure : public std::exception
{
public:
    Failure(ExitCode code, QString const& message, FailureDetails details = {})
        : code_(code), message_(message), details_(std::move(details))
    {
    }

    ExitCode code() const { return code_; }

    QString const& message() const { return message_; }

    FailureDetails const& details() const { return details_; }

    /// The same, told in other words.
    Failure told(QString const& message) const { return {code_, message, details_}; }

    /// The same with another exit code.
    Failure with(ExitCode code) const { return {code, message_, details_}; }

    char const* what() const noexcept override { return "the command failed"; }

private:
    ExitCode code_;
    QString message_;
    FailureDetails details_;
};

/// The failure, and what failed beside it while the step was taken that it calls for.
template <class Step>
Failure afterStep(Failure const& failure, Step const& step)
{
    try
    {
        step();
        return failure;
    }
    catch (Failure const& second)
    {
        return failure.told(failure.message() + QLatin1String(" - ") + second.message());
    }
}

inline Failure badInput(QString const& message)
{
    return {ExitCode::BadInput, message};
}

} // namespace cli
