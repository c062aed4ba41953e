#pragma once

#include <QByteArray>
#include <QString>

#include <sys/types.h>

namespace cli
{

/// A file that is written as a whole, or not at all: beside its place, through to the disk, and then in the place of a
/// former one. What exists and is no regular file (a device, a pipe) is written to as it is, and "-" is standard
/// output.
class OutputFile
{
public:
    /// Throws a Failure where nothing can be written: found out before anything is sent. `what` names the file's role
    /// in messages; unless told otherwise, only its owner may read it. A pipe is waited for until somebody reads it.
    OutputFile(char const* what, QString const& path, mode_t mode = 0600);
    OutputFile(OutputFile const&) = delete;
    OutputFile& operator=(OutputFile const&) = delete;
    ~OutputFile();

    /// Throws a Failure with the system's reason when not all of it could be written; a former file is left as it was.
    /// Once for what is no regular file.
    void write(QByteArray const& content);
    /// Takes the file away, through to the disk.
    void remove();

private:
    QString what_;
    QString path_;
    QByteArray target_; ///< of a regular file, behind all links
    mode_t mode_;
    int direct_ = -1;
};

/// Throws a Failure if there is something at a place that was not given by name: unless it may be replaced, or if it is
/// no regular file.
void checkPlace(QString const& path, bool mayReplace);

} // namespace cli
