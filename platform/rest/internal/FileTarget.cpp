#include <platform/rest/internal/FileTarget.h>

namespace rest
{

bool FileTarget::open()
{
    // A buffer would have errors of writing show up at the end, when `commit` may overlook them.
    return note(file_->open(QIODevice::WriteOnly | QIODevice::Unbuffered));
}

bool FileTarget::write(char const* data, qint64 size)
{
    // The reason why only a part could be written is told for the rest.
    qint64 written = 0;
    qint64 last = 1;
    while (last > 0 && written < size)
    {
        last = file_->write(data + written, size - written);
        written += last;
    }
    return note(last > 0);
}

bool FileTarget::commit()
{
    bool const isWhole = file_->error() == QFileDevice::NoError && file_->commit();
    note(isWhole);
    discard();
    return isWhole;
}

bool FileTarget::note(bool isDone)
{
    if (!isDone)
    {
        error_ = file_->errorString();
    }
    return isDone;
}

QString FileTarget::failureText() const
{
    return QStringLiteral("The file for the answer could not be written: %1.").arg(error_);
}

} // namespace rest
