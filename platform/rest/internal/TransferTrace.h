#pragma once

#include <QByteArray>

#include <curl/curl.h>

#include <platform/rest/TraceData.h>
#include <platform/rest/internal/Call.h>

namespace rest
{

/// Collects what a trace tells of one exchange while it runs.
class TransferTrace
{
public:
    TransferTrace();

    /// Has libcurl report the request's head to this object. To be called for each exchange of the handle.
    void attach(CURL* handle);
    void addResponseHeader(QByteArray const& line);
    /// The trace of the exchange that the handle has just ended.
    TraceData finish(CURL* handle, Call const& call, QByteArray const& url);
    /// To be called for each piece of the body that is handed out.
    void bodyRead();

private:
    static int receive(CURL*, curl_infotype type, char* data, std::size_t size, void* self);
    TraceData::Phases phases(CURL* handle) const;

    TraceData data_;
    Clock::time_point started_;
    Clock::time_point bodySent_;
};

} // namespace rest
