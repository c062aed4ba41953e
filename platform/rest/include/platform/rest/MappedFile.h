#pragma once

#include <memory>

#include <QByteArray>
#include <QString>

#include <platform/rest/Export.h>

namespace rest
{

class Mapping;

/// A file as bytes that are not read into memory, to be given to an operation as they are:
///     rest::MappedFile const file(path);
///     auto const future = connection->uploadOrderFile(reference, file.bytes());
/// This object may go as soon as the operation was called: the request keeps a handle of its own until its exchange has
/// ended. What is sent is read from the file meanwhile, on the I/O thread; the file as it is then, up to the size that
/// it had when it was opened. If it has become shorter, the call ends as a network error that says so. The trace of the
/// exchange leaves the bytes out.
///
/// Copies share the file. An empty file has no bytes; one over 2 GiB is as good as any other.
class PLATFORM_REST_EXPORT MappedFile
{
public:
    /// Opens the file; ask `isOpen`. Only regular files can be opened.
    explicit MappedFile(QString const& path);

    bool isOpen() const { return mapping_ != nullptr; }

    /// Why the file is not open, in words of the system; empty if it is.
    QString const& errorString() const { return error_; }

    /// The file's size when it was opened; 0 if it is not open.
    qint64 size() const { return bytes().size(); }

    /// The content, never null if the file is open. To be used, or copied by whoever keeps it, while this object lives.
    /// A host that looks into it beyond the end of a file that was shortened meanwhile gets a SIGBUS.
    QByteArray bytes() const;

private:
    std::shared_ptr<Mapping const> mapping_;
    QString error_;
};

} // namespace rest
