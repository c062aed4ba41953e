#include <platform/rest/internal/Mapping.h>

#include <functional>
#include <map>
#include <mutex>

#include <QFileInfo>

#include <platform/rest/internal/System.h>

namespace rest
{

namespace
{

struct Registry
{
    std::mutex mutex;
    /// By their first byte, the highest address first.
    std::map<char const*, std::weak_ptr<Mapping const>, std::greater<>> mappings;
};

/// Never destroyed: requests that end with the process let go of their files last.
Registry& registry()
{
    static Registry& all = *new Registry();
    return all;
}

} // namespace

std::shared_ptr<Mapping const> Mapping::open(QString const& path, QString& error)
{
    // Opening anything else could wait for a writer.
    if (QFileInfo const file(path); file.exists() && !file.isFile())
    {
        error = QStringLiteral("It is not a regular file");
        return nullptr;
    }
    auto const mapping = std::make_shared<Mapping>(path);
    if (!mapping->map())
    {
        error = mapping->file_.errorString();
        return nullptr;
    }
    if (mapping->size_ > 0)
    {
        std::lock_guard const lock(registry().mutex);
        registry().mappings.emplace(mapping->begin_, mapping);
    }
    return mapping;
}

std::shared_ptr<Mapping const> Mapping::holding(QByteArray const& bytes)
{
    std::shared_ptr<Mapping const> mapping;
    {
        std::lock_guard const lock(registry().mutex);
        auto const& mappings = registry().mappings;
        if (auto const found = mappings.lower_bound(bytes.constData()); found != mappings.end())
        {
            mapping = found->second.lock();
        }
    }
    bool const isInside = mapping && std::less<>()(bytes.constData(), mapping->begin_ + mapping->size_);
    return isInside ? mapping : nullptr;
}

Mapping::~Mapping()
{
    if (size_ > 0)
    {
        std::lock_guard const lock(registry().mutex);
        registry().mappings.erase(begin_);
    }
}

bool Mapping::map()
{
    if (!file_.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
    {
        return false;
    }
    size_ = file_.size();
    if (size_ == 0)
    {
        return true;
    }
    auto const* const begin = file_.map(0, size_);
    begin_ = reinterpret_cast<char const*>(begin);
    size_ = begin != nullptr ? size_ : 0;
    return begin != nullptr;
}

qsizetype Mapping::read(char const* place, char* buffer, qsizetype size) const
{
    qsizetype count = 0;
    qint64 last = 1;
    while (last > 0 && count < size)
    {
        last = system::readAt(file_, place + count - begin_, buffer + count, size - count);
        if (last < 0)
        {
            return -1;
        }
        count += last;
    }
    return count;
}

} // namespace rest
