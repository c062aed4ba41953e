#include <platform/rest/internal/TransferTrace.h>

#include <algorithm>
#include <array>
#include <string_view>

namespace rest
{

namespace
{

using std::chrono::microseconds;

// Only values of these headers are shown: nothing secret can slip through by being unknown.
constexpr std::array<std::string_view, 20> harmlessHeaders = {
    "accept",
    "accept-encoding",
    "age",
    "allow",
    "cache-control",
    "connection",
    "content-encoding",
    "content-length",
    "content-type",
    "date",
    "etag",
    "expires",
    "host",
    "last-modified",
    "location",
    "retry-after",
    "server",
    "transfer-encoding",
    "user-agent",
    "vary"};

QByteArray shownValue(QByteArray const& name, QByteArray const& value)
{
    QByteArray const key = name.toLower();
    if (std::find(
            harmlessHeaders.begin(), harmlessHeaders.end(),
            std::string_view(key.constData(), static_cast<std::size_t>(key.size())))
        == harmlessHeaders.end())
    {
        return "[redacted]";
    }
    return key == "location" ? QUrl::fromEncoded(value).toEncoded(QUrl::RemoveUserInfo) : value;
}

void addHeader(Headers& headers, QByteArray const& line)
{
    if (qsizetype const colon = line.indexOf(':'); colon > 0)
    {
        QByteArray const name = line.left(colon);
        headers.emplace_back(name, shownValue(name, line.mid(colon + 1).trimmed()));
    }
}

microseconds timeOf(CURL* handle, CURLINFO which)
{
    curl_off_t time = 0;
    curl_easy_getinfo(handle, which, &time);
    return microseconds(time);
}

microseconds atLeastZero(microseconds time)
{
    return std::max(time, microseconds(0));
}

QByteArray methodName(HttpMethod method)
{
    switch (method)
    {
    case HttpMethod::Put:
        return "PUT";
    case HttpMethod::Post:
        return "POST";
    case HttpMethod::Get:
        break;
    }
    return "GET";
}

} // namespace

TransferTrace::TransferTrace() : started_(Clock::now()), bodySent_(started_)
{
    data_.startTime = QDateTime::currentDateTimeUtc();
}

void TransferTrace::attach(CURL* handle)
{
    curl_easy_setopt(handle, CURLOPT_VERBOSE, 1L);
    curl_easy_setopt(handle, CURLOPT_DEBUGFUNCTION, &TransferTrace::receive);
    curl_easy_setopt(handle, CURLOPT_DEBUGDATA, this);
}

int TransferTrace::receive(CURL*, curl_infotype type, char* data, std::size_t size, void* self)
{
    if (type == CURLINFO_HEADER_OUT)
    {
        // One report is one request; an earlier one was to the proxy, or on a connection that turned out to be dead.
        Headers& headers = static_cast<TransferTrace*>(self)->data_.requestHeaders;
        headers.clear();
        for (QByteArray const& line : QByteArray(data, static_cast<qsizetype>(size)).split('\n').mid(1))
        {
            addHeader(headers, line);
        }
    }
    return 0;
}

void TransferTrace::addResponseHeader(QByteArray const& line)
{
    if (line.startsWith("HTTP/"))
    {
        data_.responseHeaders.clear();
    }
    else
    {
        addHeader(data_.responseHeaders, line);
    }
}

void TransferTrace::bodyRead()
{
    bodySent_ = Clock::now();
}

TraceData::Phases TransferTrace::phases(CURL* handle) const
{
    microseconds const lookedUp = timeOf(handle, CURLINFO_NAMELOOKUP_TIME_T);
    microseconds const connected = timeOf(handle, CURLINFO_CONNECT_TIME_T);
    microseconds const secured = timeOf(handle, CURLINFO_APPCONNECT_TIME_T);
    microseconds const ready = timeOf(handle, CURLINFO_PRETRANSFER_TIME_T);
    microseconds const answered = timeOf(handle, CURLINFO_STARTTRANSFER_TIME_T);
    microseconds const total = timeOf(handle, CURLINFO_TOTAL_TIME_T);
    auto const uploaded = std::chrono::duration_cast<microseconds>(bodySent_ - started_);

    TraceData::Phases phases;
    phases.nameLookUp = lookedUp;
    phases.connect = atLeastZero(connected - lookedUp);
    phases.tlsHandshake = secured.count() > 0 ? atLeastZero(secured - connected) : microseconds(0);
    // A phase that was not reached has the time 0; what passed belongs to the one in which the exchange broke off.
    microseconds const asked = ready.count() > 0 ? std::max(ready, std::min(uploaded, total)) : total;
    phases.send = ready.count() > 0 ? asked - ready : microseconds(0);
    phases.wait = atLeastZero((answered.count() > 0 ? answered : total) - asked);
    phases.receive = answered.count() > 0 ? atLeastZero(total - std::max(answered, asked)) : microseconds(0);
    return phases;
}

TraceData TransferTrace::finish(CURL* handle, Call const& call, QByteArray const& url)
{
    TraceData data = data_;
    data.phases = phases(handle);
    data.phases.queued = atLeastZero(std::chrono::duration_cast<microseconds>(started_ - call.created()));
    data.method = methodName(call.request().method);
    data.url = QUrl::fromEncoded(url);
    if (call.request().file == nullptr)
    {
        data.requestBody = call.request().body;
    }
    long status = 0;
    curl_easy_getinfo(handle, CURLINFO_RESPONSE_CODE, &status);
    data.httpStatus = static_cast<int>(status);
    return data;
}

} // namespace rest
