// What goes over the wire: target, credentials, headers, bodies; and what never does.
#include <QJsonObject>

#include "tests/rest/RestTestSupport.h"

namespace test
{

namespace
{

TEST(Request, relativeUrlIsAppendedToTheBasePath)
{
    struct Case
    {
        char const* base;
        char const* relative;
        char const* target;
    };
    Case const cases[] = {
        {"", "Orders/x", "/Orders/x"},
        {"/", "/Installations/x", "/Installations/x"},
        {"/api/v1", "Orders/x", "/api/v1/Orders/x"},
        {"/api/v1", "/Installations/x", "/api/v1/Installations/x"},
        {"/api/v1//", "Orders/x?a=b%2Fc&d=1.0", "/api/v1/Orders/x?a=b%2Fc&d=1.0"},
        {"/api/v1?key=1", "", "/api/v1?key=1"},
        {"", "", "/"},
        {"/a", "?q=1", "/a/?q=1"},
        {"/a", "//evil.example/x", "/a/evil.example/x"},
        {"/a", "//u:p@evil.example:99/x", "/a/u:p@evil.example:99/x"},
        {"/a", "b:c/x", "/a/b:c/x"},
        {"/a", "file:///etc/hostname", "/a/file:///etc/hostname"},
        {"/a", "ftp://evil.example/x", "/a/ftp://evil.example/x"},
        {"/a", "gopher://evil.example/_x", "/a/gopher://evil.example/_x"},
        {"/a", "data:,x", "/a/data:,x"},
        {"/a", "javascript:alert(1)", "/a/javascript:alert(1)"},
        {"/a", "/x#y?q=1", "/a/x%23y?q=1"},
        {"/a", "/x/../../y/./z", "/a/x/../../y/./z"},
        {"/a", "/x%2Fy z/\xc3\xa4", "/a/x%2Fy%20z/%C3%A4"},
        {"/a", "/x//y", "/a/x//y"},
    };
    RawServer server;
    for (Case const& row : cases)
    {
        auto const connection = connectTo(server.url(QLatin1String(row.base)));
        EXPECT_EQ(
            send(*connection, RequestDataCreator::makeRequest(HttpMethod::Get, QUrl(QString::fromUtf8(row.relative))))
                ->classification(),
            0);
        EXPECT_EQ(server.requests().back().target, row.target) << row.base << " + " << row.relative;
    }
}

TEST(Request, unusableUrlsAreRefusedWithoutOpeningAnything)
{
    RawServer server;
    auto const connection = connectTo(server.url());
    EXPECT_THAT(
        send(*connection, RequestDataCreator::makeRequest(HttpMethod::Get, path("http://[bad"))), IsNetworkError());
    QByteArray const authority = server.url().authority().toLatin1();
    for (QByteArray const& base : QList<QByteArray>{
             "file:///etc/hostname", "ftp://" + authority + "/", "gopher://" + authority + "/_x", "data:,x",
             "javascript:alert(1)", "//" + authority + "/x", authority, "/relative", "http://", ""})
    {
        SCOPED_TRACE(base.toStdString());
        connection->initialize(path(base), {}, {}, {});
        EXPECT_FALSE(connection->isConnected());
        EXPECT_THAT(send(*connection), IsNetworkError());
        EXPECT_LT(send(*connection)->errorCode(), 0) << "libcurl's are positive";
    }
    rest::Connection const fresh(std::make_unique<PlainParser>(), 20s);
    EXPECT_FALSE(fresh.isConnected());
    EXPECT_THAT(send(fresh), IsNetworkError());

    connection->initialize(server.url(), {}, {}, {});
    EXPECT_TRUE(connection->isConnected());
    connection->closeConnection();
    EXPECT_FALSE(connection->isConnected());
    EXPECT_THAT(send(*connection), IsNetworkError());
    rest::BinaryReply download;
    EXPECT_TRUE(connection
                    ->downloadBinary(
                        {}, [&download](rest::BinaryReply const& reply) { download = reply; }, 0ms)
                    .isFinished());
    EXPECT_THAT(download, IsNetworkError());
    EXPECT_EQ(server.connectionCount(), 0);
}

TEST(Request, credentialsGoAlongUnaskedUnlessSwitchedOff)
{
    RawServer server;
    auto const connection = connectTo(server.url());
    send(*connection);
    send(*connection, RequestDataCreator::makeRequestData(HttpMethod::Post, path("/x"), QJsonObject(), 0ms, false));
    connection->initialize(server.url(), QString(), QStringLiteral("secret"), {});
    send(*connection);
    connection->initialize(server.url(), QStringLiteral("\u00fc:"), QStringLiteral("\u20ac"), {});
    send(*connection);
    QUrl withUserInfo = server.url();
    withUserInfo.setUserInfo(QStringLiteral("url:password"));
    connection->initialize(withUserInfo, {}, {}, {});
    send(*connection);

    auto const requests = server.requests();
    ASSERT_EQ(requests.size(), 5);
    EXPECT_EQ(requests[0].header("Authorization"), "Basic " + QByteArray("user:secret").toBase64());
    EXPECT_TRUE(requests[1].header("Authorization").isNull());
    EXPECT_TRUE(requests[2].header("Authorization").isNull());
    EXPECT_EQ(requests[3].header("Authorization"), "Basic " + QByteArray("\xc3\xbc::\xe2\x82\xac").toBase64());
    EXPECT_TRUE(requests[4].header("Authorization").isNull());
    EXPECT_EQ(requests[4].header("Host"), server.url().authority().toLatin1());
}

TEST(Request, bodiesAndHeaders)
{
    RawServer server([](RawRequest const&) { return reply(200, "{}", {{"Set-Cookie", "a=b"}}); });
    auto const connection = connectTo(server.url());
    QByteArray const bytes = QByteArray("\0\xff\r\n", 4).repeated(100000);
    send(*connection, get());
    send(
        *connection, RequestDataCreator::makeRequestData(
                         HttpMethod::Post, path("/x"), QJsonObject{{QStringLiteral("a"), 1}}, 0ms, true));
    send(*connection, upload(bytes));
    send(*connection, RequestDataCreator::makeRequest(HttpMethod::Post, path("/x")));
    send(*connection, upload({}));
    Folder const folder;
    rest::MappedFile const file(folder.write("file", bytes));
    ASSERT_EQ(file.size(), bytes.size());
    send(*connection, upload(file.bytes()));
    send(*connection, upload(QByteArray::fromRawData(file.bytes().constData() + 2, 4097)));
    send(*connection, upload(rest::MappedFile(folder.write("empty", "")).bytes()));

    auto const requests = server.requests();
    ASSERT_EQ(requests.size(), 8);
    char const* const methods[] = {"GET", "POST", "PUT", "POST", "PUT", "PUT", "PUT", "PUT"};
    QByteArray const bodies[] = {"", "{\"a\":1}", bytes, "", "", bytes, bytes.mid(2, 4097), ""};
    QByteArray const octets = "application/octet-stream";
    QByteArray const types[] = {"", "application/json", octets, "", octets, octets, octets, octets};
    for (std::size_t i = 0; i < requests.size(); ++i)
    {
        EXPECT_EQ(requests[i].method, methods[i]);
        EXPECT_TRUE(requests[i].body == bodies[i]) << i;
        EXPECT_EQ(requests[i].header("Content-Type"), types[i]) << i;
        EXPECT_EQ(requests[i].header("Content-Length"), i == 0 ? QByteArray() : QByteArray::number(bodies[i].size()))
            << i;
        EXPECT_EQ(requests[i].header("User-Agent"), "KeloCommunicationLib/1.0");
        EXPECT_EQ(requests[i].header("Accept"), "application/json");
        EXPECT_TRUE(requests[i].header("Expect").isNull());
        EXPECT_TRUE(requests[i].header("Cookie").isNull());
    }
    // Connections are reused, but for the three writes that have no body.
    EXPECT_EQ(server.connectionCount(), 4);
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

// A server that closes after reading must have seen a POST or PUT once, whatever libcurl would do by itself.
TEST(Request, writesArePutOnTheWireOnce)
{
    for (bool const reused : {false, true})
    {
        for (HttpMethod const method : {HttpMethod::Get, HttpMethod::Put, HttpMethod::Post})
        {
            for (char const* const body : {"", "{\"a\":1}"})
            {
                for (Action const& action : {closeNow(), resetNow()})
                {
                    RawServer server([action](RawRequest const& request)
                                     { return request.target == "/warm" ? reply(200) : action; });
                    auto const connection = connectTo(server.url());
                    if (reused)
                    {
                        ASSERT_EQ(send(*connection, get("/warm"))->httpStatusCode(), 200);
                    }
                    auto const answer =
                        send(*connection, RequestDataCreator::makeRequest(method, path("/x"), body, 0ms));
                    EXPECT_THAT(answer, IsNetworkError());
                    bool const isWrite = method != HttpMethod::Get;
                    EXPECT_EQ(saysMaybeProcessed(answer), isWrite);
                    int const seen = server.requestCount() - (reused ? 1 : 0);
                    EXPECT_LE(seen, isWrite ? 1 : 2)
                        << "method " << static_cast<int>(method) << " body " << body << " reused " << reused;
                    EXPECT_GE(seen, 1);
                }
            }
        }
    }
}

TEST(Request, writeLostBetweenHeadAndBodyIsNotRepeated)
{
    std::atomic<int> heads = 0;
    RawServer server({}, {false, [&heads](RawRequest const& request) -> std::optional<Action> {
                              return request.target == "/x" ? (++heads, std::optional(resetNow())) : std::nullopt;
                          }});
    auto const connection = connectTo(server.url());
    for (qsizetype const size : {10, 10'000'000})
    {
        send(*connection, get("/warm"));
        EXPECT_THAT(
            send(*connection, upload(QByteArray(size, 'x')))->errorText().toStdString(),
            testing::MatchesRegex("The connection to 127.0.0.1 was lost before the answer was complete"
                                  "( .Broken pipe.| .Connection reset by peer.)?[.]"
                                  " The server may have processed the request[.]"));
    }
    EXPECT_EQ(heads, 2);
}

TEST(Request, failureBeforeSendingDoesNotTalkOfProcessing)
{
    QUrl nobodyThere;
    {
        RawServer server;
        nobodyThere = server.url();
    }
    auto const answer = send(*connectTo(nobodyThere), upload("x"));
    EXPECT_THAT(answer, IsNetworkError());
    EXPECT_EQ(answer->errorText(), QLatin1String("No connection to 127.0.0.1 could be made (Connection refused)."));
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
