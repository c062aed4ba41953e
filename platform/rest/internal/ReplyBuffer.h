#pragma once

#include <algorithm>

#include <QByteArray>

#include <platform/rest/NetworkReply.h>

namespace rest
{

/// Grows a reply's body so that `more` bytes can be appended and `replyPadding` bytes of room still follow. Appending
/// piece by piece costs linear time in all.
inline void makeRoom(QByteArray& body, qsizetype more)
{
    qsizetype const needed = body.size() + more + replyPadding;
    if (body.capacity() < needed)
    {
        body.reserve(std::max(needed, 2 * body.size()));
    }
}

} // namespace rest
