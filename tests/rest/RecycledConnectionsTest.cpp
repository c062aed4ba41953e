// A server that closes its connections after some requests, as every deployment does, against many writes at once.
#include <QSet>

#include "tests/rest/RestTestSupport.h"
#include "tests/support/Nginx.h"

namespace test
{

namespace
{

TEST(RecycledConnection, failsNoWriteAndItsSessionGoesOn)
{
    constexpr int count = 10'000;
    for (bool const tls : {false, true})
    {
        Nginx nginx({.keepaliveRequests = 50, .logFormat = "$connection_requests $ssl_session_reused $request_body"});
        nginx.serve(QStringLiteral("/x"), "{}");
        auto const connection = connectTo(tls ? nginx.tlsUrl() : nginx.url());
        connection->disableCertificateChecking();
        std::vector<rest::FutureJsonReply> calls;
        calls.reserve(count);
        for (int id = 0; id < count; ++id)
        {
            calls.push_back(connection->request(
                RequestDataCreator::makeRequest(HttpMethod::Post, path("/read/x"), QByteArray::number(id), 0ms)));
        }
        for (rest::FutureJsonReply const& call : calls)
        {
            ASSERT_EQ(call.get()->httpStatusCode(), 200) << call.get()->errorText().toStdString();
        }
        QList<QByteArray> const log = nginx.end();
        QSet<QByteArray> ids;
        int connections = 0;
        int resumed = 0;
        for (QByteArray const& line : log)
        {
            QList<QByteArray> const words = line.split(' ');
            ids.insert(words.last());
            connections += words.first() == "1" ? 1 : 0;
            resumed += words.first() == "1" && words[1] == "r" ? 1 : 0;
        }
        EXPECT_EQ(log.size(), count);
        EXPECT_EQ(ids.size(), count);
        EXPECT_LE(connections, count / 50 + 10);
        // Those that are made at the same time, as the first ones are, have no session to go on with.
        EXPECT_GE(resumed, tls ? connections / 2 : 0);
    }
}

} // namespace

} // namespace test
