// What the trace callback is told.
#include <atomic>
#include <mutex>
#include <stdexcept>

#include "testkit/platform/Exchanges.h"
#include "testkit/platform/Rows.h"

namespace platformcheck
{

namespace
{

void oncePerExchangeBeforeItsFuture()
{
    RawServer const server(
        [](RawRequest const& request)
        {
            return request.target == "/x"     ? closeNow()
                   : request.target == "/hop" ? reply(302, "", {{"Location", "/y"}})
                                              : reply(200);
        });
    auto const connection = connectTo(server.url());
    std::atomic<int> traces = 0;
    connection->setTraceCallback([&traces](auto const&) { ++traces; });
    struct
    {
        char const* what = nullptr;
        rest::HttpRequestData data;
        int traces = 0;
    } const calls[] = {
        {"an answered call", get("/y"), 1}, {"a lost write", writeJson(), 2}, {"a redirected call", get("/hop"), 4}};
    for (auto const& call : calls)
    {
        doing(call.what);
        send(*connection, call.data);
        requireEqual("the number of traces when its future has ended", traces.load(), call.traces);
    }
}

/// Whether the trace tells the secret; nothing if it is not made like the bundled platform's.
template <class Trace>
std::optional<bool> tells(Trace const& trace, QByteArray const& secret)
{
    if constexpr (requires { trace.requestHeaders, trace.responseHeaders, trace.url; })
    {
        bool isTold = trace.url.toEncoded().contains(secret);
        for (auto const* const headers : {&trace.requestHeaders, &trace.responseHeaders})
        {
            for (auto const& [name, value] : *headers)
            {
                isTold = isTold || value.contains(secret);
            }
        }
        return isTold;
    }
    else
    {
        return std::nullopt;
    }
}

void secretsAreHidden()
{
    RawServer const server([](RawRequest const&) { return reply(200, "{}", {{"Set-Cookie", "id=told-to-nobody"}}); });
    QUrl base = server.url();
    base.setUserInfo(QStringLiteral("url:told-to-nobody"));
    auto const connection = connectTo(base);
    std::mutex mutex;
    std::optional<bool> tellsPassword;
    std::optional<bool> tellsOther;
    connection->setTraceCallback(
        [&](auto const& trace)
        {
            std::lock_guard const lock(mutex);
            tellsPassword = tells(trace, QByteArray(authorization).mid(6));
            tellsOther = tells(trace, "told-to-nobody");
        });
    requireStatus(send(*connection), 200);
    std::lock_guard const lock(mutex);
    if (!tellsPassword || !tellsOther)
    {
        notOffered("TraceData has no requestHeaders, responseHeaders and url");
    }
    require(!*tellsPassword, "user and password are told");
    require(!*tellsOther, "a cookie, or the password in the base URL, is told");
}

void throwingCallbackIsHarmless()
{
    RawServer const server;
    auto const connection = connectTo(server.url());
    connection->setTraceCallback([](auto const&) { throw std::runtime_error("of the check"); });
    doing("a trace callback that throws");
    requireStatus(send(*connection), 200);
}

constexpr Row tracesRows[] = {
    {"oncePerExchangeBeforeItsFuture", "The trace callback is called once for an exchange, before its future ends.",
     oncePerExchangeBeforeItsFuture},
    {"secretsAreHidden", "Traces tell neither the credentials nor cookies.", secretsAreHidden},
    {"throwingCallbackIsHarmless", "What the trace callback throws goes no further.", throwingCallbackIsHarmless},
};

} // namespace

constinit Group const traces = {"traces", tracesRows};

} // namespace platformcheck
