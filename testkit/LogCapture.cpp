#include <testkit/LogCapture.h>

#include <QString>

namespace testkit
{

namespace
{

LogCapture* current = nullptr;

std::string textOf(char const* text)
{
    return text != nullptr ? text : std::string();
}

} // namespace

LogCapture::LogCapture()
{
    current = this;
    previous_ = qInstallMessageHandler(&LogCapture::handle);
}

LogCapture::~LogCapture()
{
    qInstallMessageHandler(previous_);
    current = nullptr;
}

std::vector<LogLine> LogCapture::lines() const
{
    std::lock_guard const lock(mutex_);
    return lines_;
}

std::vector<std::string> LogCapture::warnings() const
{
    std::vector<std::string> warnings;
    for (LogLine const& line : lines())
    {
        if (line.type == QtWarningMsg && !line.category.starts_with("qt."))
        {
            warnings.push_back(line.text);
        }
    }
    return warnings;
}

std::string LogCapture::everything() const
{
    std::string texts;
    for (LogLine const& line : lines())
    {
        texts += line.text + '\n';
    }
    return texts;
}

void LogCapture::handle(QtMsgType type, QMessageLogContext const& context, QString const& text)
{
    if (current != nullptr)
    {
        std::lock_guard const lock(current->mutex_);
        current->lines_.push_back({type, textOf(context.category), text.toStdString(), textOf(context.file)});
    }
}

} // namespace testkit
