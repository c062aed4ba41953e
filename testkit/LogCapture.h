#pragma once

#include <mutex>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <QString>
#include <QtGlobal>

namespace testkit
{

/// Collects what is logged from construction to destruction, on any thread, in place of its being printed. One at a
/// time. Every line must be in the default category, whose name hosts read in their message handlers, and must not tell
/// where in the sources it comes from.
class LogCapture
{
public:
    LogCapture()
    {
        current() = this;
        previous_ = qInstallMessageHandler(&LogCapture::handle);
    }

    LogCapture(LogCapture const&) = delete;
    LogCapture& operator=(LogCapture const&) = delete;

    ~LogCapture()
    {
        qInstallMessageHandler(previous_);
        current() = nullptr;
    }

    /// The warnings so far, in order; those of Qt's own categories left out.
    std::vector<std::string> warnings() const
    {
        std::lock_guard const lock(mutex_);
        return warnings_;
    }

    /// Every line so far, of any kind and category.
    std::string everything() const
    {
        std::lock_guard const lock(mutex_);
        return everything_;
    }

private:
    static LogCapture*& current()
    {
        static LogCapture* instance = nullptr;
        return instance;
    }

    static void handle(QtMsgType type, QMessageLogContext const& context, QString const& text)
    {
        bool const isOurs = qstrncmp(context.category, "qt.", 3) != 0;
        LogCapture* const capture = current();
        if (capture == nullptr)
        {
            return;
        }
        std::lock_guard const lock(capture->mutex_);
        capture->everything_ += text.toStdString() + '\n';
        if (!isOurs)
        {
            return;
        }
        EXPECT_STREQ(context.category, "default") << text.toStdString();
        EXPECT_TRUE(context.file == nullptr && context.line == 0 && context.function == nullptr) << text.toStdString();
        if (type == QtWarningMsg)
        {
            capture->warnings_.push_back(text.toStdString());
        }
    }

    mutable std::mutex mutex_;
    std::vector<std::string> warnings_;
    std::string everything_;
    QtMessageHandler previous_ = nullptr;
};

} // namespace testkit
