#pragma once

#include <QByteArray>

namespace bench
{

/// The addresses that the service hands out to an installation, 1 KB.
QByteArray settingsReply();

/// A list of requests, about 90 bytes each.
QByteArray requestsReply(int count);

/// The details of `count` requests as lists of the named record hold them: 1 KB each and more, nested.
QByteArray detailsReply(char const* record, int count);

} // namespace bench
