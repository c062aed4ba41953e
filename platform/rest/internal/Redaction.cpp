#include <platform/rest/internal/Redaction.h>

#include <array>

#include <platform/rest/internal/ReplyBuffer.h>

namespace rest
{

void redactCredentials(Outcome& outcome, Request const& request)
{
    bool const isSuccess = outcome.httpStatus >= 200 && outcome.httpStatus < 300;
    if (request.username.isEmpty() || (isSuccess && outcome.traces.empty()))
    {
        return;
    }
    QByteArray const credentials = (request.username + ':' + request.password).toBase64();
    // JSON may have the slashes of Base64 escaped.
    std::array<QByteArray, 2> const forms = {credentials, QByteArray(credentials).replace('/', "\\/")};
    auto const redact = [&forms](QByteArray& text)
    {
        for (QByteArray const& form : forms)
        {
            // Without a find the text stays shared, and as it is.
            if (text.contains(form))
            {
                text.replace(form, "[redacted]");
                makeRoom(text, 0);
            }
        }
    };
    if (!isSuccess)
    {
        redact(outcome.body);
    }
    for (TraceData& trace : outcome.traces)
    {
        redact(trace.responseBody);
        for (auto& header : trace.responseHeaders)
        {
            redact(header.second);
        }
    }
}

} // namespace rest
