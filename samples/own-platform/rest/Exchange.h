#pragma once

#include <chrono>
#include <memory>
#include <vector>

#include <QByteArray>
#include <QElapsedTimer>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QString>

#include <platform/rest/HttpMethod.h>
#include <platform/rest/TraceData.h>

class QNetworkAccessManager;

namespace rest
{

/// All that the network thread needs to know of a call.
struct Exchange
{
    std::shared_ptr<QNetworkAccessManager> manager; ///< to be used in the network thread only
    HttpMethod method = HttpMethod::Get;
    QNetworkRequest request;
    QByteArray body;
    std::chrono::milliseconds timeout{0};
    bool isTransfer = false; ///< the time-out bounds the time without progress
    bool usesSystemProxies = false;
    qint64 replySizeLimit = 0; ///< after decompression
    /// Since the connection's service was last heard of; for the network thread.
    std::shared_ptr<QElapsedTimer> sinceLastHeard;
};

/// How an exchange has ended.
struct Outcome
{
    int httpStatus = 0;
    int error = 0;     ///< one of `QNetworkReply::NetworkError`; 0 if there is a usable answer
    QString errorText; ///< a sentence for people; empty if there is a usable answer
    QByteArray body;
    std::vector<TraceData> traces; ///< of the redirects that were followed and of the last exchange
};

} // namespace rest
