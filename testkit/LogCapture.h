#pragma once

#include <mutex>
#include <string>
#include <vector>

#include <QtGlobal>

namespace testkit
{

/// One line of the log.
struct LogLine
{
    QtMsgType type = QtDebugMsg;
    std::string category; ///< "default" for the library's
    std::string text;
    std::string source; ///< the file that it comes from; empty if the line does not tell, as the library's do not
};

/// Collects what is logged through Qt from construction to destruction, on any thread, in place of its being printed.
/// One at a time.
class LogCapture
{
public:
    LogCapture();
    LogCapture(LogCapture const&) = delete;
    LogCapture& operator=(LogCapture const&) = delete;
    ~LogCapture();

    /// Every line so far, in order.
    std::vector<LogLine> lines() const;
    /// The texts of the warnings so far, in order; those of Qt's own categories ("qt.*") left out.
    std::vector<std::string> warnings() const;
    /// The texts of all lines so far, each followed by a line feed.
    std::string everything() const;

private:
    static void handle(QtMsgType type, QMessageLogContext const& context, QString const& text);

    mutable std::mutex mutex_;
    std::vector<LogLine> lines_;
    QtMessageHandler previous_ = nullptr;
};

} // namespace testkit
