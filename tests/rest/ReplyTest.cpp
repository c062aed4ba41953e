// What replies hold, and what goes into files.
#include <csignal>
#include <thread>

#include <sys/resource.h>

#include "tests/rest/RestTestSupport.h"
#include <testkit/Waiting.h>

namespace test
{

namespace
{

// [1,[]]
QByteArray const gzippedArray = QByteArray::fromHex("1f8b08000000000002038b36d4898e8d0500261708db06000000");

HeaderList const gzipped = {{"Content-Encoding", "gzip"}};

TEST(Reply, textIsWhatWasReceivedWithRoomBehindIt)
{
    QByteArray const large = "{\"a\":\"" + QByteArray(300000, 'x') + "\"}";
    std::pair<Action, QByteArray> const cases[] = {
        {reply(200, "{\"a\":1}"), "{\"a\":1}"},
        {reply(200, "<html>", {{"Content-Type", "text/html"}}), "<html>"},
        {reply(200, ""), ""},
        {rawReply("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n2\r\n[1\r\n1\r\n]\r\n0\r\n\r\n"), "[1]"},
        {reply(200, gzippedArray, gzipped), "[1,[]]"},
        {reply(200, large).inSlices(70000, 0ms), large},
    };
    for (auto const& [action, expected] : cases)
    {
        RawServer server([answer = action](RawRequest const&) { return answer; });
        auto const answer = send(*connectTo(server.url()));
        QByteArray const& text = answer->text();
        EXPECT_TRUE(text == expected) << text.left(40).toStdString();
        EXPECT_EQ(answer->body(), QJsonDocument::fromJson(text));
        EXPECT_TRUE(text.isEmpty() || text.capacity() - text.size() >= rest::replyPadding);
        EXPECT_TRUE(server.requests().front().header("Accept-Encoding").contains("gzip"));
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

TEST(Reply, fileIsChangedOnlyByACompleteAnswer)
{
    QByteArray const content(1'000'000, ' ');
    QByteArray const deflated = qCompress(content).mid(4);
    HeaderList const encoding = {{"Content-Encoding", "deflate"}};
    struct
    {
        char const* what;
        Action action;
        int status; ///< 0: a network error
        QByteArray body;
    } const cases[] = {
        {"complete", reply(200, content), 200, {}},
        {"compressed", reply(200, deflated, encoding), 200, {}},
        {"an error", reply(404, "gone"), 404, "gone"},
        {"short", reply(200, content).truncatedBy(1), 0, {}},
        {"compressed and short", reply(200, deflated.chopped(1), encoding), 0, {}},
        {"chunk missing",
         rawReply("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n1\r\nx\r\n").thenClose(),
         0,
         {}},
        {"given up", reply(200, content).holdingBack(1), -1, {}},
    };
    for (auto const& row : cases)
    {
        SCOPED_TRACE(row.what);
        RawServer server([&row](RawRequest const&) { return row.action; });
        auto const connection = connectTo(server.url());
        // What is not held in memory is not limited.
        connection->setReplySizeLimit(1000);
        Folder const folder;
        folder.write("file", "former");
        auto const stored = connection->downloadTo(path("/x"), folder.path("file"), 0ms);
        if (row.status < 0)
        {
            ASSERT_TRUE(server.waitForHeld(1));
            stored.cancel();
            EXPECT_TRUE(comesTrue([&folder] { return folder.count() == 1; }));
        }
        else
        {
            EXPECT_EQ(stored.get()->httpStatusCode(), row.status);
            EXPECT_EQ(stored.get()->body(), row.body);
        }
        EXPECT_TRUE(folder.read("file") == (row.status == 200 ? content : QByteArray("former")));
        EXPECT_EQ(folder.count(), 1);
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

} // namespace

} // namespace test
