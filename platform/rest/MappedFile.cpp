#include <platform/rest/MappedFile.h>

#include <platform/rest/internal/Mapping.h>

namespace rest
{

MappedFile::MappedFile(QString const& path)
{
    mapping_ = Mapping::open(path, error_);
}

QByteArray MappedFile::bytes() const
{
    return mapping_ ? mapping_->bytes() : QByteArray();
}

} // namespace rest
