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

/// One finished exchange. Header values that may be secrets read "[redacted]".
struct TraceData
{
    using Headers = std::vector<std::pair<QByteArray, QByteArray>>;

    QDateTime startTime; ///< UTC
    std::chrono::milliseconds duration{0};
    QByteArray method;
    QUrl url;
    Headers requestHeaders;
    Headers responseHeaders;
    QByteArray requestBody;
    QByteArray responseBody;
    int httpStatus = 0;
    QString error;
};

} // namespace rest
