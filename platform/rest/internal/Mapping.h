#pragma once

#include <memory>

#include <QByteArray>
#include <QFile>
#include <QString>

namespace rest
{

/// A file in the address space of the process. All mappings are known to it, so that bytes that are no more than an
/// address and a size can be followed back to their file.
class Mapping
{
public:
    /// Null, with the reason in `error`, unless there is a regular file that can be read.
    static std::shared_ptr<Mapping const> open(QString const& path, QString& error);
    /// The mapping that the bytes are part of; null for all others.
    static std::shared_ptr<Mapping const> holding(QByteArray const& bytes);

    /// Its text is one of its own: it goes on any thread, inside Qt, where the thread sanitizer sees no shared counts.
    explicit Mapping(QString const& path) : file_(QString(path.constData(), path.size())) {}

    Mapping(Mapping const&) = delete;
    Mapping& operator=(Mapping const&) = delete;
    ~Mapping();

    QByteArray bytes() const { return QByteArray::fromRawData(begin_, size_); }

    /// Copies what stands at that place of the mapping, but from the file itself: a page that the file no longer has
    /// would raise a signal. Gives the number of bytes, fewer than wanted at the end of the file, -1 for an error.
    qsizetype read(char const* place, char* buffer, qsizetype size) const;

private:
    bool map();

    QFile file_;
    char const* begin_ = "";
    qsizetype size_ = 0;
};

} // namespace rest
