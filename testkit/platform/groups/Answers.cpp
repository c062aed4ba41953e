// What answers are taken for, and which are none.
#include <QJsonArray>

#include "testkit/platform/Exchanges.h"
#include "testkit/platform/Rows.h"

namespace platformcheck
{

namespace
{

// [1,[]]
QByteArray const gzippedArray = QByteArray::fromHex("1f8b08000000000002038b36d4898e8d0500261708db06000000");
HeaderList const gzipped = {{"Content-Encoding", "gzip"}};
QByteArray const chunkedHead = "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n";
QByteArray const body = "{\"a\":1}";

struct Answer
{
    char const* what = nullptr;
    Action action;
    int status = 200;
    QByteArray document = {}; ///< empty: none
};

template <std::size_t count>
void requireReadable(Answer const (&answers)[count])
{
    for (Answer const& answer : answers)
    {
        doing(answer.what);
        RawServer const server([&answer](RawRequest const&) { return answer.action; });
        auto const connection = connectTo(server.url());
        for (int repeat = 0; repeat < 2; ++repeat)
        {
            auto const reply = send(*connection);
            requireStatus(reply, answer.status);
            requireEqual("the document", compact(reply), answer.document);
            bool const isSuccess = answer.status / 100 == 2;
            requireEqual("the error code", reply->errorCode(), isSuccess ? 0 : answer.status);
            requireEqual("that there is no error text", reply->errorText().isEmpty(), isSuccess);
        }
    }
}

void documentsAndStatusAreKept()
{
    HeaderList const html = {{"Content-Type", "text/html"}};
    Answer const answers[] = {
        {"an object", reply(200, body), 200, body},
        {"an array of another type", reply(201, "[1,2]", {{"Content-Type", "text/plain"}}), 201, "[1,2]"},
        {"no content", rawReply("HTTP/1.1 204 No Content\r\n\r\n"), 204},
        {"an empty body", reply(200, "")},
        {"a page", reply(200, "<html>gone</html>", html)},
        {"an error with a document", reply(400, "[{\"Code\":\"17\"}]"), 400, "[{\"Code\":\"17\"}]"},
        {"an error page", reply(404, "<html>gone</html>", html), 404},
        {"an error without a body", reply(503, ""), 503},
        {"a status 304", reply(304, ""), 304},
    };
    requireReadable(answers);
}

void framingsAreUnderstood()
{
    QByteArray const large = "{\"a\":\"" + QByteArray(300'000, 'x') + "\"}";
    Answer const answers[] = {
        {"chunks", rawReply(chunkedHead + "2\r\n[1\r\n1\r\n]\r\n0\r\n\r\n"), 200, "[1]"},
        {"HTTP/1.0 up to the end of the connection", rawReply("HTTP/1.0 200 OK\r\n\r\n" + body).thenClose(), 200, body},
        {"gzip", reply(200, gzippedArray, gzipped), 200, "[1,[]]"},
        {"slices", reply(200, large).inSlices(70'000, 0ms), 200, large},
    };
    requireReadable(answers);
}

void interimAnswersArePassedOver()
{
    QByteArray const conflict = reply(409, body).bytes;
    Answer const answers[] = {
        {"status 100 before the answer", rawReply("HTTP/1.1 100 Continue\r\n\r\n" + conflict), 409, body},
        {"status 103 before the answer",
         rawReply("HTTP/1.1 103 Early Hints\r\nLink: </a>; rel=preload\r\n\r\n" + conflict), 409, body},
    };
    requireReadable(answers);
}

struct BrokenAnswer
{
    char const* what = nullptr;
    Action action;
};

template <std::size_t count>
void requireNetworkErrorOf(BrokenAnswer const (&answers)[count])
{
    for (auto const& [what, action] : answers)
    {
        doing(what);
        RawServer const server([answer = action](RawRequest const&) { return answer; });
        auto const connection = connectTo(server.url());
        requireNetworkError(send(*connection));
        doing(text(what, ", of a download"));
        auto const downloaded = download(*connection);
        requireNetworkError(downloaded);
        require(downloaded->body().isEmpty(), "the part that was received is handed out");
    }
}

void shortBodyIsAnError()
{
    BrokenAnswer const answers[] = {
        {"one byte less than Content-Length", reply(200, body).truncatedBy(1)},
        {"one byte less of an error's body", reply(500, body).truncatedBy(1)},
        {"a reset in the body", reply(200, body).truncatedBy(1).thenReset()},
        {"a reset of a body without a length", rawReply("HTTP/1.1 200 OK\r\n\r\n{}").thenReset()},
    };
    requireNetworkErrorOf(answers);
}

void cutChunksAreAnError()
{
    BrokenAnswer const answers[] = {
        {"a chunk cut short", rawReply(chunkedHead + "7\r\n{\"a").thenClose()},
        {"the last chunk missing", rawReply(chunkedHead + "7\r\n{\"a\":1}\r\n").thenClose()},
        {"a chunk size that is no number", rawReply(chunkedHead + "zz\r\n{}\r\n0\r\n\r\n")},
    };
    requireNetworkErrorOf(answers);
}

void spoiltCompressionIsAnError()
{
    BrokenAnswer const answers[] = {
        {"a body that is not gzip", reply(200, "this is not gzip", gzipped)},
        {"gzip cut short", reply(200, gzippedArray.chopped(10), gzipped)},
        {"gzip without the end of its checksum", reply(200, gzippedArray.chopped(1), gzipped)},
        {"gzip with a wrong checksum", reply(200, gzippedArray.chopped(8) + QByteArray(8, 'x'), gzipped)},
    };
    requireNetworkErrorOf(answers);
}

void spoiltHeadIsAnError()
{
    BrokenAnswer const answers[] = {
        {"no answer", closeNow()},
        {"a status line cut short", reply(200, body).truncatedTo(10)},
        {"a head cut short", reply(200, body).truncatedTo(30)},
        {"a head without its last line", rawReply("HTTP/1.1 204 No Content\r\nA: b\r\n").thenClose()},
        {"an interim answer and the end", rawReply("HTTP/1.1 103 Early Hints\r\nA: b\r\n\r\n").thenClose()},
        {"another protocol", rawReply("SSH-2.0-x\r\n\r\n").thenClose()},
        {"a status of two digits", rawReply("HTTP/2 20\r\nContent-Length: 2\r\n\r\n{}")},
    };
    requireNetworkErrorOf(answers);
}

void endlessHeadIsAnError()
{
    BrokenAnswer const answers[] = {
        {"headers without end", rawReply("HTTP/1.1 200 OK\r\n").thenRepeat("X-A: " + QByteArray(1000, 'y') + "\r\n")},
        {"a header without end", rawReply("HTTP/1.1 200 OK\r\nX-A: ").thenRepeat(QByteArray(1000, 'y'))},
        {"interim answers without end", rawReply("").thenRepeat("HTTP/1.1 100 Continue\r\n\r\n")},
    };
    requireNetworkErrorOf(answers);
}

/// Nothing to be done without a limit that the host can set.
template <class Connection>
void requireLimit(Connection& connection)
{
    if constexpr (requires { connection.setReplySizeLimit(qint64(1)); })
    {
        constexpr qint64 size = 1'000'000;
        for (char const* const target : {"/plain", "/deflated"})
        {
            doing(text("a reply of 1000000 bytes, ", target));
            connection.setReplySizeLimit(size);
            requireStatus(send(connection, get(target)), 200);
            connection.setReplySizeLimit(size - 1);
            requireNetworkError(send(connection, get(target)));
        }
        doing("a reply without end");
        requireNetworkError(send(connection, get("/endless")));
    }
    else
    {
        notOffered("rest::Connection has no setReplySizeLimit(qint64)");
    }
}

void sizeLimitIsKept()
{
    QByteArray const raw(1'000'000, ' ');
    QByteArray const deflated = qCompress(raw).mid(4);
    RawServer const server(
        [&](RawRequest const& request)
        {
            return request.target == "/plain"      ? reply(200, raw)
                   : request.target == "/deflated" ? reply(200, deflated, {{"Content-Encoding", "deflate"}})
                                                   : rawReply("HTTP/1.1 200 OK\r\n\r\n").thenRepeat(raw);
        });
    requireLimit(*connectTo(server.url()));
}

void downloadsGiveBytes()
{
    QByteArray const content = QByteArray("\0\x89PNG", 5).repeated(50'000);
    RawServer const server(
        [&content](RawRequest const& request) {
            return request.target == "/logo" ? reply(200, content, {{"Content-Type", "image/png"}})
                                             : reply(404, "gone");
        });
    auto const connection = connectTo(server.url());
    auto const logo = download(*connection, "/logo");
    requireStatus(logo, 200);
    require(logo->body() == content, "the bytes differ from those that were sent");
    auto const missing = download(*connection, "/other");
    requireStatus(missing, 404);
    requireEqual("an error's body", missing->body(), "gone");
    requireEqual("its Authorization", server.requests().front().header("Authorization"), authorization);
}

void parserTellsTheKind()
{
    RawServer const server(
        [](RawRequest const& request) {
            return request.target == "/bad" ? reply(422) : request.target == "/lost" ? closeNow() : reply(201);
        });
    auto const connection = connectTo(server.url());
    auto const parser = connection->getErrorParser();
    struct
    {
        char const* target;
        quint32 kind;
        int code;
        int httpStatus;
        QString message;
    } const answers[] = {{"/good", 0, 0, 201, {}}, {"/bad", 2, 7, 422, QStringLiteral("message")}};
    for (auto const& answer : answers)
    {
        doing(text("status ", answer.httpStatus));
        auto const status = parser->parse(send(*connection, get(answer.target)));
        requireEqual("kind", status.kind, answer.kind);
        requireEqual("code", status.code, answer.code);
        requireEqual("httpStatus", status.httpStatus, answer.httpStatus);
        requireEqual("message", status.message, answer.message);
    }
    doing("no answer");
    auto const noReply = send(*connection, get("/lost"));
    require(noReply->errorCode() != 0, "the reply's error code is 0");
    auto const lost = parser->parse(noReply);
    requireEqual("kind", lost.kind, 1U);
    requireEqual("code", lost.code, 0);
    requireEqual("httpStatus", lost.httpStatus, 0);
    require(!lost.message.isEmpty(), "there is no message");
    doing("no reply at all");
    requireEqual("kind", parser->parse(nullptr).kind, 1U);
}

constexpr Row answersRows[] = {
    {"documentsAndStatusAreKept", "Every HTTP answer keeps its status and document, which is empty if it is no JSON.",
     documentsAndStatusAreKept},
    {"framingsAreUnderstood", "Chunks, gzip, HTTP/1.0 and answers in pieces are read.", framingsAreUnderstood},
    {"interimAnswersArePassedOver", "Status 100 and 103 before an answer do not replace it.",
     interimAnswersArePassedOver},
    {"shortBodyIsAnError", "A body that ends before its Content-Length is a network error, never a success.",
     shortBodyIsAnError},
    {"cutChunksAreAnError", "So is a chunked body without its end.", cutChunksAreAnError},
    {"spoiltCompressionIsAnError", "So is a compressed body that is cut short or spoilt.", spoiltCompressionIsAnError},
    {"spoiltHeadIsAnError", "So is an answer without a complete head.", spoiltHeadIsAnError},
    {"endlessHeadIsAnError", "So is an answer whose head has no end, and soon.", endlessHeadIsAnError},
    {"sizeLimitIsKept", "A reply above the host's limit, counted decompressed, ends as a network error.",
     sizeLimitIsKept},
    {"downloadsGiveBytes", "downloadBinary() hands out the bytes, and an error's status and body.", downloadsGiveBytes},
    {"parserTellsTheKind", "Status kind: 0 success, 1 no usable answer, 2 any other; the parser's code and message.",
     parserTellsTheKind},
};

} // namespace

constinit Group const answers = {"answers", answersRows};

} // namespace platformcheck
