#pragma once

#include <chrono>
#include <utility>
#include <vector>

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QUrl>

namespace rest
{

using Headers = std::vector<std::pair<QByteArray, QByteArray>>;

/// One finished HTTP exchange, for the host's own log. Header values outside a short list of harmless ones read
/// "[redacted]", and the URL carries no credentials. Bodies are given as they were sent and received, but for the
/// connection's credentials should a server send them back; they may hold patients' data. What goes from a `MappedFile`
/// or into a file is left out.
struct TraceData
{
    /// Time spent in each phase; 0 for a phase that the exchange did not pass (a reused connection has no connect
    /// phase).
    struct Phases
    {
        std::chrono::microseconds queued{0};
        std::chrono::microseconds nameLookUp{0};
        std::chrono::microseconds connect{0};
        std::chrono::microseconds tlsHandshake{0};
        std::chrono::microseconds send{0};
        std::chrono::microseconds wait{0};
        std::chrono::microseconds receive{0};
    };

    QDateTime startTime; ///< UTC
    Phases phases;
    QByteArray method;
    QUrl url; ///< absolute
    Headers requestHeaders;
    Headers responseHeaders;
    QByteArray requestBody;
    QByteArray responseBody;
    int httpStatus = 0; ///< 0 when there was no answer
    QString error;      ///< empty unless there was no usable answer
};

} // namespace rest
