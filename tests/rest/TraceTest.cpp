// What a trace shows and what it hides.
#include <algorithm>
#include <mutex>

#include <QJsonObject>

#include "tests/rest/RestTestSupport.h"

namespace test
{

namespace
{

class TraceLog
{
public:
    explicit TraceLog(rest::Connection& connection)
    {
        connection.setTraceCallback(
            [this](rest::TraceData const& data)
            {
                std::lock_guard const lock(mutex_);
                traces_.push_back(data);
            });
    }

    std::vector<rest::TraceData> traces() const
    {
        std::lock_guard const lock(mutex_);
        return traces_;
    }

private:
    mutable std::mutex mutex_;
    std::vector<rest::TraceData> traces_;
};

QByteArray valueOf(rest::Headers const& headers, QByteArray const& name)
{
    auto const found = std::find_if(
        headers.begin(), headers.end(),
        [&name](auto const& header) { return header.first.compare(name, Qt::CaseInsensitive) == 0; });
    return found != headers.end() ? found->second : QByteArray("(none)");
}

TEST(Trace, showsTheExchangeAndHidesSecrets)
{
    QByteArray const answer = "{\"Token\":1}";
    RawServer server(
        [&answer](RawRequest const&) {
            return reply(201, answer, {{"Set-Cookie", "a=b"}, {"X-Api-Key", "k"}, {"Server", "s"}});
        });
    QUrl base = server.url(QStringLiteral("/api"));
    base.setUserInfo(QStringLiteral("url:password"));
    auto const connection = connectTo(base);
    TraceLog const log(*connection);
    QDateTime const before = QDateTime::currentDateTimeUtc();
    send(
        *connection, RequestDataCreator::makeRequestData(
                         HttpMethod::Post, path("/x?q=1"), QJsonObject{{QStringLiteral("a"), 1}}, 0ms, true));

    ASSERT_EQ(log.traces().size(), 1);
    rest::TraceData const trace = log.traces().front();
    EXPECT_EQ(trace.method, "POST");
    EXPECT_EQ(trace.url, server.url(QStringLiteral("/api/x?q=1")));
    EXPECT_EQ(trace.httpStatus, 201);
    EXPECT_TRUE(trace.error.isEmpty());
    EXPECT_EQ(trace.requestBody, "{\"a\":1}");
    EXPECT_EQ(trace.responseBody, answer);
    EXPECT_GE(trace.startTime, before);
    EXPECT_LE(trace.startTime, QDateTime::currentDateTimeUtc());
    EXPECT_GT((trace.phases.wait + trace.phases.connect).count(), 0);
    EXPECT_EQ(valueOf(trace.requestHeaders, "Authorization"), "[redacted]");
    EXPECT_EQ(valueOf(trace.requestHeaders, "content-type"), "application/json");
    EXPECT_EQ(valueOf(trace.requestHeaders, "Content-Length"), "7");
    EXPECT_EQ(valueOf(trace.responseHeaders, "Set-Cookie"), "[redacted]");
    EXPECT_EQ(valueOf(trace.responseHeaders, "X-Api-Key"), "[redacted]");
    EXPECT_EQ(valueOf(trace.responseHeaders, "Server"), "s");
}

TEST(Trace, locationIsShownWithoutUserInfo)
{
    RawServer server([](RawRequest const&) { return reply(302, "", {{"Location", "http://u:p@127.0.0.1:1/x"}}); });
    auto const connection = connectTo(server.url());
    TraceLog const log(*connection);
    send(*connection);
    EXPECT_EQ(valueOf(log.traces().front().responseHeaders, "Location"), "http://127.0.0.1:1/x");
}

TEST(Trace, tellsRedirectsAndFailuresAndNothingElse)
{
    RawServer server(
        [](RawRequest const& request)
        {
            return request.target == "/stall"  ? stall()
                   : request.target == "/lost" ? closeNow()
                   : request.target == "/hop"  ? reply(302, "", {{"Location", "/x"}})
                                               : reply(200);
        });
    auto const connection = connectTo(server.url());
    TraceLog const log(*connection);
    send(*connection, get("/hop"));
    send(*connection, RequestDataCreator::makeRequest(HttpMethod::Put, path("/lost"), "lost", 0ms));
    auto const canceled = connection->request(get("/stall"));
    server.waitForRequests(4);
    canceled.cancel();
    send(*connection, get("http://[bad"));
    connection->setTraceCallback({});
    send(*connection);

    auto const traces = log.traces();
    ASSERT_EQ(traces.size(), 3);
    EXPECT_EQ(traces[0].httpStatus, 302);
    EXPECT_EQ(traces[1].url, server.url(QStringLiteral("/x")));
    EXPECT_EQ(traces[2].httpStatus, 0);
    EXPECT_FALSE(traces[2].error.isEmpty());
}

} // namespace

} // namespace test
