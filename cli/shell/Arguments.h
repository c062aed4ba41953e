#pragma once

#include <memory>

#include <QString>
#include <QStringList>

namespace CLI
{
class App;
}

namespace cli
{

/// The value of an argument: the default until the command line is read.
template <class T>
using Value = std::shared_ptr<T const>;

/// Declares the arguments of one command. Names that begin with "--" are options, others are positions on the command
/// line.
class Arguments
{
public:
    explicit Arguments(CLI::App& app) : app_(app) {}

    Value<QString> text(char const* name, char const* help, QString const& defaultText = {});
    Value<QString> requiredText(char const* name, char const* help);
    /// May be given several times, with several texts, or with texts joined by commas.
    Value<QStringList> texts(char const* name, char const* help);
    /// As `texts`, for texts that may hold commas.
    Value<QStringList> paths(char const* name, char const* help);
    Value<int> number(char const* name, char const* help, int defaultNumber);
    Value<int> requiredNumber(char const* name, char const* help);
    Value<bool> flag(char const* name, char const* help);

private:
    CLI::App& app_;
};

} // namespace cli
