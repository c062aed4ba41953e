#include "cli/shell/Exchange.h"

#include <algorithm>

#include <KeloCommunicationLib/connection/KeloErrors.h>

namespace cli
{

using namespace Qt::Literals::StringLiterals;

double milliseconds(std::chrono::microseconds duration)
{
    return static_cast<double>(duration.count()) / 1000;
}

std::chrono::microseconds durationOf(rest::TraceData const& exchange)
{
    auto const& phases = exchange.phases;
    return phases.queued + phases.nameLookUp + phases.connect + phases.tlsHandshake + phases.send + phases.wait
           + phases.receive;
}

QString headerValue(rest::Headers const& headers, QByteArray const& wanted)
{
    auto const found = std::find_if(
        headers.begin(), headers.end(),
        [&wanted](auto const& header) { return header.first.compare(wanted, Qt::CaseInsensitive) == 0; });
    return found == headers.end() ? QString() : QString::fromLatin1(found->second);
}

qint64 bodySize(rest::Headers const& headers, QByteArray const& body)
{
    bool isAnnounced = false;
    auto const size = headerValue(headers, "Content-Length").toLongLong(&isAnnounced);
    return body.isEmpty() && isAnnounced ? size : body.size();
}

QString summaryOf(rest::TraceData const& exchange)
{
    // Without the query, which may hold whatever the service puts into an address.
    QString const request = QString::fromLatin1(exchange.method) + u' ' + exchange.url.path(QUrl::FullyEncoded);
    QString const time = QString::number(milliseconds(durationOf(exchange)), 'f', 0);
    if (exchange.httpStatus == 0 || !exchange.error.isEmpty())
    {
        QString const status = exchange.httpStatus == 0 ? QString() : u" with status %1"_s.arg(exchange.httpStatus);
        QString const cause = kelo::withoutMaybeProcessed(exchange.error);
        return u"%1: failed%2 after %3 ms: %4"_s.arg(request, status, time, cause);
    }
    return u"%1: %2, %3 ms, %4 bytes sent, %5 received"_s.arg(
        request, QString::number(exchange.httpStatus), time,
        QString::number(bodySize(exchange.requestHeaders, exchange.requestBody)),
        QString::number(bodySize(exchange.responseHeaders, exchange.responseBody)));
}

} // namespace cli
