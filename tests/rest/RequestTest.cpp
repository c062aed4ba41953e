// What goes over the wire beyond what every platform promises, and in which order.
#include <algorithm>
#include <future>

#include "tests/rest/RestTestSupport.h"

namespace test
{

namespace
{

TEST(Request, headersBodiesOfFilesAndKeptConnections)
{
    RawServer server;
    auto const connection = connectTo(server.url());
    QByteArray const bytes = QByteArray("\0\xff\r\n", 4).repeated(100000);
    Folder const folder;
    rest::MappedFile const file(folder.write("file", bytes));
    ASSERT_EQ(file.size(), bytes.size());
    send(*connection, get());
    send(*connection, RequestDataCreator::makeRequest(HttpMethod::Post, path("/x")));
    send(*connection, upload(file.bytes()));
    send(*connection, upload(QByteArray::fromRawData(file.bytes().constData() + 2, 4097)));
    send(*connection, upload(rest::MappedFile(folder.write("empty", "")).bytes()));

    auto const requests = server.requests();
    QByteArray const bodies[] = {"", "", bytes, bytes.mid(2, 4097), ""};
    ASSERT_EQ(requests.size(), std::size(bodies));
    for (std::size_t i = 0; i < requests.size(); ++i)
    {
        EXPECT_TRUE(requests[i].body == bodies[i]) << i;
        EXPECT_EQ(requests[i].header("User-Agent"), "KeloCommunicationLib/1.0");
        EXPECT_EQ(requests[i].header("Accept"), "application/json");
        EXPECT_TRUE(requests[i].header("Expect").isNull());
    }
    // Connections are reused, but for the writes that have no body.
    EXPECT_EQ(server.connectionCount(), 3);
}

TEST(Request, fileThatBecomesShorterEndsItsUpload)
{
    RawServer server;
    Folder const folder;
    QString const path = folder.write("file", QByteArray(1'000'000, 'x'));
    rest::MappedFile const file(path);
    ASSERT_TRUE(QFile::resize(path, 200'000));
    auto const answer = send(*connectTo(server.url()), upload(file.bytes()));
    EXPECT_THAT(answer, IsNetworkError());
    EXPECT_TRUE(answer->errorText().contains(QLatin1String("become shorter"))) << answer->errorText().toStdString();
    for (QString const& unusable : {folder.path("missing"), folder.path(".")})
    {
        EXPECT_FALSE(rest::MappedFile(unusable).isOpen());
        EXPECT_FALSE(rest::MappedFile(unusable).errorString().isEmpty());
    }
}

TEST(Request, progressIsToldToTheScopeThatTheRequestWasMadeIn)
{
    QByteArray const raw = "\"" + QByteArray(100'000, 'x') + "\"";
    QByteArray const stored = qCompress(raw, 0).mid(4);
    RawServer server(
        [&stored](RawRequest const&) {
            return reply(200, stored, {{"Content-Encoding", "deflate"}}).holdingBack(10);
        });
    auto const connection = connectTo(server.url());
    std::vector<rest::TransferProgress> reports;
    auto const start = std::chrono::steady_clock::now();
    rest::FutureJsonReply watched;
    {
        rest::ProgressScope const scope(
            [&](rest::TransferProgress const& progress)
            {
                reports.push_back(progress);
                if (progress.received == stored.size() - 10)
                {
                    server.release();
                }
                throw std::runtime_error("host's fault");
            });
        watched = connection->request(upload(QByteArray(5'000'000, 'x')));
    }
    send(*connection);
    ASSERT_EQ(watched.get()->text(), raw);
    auto const elapsed = std::chrono::steady_clock::now() - start;

    ASSERT_GE(reports.size(), 3);
    EXPECT_LE(static_cast<int>(reports.size()), elapsed / 100ms + 2);
    EXPECT_LT(reports.front().sent, 5'000'000);
    EXPECT_EQ(reports.front().toReceive, -1);
    for (std::size_t i = 0; i < reports.size(); ++i)
    {
        EXPECT_EQ(reports[i].hasEnded, i + 1 == reports.size());
        EXPECT_GE(reports[i].sent, reports[i > 0 ? i - 1 : 0].sent);
        EXPECT_EQ(reports[i].toSend, 5'000'000);
    }
    EXPECT_EQ(reports.back().sent, 5'000'000);
    EXPECT_EQ(reports.back().received, stored.size());
    EXPECT_EQ(reports.back().toReceive, stored.size());
}

TEST(Request, whatEndsItIsToldInWords)
{
    QUrl nobodyThere;
    {
        RawServer server;
        nobodyThere = server.url();
    }
    RawServer server([](RawRequest const&) { return stall(); }, {false, [](RawRequest const& request) {
                                                                     return request.method == "PUT"
                                                                                ? std::optional(resetNow())
                                                                                : std::nullopt;
                                                                 }});
    QByteArray const large(10'000'000, 'x');
    struct
    {
        QUrl base;
        rest::HttpRequestData request;
        char const* text;
    } const rows[] = {
        {nobodyThere, upload("x"), "No connection to 127.0.0.1 could be made .Connection refused.[.]"},
        {server.url(), upload(large),
         "The connection to 127.0.0.1 was lost before the answer was complete"
         "( .Broken pipe.| .Connection reset by peer.)?[.]"
         " The server may have processed the request[.]"},
        {server.url(), get("/x", 40ms), ".*Time-out.* 40 ms.*"},
        {server.url(), get("/x", -5ms), ".*Time-out.* 60 ms.*"},
    };
    for (auto const& row : rows)
    {
        auto const connection = connectTo(row.base);
        connection->setDefaultTimeout(60ms);
        auto const answer = send(*connection, row.request);
        EXPECT_THAT(answer, IsNetworkError());
        EXPECT_THAT(answer->errorText().toStdString(), testing::MatchesRegex(row.text));
    }
}

// Sixty calls are ten rounds of six.
TEST(Request, whatTimesOutInTheQueueWasNotSent)
{
    RawServer server([](RawRequest const&) { return stall(); });
    auto const connection = connectTo(server.url(), 400ms);
    std::vector<rest::FutureJsonReply> calls;
    calls.reserve(60);
    for (int i = 0; i < 60; ++i)
    {
        calls.push_back(connection->request(upload("x")));
    }
    auto const sent = std::count_if(
        calls.begin(), calls.end(), [](rest::FutureJsonReply const& call) { return saysMaybeProcessed(call.get()); });
    EXPECT_TRUE(saysMaybeProcessed(calls.front().get()));
    EXPECT_LE(server.requestCount(), sent);
    // Some may get their turn just before their time is over.
    EXPECT_LE(sent, 12);
}

TEST(Request, largeReplyHoldsUpNoSmallOne)
{
    RawServer server(
        [](RawRequest const& request)
        { return request.target == "/large" ? reply(200, QByteArray(100'000, ' ')).afterRelease() : reply(200); });
    auto const connection = connectTo(server.url());
    // Unlike a future of this library it does not keep the thread working that waits for it.
    std::promise<void> promise;
    auto const large =
        connection->request(get("/large")).then([&](rest::JsonReply const&) { promise.get_future().wait(); });
    // Had it finished before, the continuation would have run here.
    server.release();
    for (int i = 0; i < 10; ++i)
    {
        EXPECT_EQ(send(*connection)->httpStatusCode(), 200);
    }
    promise.set_value();
    large.wait();
}

TEST(Request, sixAtATimeTheRestWaitsInOrderWithItsClockStopped)
{
    RawServer server([](RawRequest const& request)
                     { return request.target == "/stall" ? stall() : reply(200).afterRelease(); });
    auto const connection = connectTo(server.url());
    std::vector<rest::FutureJsonReply> futures;
    futures.reserve(40);
    for (int i = 0; i < 6; ++i)
    {
        futures.push_back(connection->request(get(QByteArray("/" + QByteArray::number(i)).constData())));
    }
    ASSERT_TRUE(server.waitForRequests(6));
    for (int i = 6; i < 40; ++i)
    {
        futures.push_back(connection->request(get(QByteArray("/" + QByteArray::number(i)).constData(), 5s)));
    }
    futures[20].cancel();
    EXPECT_FALSE(futures[39].waitFor(50ms));
    EXPECT_EQ(server.requestCount(), 6);
    EXPECT_EQ(server.connectionCount(), 6);
    server.release();
    for (std::size_t i = 0; i < futures.size(); ++i)
    {
        auto const answer = futures[i].get();
        EXPECT_EQ(answer ? answer->httpStatusCode() : -1, i == 20 ? -1 : 200);
    }
    EXPECT_EQ(server.requestCount(), 39);
    EXPECT_EQ(server.connectionCount(), 6);
}

} // namespace

} // namespace test
