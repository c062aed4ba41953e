#include "Trace.h"

#include <algorithm>
#include <array>
#include <utility>

namespace rest
{

namespace
{

QByteArray nameOf(HttpMethod method)
{
    constexpr std::array names{"GET", "PUT", "POST"};
    return names.at(static_cast<std::size_t>(method));
}

std::pair<QByteArray, QByteArray> redacted(QByteArray const& name, QByteArray const& value)
{
    constexpr std::array harmless{"accept", "content-encoding", "content-length", "content-type", "date", "server"};
    bool const isHarmless = std::find(harmless.begin(), harmless.end(), name.toLower()) != harmless.end();
    return {name, isHarmless ? value : QByteArray("[redacted]")};
}

} // namespace

TraceData traceOf(Exchange const& exchange, Outcome const& outcome, QNetworkReply const& reply, QDateTime startTime)
{
    TraceData data;
    data.startTime = std::move(startTime);
    data.duration = std::chrono::milliseconds(data.startTime.msecsTo(QDateTime::currentDateTimeUtc()));
    data.method = nameOf(exchange.method);
    data.url = exchange.request.url();
    for (QByteArray const& name : exchange.request.rawHeaderList())
    {
        data.requestHeaders.push_back(redacted(name, exchange.request.rawHeader(name)));
    }
    for (auto const& [name, value] : reply.rawHeaderPairs())
    {
        data.responseHeaders.push_back(redacted(name, value));
    }
    data.requestBody = exchange.body;
    data.responseBody = outcome.body;
    data.httpStatus = outcome.httpStatus;
    data.error = outcome.errorText;
    return data;
}

} // namespace rest
