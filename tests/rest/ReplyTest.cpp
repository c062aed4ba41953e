// How answers are classified, and what ends an exchange as a network error.
#include <csignal>
#include <thread>

#include <QJsonArray>

#include <sys/resource.h>

#include "tests/rest/RestTestSupport.h"

namespace test
{

namespace
{

// [1,[]]
QByteArray const gzippedArray = QByteArray::fromHex("1f8b08000000000002038b36d4898e8d0500261708db06000000");

HeaderList const gzipped = {{"Content-Encoding", "gzip"}};

TEST(Reply, answersKeepStatusAndDocument)
{
    struct Case
    {
        Action action;
        int status = 0;
        int classification = 0;
        bool hasDocument = false;
    };
    QByteArray const html = "<html>gone</html>";
    Case const cases[] = {
        {reply(200, "{\"a\":1}"), 200, 0, true},
        {reply(201, "[1,2]", {{"Content-Type", "text/plain"}}), 201, 0, true},
        {rawReply("HTTP/1.1 204 No Content\r\n\r\n"), 204, 0, false},
        {reply(200, ""), 200, 0, false},
        {reply(200, html, {{"Content-Type", "text/html"}}), 200, 0, false},
        {reply(400, "[{\"Code\":\"17\"}]"), 400, 1, true},
        {reply(404, html, {{"Content-Type", "text/html"}}), 404, 1, false},
        {reply(503, ""), 503, 1, false},
        {reply(304, ""), 304, 1, false},
        {rawReply("HTTP/1.1 100 Continue\r\n\r\nHTTP/1.1 103 Early Hints\r\nLink: x\r\n\r\n" + reply(409).bytes), 409,
         1, true},
        {rawReply("HTTP/1.0 200 OK\r\n\r\n{\"a\":1}").thenClose(), 200, 0, true},
        {rawReply("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n2\r\n[1\r\n1\r\n]\r\n0\r\n\r\n"), 200, 0, true},
        {reply(200, gzippedArray, gzipped), 200, 0, true},
        {reply(200, "{\"a\":\"" + QByteArray(300000, 'x') + "\"}").inSlices(70000, 0ms), 200, 0, true},
    };
    for (Case const& row : cases)
    {
        RawServer server([&row](RawRequest const&) { return row.action; });
        auto const connection = connectTo(server.url());
        for (int repeat = 0; repeat < 2; ++repeat)
        {
            auto const answer = send(*connection);
            std::string const head = row.action.bytes.left(40).toStdString();
            EXPECT_EQ(answer->httpStatusCode(), row.status) << head;
            EXPECT_EQ(answer->classification(), row.classification) << head;
            EXPECT_EQ(answer->errorCode(), row.classification == 0 ? 0 : row.status) << head;
            EXPECT_EQ(answer->errorText().isEmpty(), row.classification == 0) << head;
            EXPECT_EQ(!answer->body().isNull(), row.hasDocument) << head;
            QByteArray const& text = answer->text();
            EXPECT_EQ(answer->body(), QJsonDocument::fromJson(text)) << head;
            EXPECT_TRUE(text.isEmpty() || text.capacity() - text.size() >= rest::replyPadding) << head;
        }
    }
}

TEST(Reply, documentIsMadeOnceFromAnyThreadOrGiven)
{
    using JsonReply = rest::NetworkReply<QJsonDocument>;
    JsonReply const received(200, 0, 0, {}, QByteArray("[1,[]]"));
    QJsonDocument const* seen = nullptr;
    std::thread other([&] { seen = &received.body(); });
    QJsonDocument const* const own = &received.body();
    other.join();
    EXPECT_EQ(own, seen);
    JsonReply copy;
    copy = received;
    JsonReply const given(200, 0, 0, {}, received.body());
    EXPECT_TRUE(given.text().isNull());
    for (JsonReply const& reply : {copy, given})
    {
        EXPECT_EQ(reply.body().toJson(QJsonDocument::Compact), "[1,[]]");
    }
    EXPECT_TRUE(JsonReply(200, 0, 0, {}, {}).body().isNull());
}

TEST(Reply, brokenAnswersAreNetworkErrors)
{
    QByteArray const chunked = "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n";
    QByteArray const body = "{\"a\":1}";
    std::pair<char const*, Action> const cases[] = {
        {"short body", reply(200, body).truncatedBy(1)},
        {"short error body", reply(500, body).truncatedBy(1)},
        {"reset in the body", reply(200, body).truncatedBy(1).thenReset()},
        {"head cut", reply(200, body).truncatedTo(20)},
        {"head cut after the status", reply(200, body).truncatedTo(30)},
        {"head cut before its last line", rawReply("HTTP/1.1 204 No Content\r\nA: b\r\n").thenClose()},
        {"only an interim answer", rawReply("HTTP/1.1 103 Early Hints\r\nA: b\r\n\r\n").thenClose()},
        {"no answer", closeNow()},
        {"chunk cut", rawReply(chunked + "7\r\n{\"a").thenClose()},
        {"last chunk missing", rawReply(chunked + "7\r\n{\"a\":1}\r\n").thenClose()},
        {"bad chunk size", rawReply(chunked + "zz\r\n{}\r\n0\r\n\r\n")},
        {"bad gzip", reply(200, "this is not gzip", gzipped)},
        {"gzip cut", reply(200, gzippedArray.chopped(10), gzipped)},
        {"gzip trailer cut", reply(200, gzippedArray.chopped(1), gzipped)},
        {"bad checksum", reply(200, gzippedArray.chopped(8) + QByteArray(8, 'x'), gzipped)},
        {"not HTTP", rawReply("SSH-2.0-x\r\n\r\n").thenClose()},
        {"status of two digits", rawReply("HTTP/2 20\r\nContent-Length: 2\r\n\r\n{}")},
        {"reset of an unframed body", rawReply("HTTP/1.1 200 OK\r\n\r\n{}").thenReset()},
        {"endless headers", rawReply("HTTP/1.1 200 OK\r\n").thenRepeat("X-A: " + QByteArray(1000, 'y') + "\r\n")},
        {"one endless header", rawReply("HTTP/1.1 200 OK\r\nX-A: ").thenRepeat(QByteArray(1000, 'y'))},
        {"endless interim answers", rawReply("").thenRepeat("HTTP/1.1 100 Continue\r\n\r\n")},
    };
    for (auto const& [name, action] : cases)
    {
        RawServer server([answer = action](RawRequest const&) { return answer; });
        auto const connection = connectTo(server.url());
        EXPECT_THAT(send(*connection), IsNetworkError()) << name;
        rest::BinaryReply download;
        connection
            ->downloadBinary(
                path("/x"), [&download](rest::BinaryReply const& reply) { download = reply; }, 0ms)
            .wait();
        EXPECT_THAT(download, IsNetworkError()) << name;
        EXPECT_TRUE(download->body().isEmpty()) << name;
        Folder const folder;
        EXPECT_THAT(connection->downloadTo(path("/x"), folder.path("file"), 0ms).get(), IsNetworkError()) << name;
        EXPECT_TRUE(folder.isEmpty()) << name;
    }
}

TEST(Reply, foldedFirstHeaderIsNotAddedToTheAnswerBefore)
{
    // A folded line continues the header before it; here there is none but those of an answer that is gone. What is
    // written there is found by the address sanitizer.
    QByteArray const head = "HTTP/1.1 200 OK\r\nX-Long-Enough-To-Have-A-Place-Of-Its-Own: value\r\n";
    RawServer server(
        [&head](RawRequest const& request)
        {
            return request.target == "/first"
                       ? rawReply(head + "Content-Length: 2\r\n\r\n{}")
                       : rawReply(
                           "HTTP/1.1 200 OK\r\n folded: " + QByteArray(100, 'x') + "\r\nContent-Length: 2\r\n\r\n[]");
        });
    auto const connection = connectTo(server.url());
    for (int repeat = 0; repeat < 3; ++repeat)
    {
        EXPECT_TRUE(send(*connection, get("/first"))->body().isObject());
        EXPECT_THAT(send(*connection, get("/second")), IsNetworkError());
    }
}

TEST(Reply, compressedAnswersAreReadable)
{
    RawServer server([](RawRequest const&) { return reply(200, gzippedArray, gzipped); });
    QJsonArray const expected{1, QJsonValue(QJsonArray())};
    EXPECT_EQ(send(*connectTo(server.url()))->body().array(), expected);
    EXPECT_TRUE(server.requests().front().header("Accept-Encoding").contains("gzip"));
}

TEST(Reply, sizeLimitCountsDecompressedBytes)
{
    QByteArray const raw(1'000'000, ' ');
    QByteArray const deflated = qCompress(raw).mid(4);
    RawServer server(
        [&](RawRequest const& request)
        {
            if (request.target == "/endless")
            {
                return rawReply("HTTP/1.1 200 OK\r\n\r\n").thenRepeat(QByteArray(10000, ' '));
            }
            return request.target == "/plain" ? reply(200, raw)
                                              : reply(200, deflated, {{"Content-Encoding", "deflate"}});
        });
    auto const connection = connectTo(server.url());
    for (char const* const target : {"/plain", "/deflated"})
    {
        connection->setReplySizeLimit(raw.size());
        EXPECT_EQ(send(*connection, get(target))->httpStatusCode(), 200) << target;
        connection->setReplySizeLimit(raw.size() - 1);
        EXPECT_THAT(send(*connection, get(target)), IsNetworkError()) << target;
        // What is not held in memory is not limited.
        Folder const folder;
        auto const stored = connection->downloadTo(path(target), folder.path("file"), 0ms).get();
        EXPECT_EQ(stored->httpStatusCode(), 200);
        EXPECT_TRUE(stored->body().isEmpty());
        EXPECT_TRUE(folder.read("file") == raw) << target;
    }
    EXPECT_THAT(send(*connection, get("/endless")), IsNetworkError());
}

TEST(Reply, downloadsGiveBytesAndKeepErrorStatus)
{
    QByteArray const content = QByteArray("\0\x89PNG", 5).repeated(50000);
    RawServer server(
        [&content](RawRequest const& request) {
            return request.target == "/logo" ? reply(200, content, {{"Content-Type", "image/png"}})
                                             : reply(404, "gone");
        });
    auto const connection = connectTo(server.url());
    std::vector<rest::BinaryReply> replies;
    for (char const* const target : {"/logo", "/other"})
    {
        connection
            ->downloadBinary(
                path(target), [&replies](rest::BinaryReply const& reply) { replies.push_back(reply); }, 0ms)
            .wait();
    }
    Folder const folder;
    folder.write("file", "former");
    replies.push_back(connection->downloadTo(path("/other"), folder.path("file"), 0ms).get());
    EXPECT_EQ(folder.read("file"), "former");
    replies.push_back(connection->downloadTo(path("/logo"), folder.path("file"), 0ms).get());
    EXPECT_TRUE(folder.read("file") == content);
    int const statuses[] = {200, 404, 404, 200};
    QByteArray const bodies[] = {content, "gone", "gone", ""};
    ASSERT_EQ(replies.size(), 4);
    for (std::size_t i = 0; i < replies.size(); ++i)
    {
        EXPECT_EQ(replies[i]->httpStatusCode(), statuses[i]);
        EXPECT_EQ(replies[i]->classification(), statuses[i] == 200 ? 0 : 1);
        EXPECT_TRUE(replies[i]->body() == bodies[i]) << i;
        EXPECT_EQ(server.requests()[i].header("Accept"), "*/*");
        EXPECT_EQ(server.requests()[i].header("Authorization"), "Basic " + QByteArray("user:secret").toBase64());
    }
}

TEST(Reply, fileThatCannotBeWrittenEndsItsDownload)
{
    RawServer server([](RawRequest const& request)
                     { return reply(200, QByteArray(request.target == "/long" ? 300'000 : 10, 'x')); });
    auto const connection = connectTo(server.url());
    Folder const folder;
    auto const refused = connection->downloadTo(path("/x"), folder.path("no/file"), 0ms).get();
    EXPECT_THAT(refused, IsNetworkError());
    EXPECT_EQ(server.requestCount(), 0);

    // As a full disk does.
    rlimit former = {};
    ::getrlimit(RLIMIT_FSIZE, &former);
    auto* const formerHandler = std::signal(SIGXFSZ, SIG_IGN);
    for (auto const& [target, room] : {std::pair("/long", 100'000U), std::pair("/short", 0U)})
    {
        rlimit const limit = {room, former.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limit);
        auto const answer = connection->downloadTo(path(target), folder.path("file"), 0ms).get();
        ::setrlimit(RLIMIT_FSIZE, &former);
        EXPECT_THAT(answer, IsNetworkError());
        EXPECT_LT(answer->errorCode(), 0);
        EXPECT_TRUE(answer->errorText().contains(QLatin1String("too large"))) << answer->errorText().toStdString();
        EXPECT_TRUE(folder.isEmpty()) << target;
    }
    std::signal(SIGXFSZ, formerHandler);
}

TEST(Reply, parserClassifiesReplies)
{
    RawServer server(
        [](RawRequest const& request) {
            return request.target == "/bad" ? reply(422) : request.target == "/lost" ? closeNow() : reply(201);
        });
    auto const connection = connectTo(server.url());
    auto const parser = connection->getErrorParser();
    auto const success = parser->parse(send(*connection));
    EXPECT_EQ(
        std::tuple(success.kind, success.code, success.httpStatus, success.message), std::tuple(0U, 0, 201, QString()));
    auto const refused = parser->parse(send(*connection, get("/bad")));
    EXPECT_EQ(
        std::tuple(refused.kind, refused.code, refused.httpStatus, refused.message),
        std::tuple(2U, 7, 422, QStringLiteral("message")));
    auto const lost = parser->parse(send(*connection, get("/lost")));
    EXPECT_EQ(std::tuple(lost.kind, lost.code, lost.httpStatus), std::tuple(1U, 0, 0));
    EXPECT_FALSE(lost.message.isEmpty());
    EXPECT_EQ(parser->parse(nullptr).kind, 1U);
}

} // namespace

} // namespace test
