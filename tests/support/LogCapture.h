#pragma once

#include <mutex>
#include <string>
#include <vector>

#include <QString>
#include <QtGlobal>

namespace test
{

/// Collects what is logged from construction to destruction, on any thread, in place of its being printed. One at a
/// time.
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

    /// Whether any warning told file, line or function.
    bool anyHasContext() const
    {
        std::lock_guard const lock(mutex_);
        return anyHasContext_;
    }

private:
    static LogCapture*& current()
    {
        static LogCapture* instance = nullptr;
        return instance;
    }

    static void handle(QtMsgType type, QMessageLogContext const& context, QString const& text)
    {
        bool const isOurs = context.category == nullptr || qstrcmp(context.category, "default") == 0;
        LogCapture* const capture = current();
        if (capture == nullptr)
        {
            return;
        }
        std::lock_guard const lock(capture->mutex_);
        capture->everything_ += text.toStdString() + '\n';
        if (type == QtWarningMsg && isOurs)
        {
            capture->warnings_.push_back(text.toStdString());
            capture->anyHasContext_ |= context.file != nullptr || context.line != 0 || context.function != nullptr;
        }
    }

    mutable std::mutex mutex_;
    std::vector<std::string> warnings_;
    std::string everything_;
    bool anyHasContext_ = false;
    QtMessageHandler previous_ = nullptr;
};

} // namespace test
