#include "OneTimeBody.h"

#include <algorithm>
#include <utility>

namespace rest
{

OneTimeBody::OneTimeBody(QByteArray bytes, QObject* parent) : QIODevice(parent), bytes_(std::move(bytes))
{
    open(ReadOnly | Unbuffered);
}

qint64 OneTimeBody::size() const
{
    return bytes_.size();
}

bool OneTimeBody::reset()
{
    // What a host is in for that hands its bytes to Qt as they are.
    static bool const repeats = qEnvironmentVariableIsSet("OWN_PLATFORM_REPEATS_WRITES");
    return repeats && QIODevice::reset();
}

qint64 OneTimeBody::readData(char* data, qint64 maxSize)
{
    qint64 const count = std::min(maxSize, bytes_.size() - pos());
    std::copy_n(bytes_.constData() + pos(), count, data);
    return count;
}

qint64 OneTimeBody::writeData(char const*, qint64)
{
    return -1;
}

} // namespace rest
