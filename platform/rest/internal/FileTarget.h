#pragma once

#include <optional>

#include <QSaveFile>
#include <QString>

namespace rest
{

/// The file that an answer's body goes to. It is written beside its place and gets there by `commit` only. Used by one
/// thread at a time.
class FileTarget
{
public:
    explicit FileTarget(QString const& path) { file_.emplace(path); }

    bool open();
    bool write(char const* data, qint64 size);
    /// False, with nothing left behind, when not all could be written.
    bool commit();
    /// Leaves nothing behind.
    void discard() { file_.reset(); }

    /// What went wrong, in a sentence.
    QString failureText() const;

private:
    bool note(bool isDone);

    std::optional<QSaveFile> file_;
    QString error_;
};

} // namespace rest
