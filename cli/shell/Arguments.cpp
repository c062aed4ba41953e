#include "cli/shell/Arguments.h"

#include <CLI/CLI.hpp>

#include <string>
#include <vector>

namespace cli
{

namespace
{

CLI::Option* addText(CLI::App& app, char const* name, char const* help, std::shared_ptr<QString> const& value)
{
    return app.add_option_function<std::string>(
        name, [value](std::string const& text) { *value = QString::fromStdString(text); }, help);
}

CLI::Option* addTexts(CLI::App& app, char const* name, char const* help, std::shared_ptr<QStringList> const& values)
{
    auto const take = [values](std::vector<std::string> const& texts)
    {
        for (auto const& text : texts)
        {
            *values << QString::fromStdString(text);
        }
    };
    return app.add_option_function<std::vector<std::string>>(name, take, help);
}

CLI::Option* addNumber(CLI::App& app, char const* name, char const* help, std::shared_ptr<int> const& value)
{
    return app.add_option_function<int>(
        name, [value](int number) { *value = number; }, help);
}

} // namespace

Value<QString> Arguments::text(char const* name, char const* help, QString const& defaultText)
{
    auto const value = std::make_shared<QString>(defaultText);
    addText(app_, name, help, value);
    return value;
}

Value<QString> Arguments::requiredText(char const* name, char const* help)
{
    auto const value = std::make_shared<QString>();
    addText(app_, name, help, value)->required();
    return value;
}

Value<QStringList> Arguments::texts(char const* name, char const* help)
{
    auto const values = std::make_shared<QStringList>();
    addTexts(app_, name, help, values)->delimiter(',');
    return values;
}

Value<QStringList> Arguments::paths(char const* name, char const* help)
{
    auto const values = std::make_shared<QStringList>();
    addTexts(app_, name, help, values);
    return values;
}

Value<int> Arguments::number(char const* name, char const* help, int defaultNumber)
{
    auto const value = std::make_shared<int>(defaultNumber);
    addNumber(app_, name, help, value);
    return value;
}

Value<int> Arguments::requiredNumber(char const* name, char const* help)
{
    auto const value = std::make_shared<int>(0);
    addNumber(app_, name, help, value)->required();
    return value;
}

Value<bool> Arguments::flag(char const* name, char const* help)
{
    auto const value = std::make_shared<bool>(false);
    app_.add_flag_callback(
        name, [value] { *value = true; }, help);
    return value;
}

} // namespace cli
