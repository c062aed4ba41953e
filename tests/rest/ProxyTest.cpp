// Which proxy a request goes through.
#include <QNetworkProxy>

#include <platform/rest/internal/Calls.h>
#include <platform/rest/internal/TransferLoop.h>

#include "tests/rest/RestTestSupport.h"

namespace test
{

namespace
{

class ProxyEnvironment
{
public:
    ProxyEnvironment(QByteArray const& proxy, QByteArray const& exempt)
    {
        qputenv("all_proxy", proxy);
        qputenv("NO_PROXY", exempt);
    }

    ProxyEnvironment(ProxyEnvironment const&) = delete;
    ProxyEnvironment& operator=(ProxyEnvironment const&) = delete;

    ~ProxyEnvironment()
    {
        qunsetenv("all_proxy");
        qunsetenv("NO_PROXY");
    }
};

TEST(Proxy, systemProxyIsUsedOnlyWithAutoDiscovery)
{
    RawServer proxy(
        [](RawRequest const& request)
        {
            bool const isUnknown = request.header("Proxy-Authorization").isEmpty();
            return reply(isUnknown ? 407 : request.method == "CONNECT" ? 403 : 200);
        });
    RawServer server;
    QUrl address = proxy.url();
    address.setUserInfo(QStringLiteral("pu:pp"));
    ProxyEnvironment const environment(
        address.toEncoded().mid(QByteArrayView("http://").size()), "pass.invalid,.direct.invalid");

    auto const connection = connectTo(QUrl(QStringLiteral("http://kelo.invalid/api")));
    EXPECT_THAT(send(*connection), IsNetworkError());
    EXPECT_EQ(proxy.connectionCount(), 0);

    connection->setUseProxyAutoDiscovery(true);
    EXPECT_EQ(send(*connection)->httpStatusCode(), 200);
    ASSERT_EQ(proxy.requestCount(), 1);
    EXPECT_EQ(proxy.requests()[0].target, "http://kelo.invalid/api/x");
    EXPECT_EQ(proxy.requests()[0].header("Proxy-Authorization"), "Basic " + QByteArray("pu:pp").toBase64());

    connection->initialize(QUrl(QStringLiteral("https://kelo.invalid/api")), {}, {}, {});
    auto const refused = send(*connection, upload("x"));
    EXPECT_THAT(refused, IsNetworkError());
    EXPECT_FALSE(saysMaybeProcessed(refused));
    EXPECT_THAT(
        refused->errorText().toStdString(),
        testing::MatchesRegex("The proxy 127.0.0.1:[0-9]+ made no connection to kelo.invalid .HTTP status 403.[.]"));
    EXPECT_EQ(proxy.requests().back().method, "CONNECT");

    ProxyEnvironment const unknown(proxy.url().toEncoded(), "pass.invalid,.direct.invalid");
    struct
    {
        char const* url = nullptr;
        char const* refusal = nullptr;
    } const rows[] = {
        {"http://other.invalid/", "it asks for a user name and a password"},
        {"https://other.invalid/", "it asks for a user name and a password"},
        {"http://pass.invalid/", "could not be resolved"},
        {"https://one.direct.invalid/", "could not be resolved"},
    };
    for (auto const& row : rows)
    {
        SCOPED_TRACE(row.url);
        connection->initialize(QUrl(QString::fromLatin1(row.url)), {}, {}, {});
        auto const answer = send(*connection, upload("x"));
        EXPECT_THAT(answer, IsNetworkError());
        EXPECT_THAT(answer->errorText().toStdString(), testing::HasSubstr(row.refusal));
        EXPECT_FALSE(saysMaybeProcessed(answer));
    }

    connection->initialize(server.url(), {}, {}, {});
    int const before = proxy.requestCount();
    EXPECT_EQ(send(*connection)->httpStatusCode(), 200);
    EXPECT_EQ(server.requestCount(), 1);
    EXPECT_EQ(proxy.requestCount(), before);
}

// The system's answer about proxies may take for ever.
TEST(Proxy, slowLookUpHoldsUpItsOwnCallsOnlyAndNotForEver)
{
    RawServer server;
    rest::TransferLoop loop([](QByteArray const&, QUrl const&) {});
    auto const add = [&](bool usesSystemProxies, std::chrono::milliseconds timeout)
    {
        rest::Request request;
        request.url = server.url(QStringLiteral("/x")).toEncoded();
        request.origin = rest::originOf(server.url());
        request.timeout = timeout;
        request.replySizeLimit = 1000;
        request.usesSystemProxies = usesSystemProxies;
        loop.add(std::make_shared<rest::JsonCall>(nullptr, std::move(request)));
    };
    add(true, 300ms);
    add(false, 20s);
    std::vector<rest::Outcome> outcomes;
    while (outcomes.size() < 2)
    {
        loop.perform();
        if (auto finished = loop.takeFinished())
        {
            outcomes.push_back(std::move(finished->outcome));
            continue;
        }
        loop.sleep(std::nullopt);
    }
    EXPECT_EQ(outcomes[0].httpStatus, 200);
    EXPECT_EQ(outcomes[1].httpStatus, 0);
    EXPECT_TRUE(outcomes[1].errorText.contains(QLatin1String("was not sent")));
    EXPECT_EQ(server.requestCount(), 1);
}

} // namespace

} // namespace test
