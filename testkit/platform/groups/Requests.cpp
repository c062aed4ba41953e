// What goes over the wire.
#include <QJsonObject>

#include "testkit/platform/Exchanges.h"
#include "testkit/platform/Rows.h"

namespace platformcheck
{

namespace
{

struct Join
{
    char const* base;
    char const* relative;
    char const* target;
};

template <std::size_t count>
void requireTargets(Join const (&joins)[count])
{
    RawServer const server;
    for (Join const& join : joins)
    {
        doing(text("base \"", join.base, "\", relative \"", join.relative, "\""));
        auto const connection = connectTo(server.url(QLatin1String(join.base)));
        requireStatus(send(*connection, get(join.relative)), 200);
        requireEqual("the target", server.requests().back().target, join.target);
    }
}

void urlsAreJoined()
{
    constexpr Join joins[] = {
        {"", "Orders/x", "/Orders/x"},
        {"/", "/Installations/x", "/Installations/x"},
        {"/api/v1", "Orders/x", "/api/v1/Orders/x"},
        {"/api/v1", "/Installations/x", "/api/v1/Installations/x"},
        {"/api/v1//", "Orders/x?a=b%2Fc&d=1.0", "/api/v1/Orders/x?a=b%2Fc&d=1.0"},
        {"/api/v1?key=1", "", "/api/v1?key=1"},
        {"", "", "/"},
        {"/a", "?q=1", "/a/?q=1"},
    };
    requireTargets(joins);
}

void oddUrlsStayBelowTheBase()
{
    constexpr Join joins[] = {
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
    requireTargets(joins);
}

void unusableUrlsSendNothing()
{
    RawServer const server;
    auto const connection = connectTo(server.url());
    doing("a relative URL that is no URL");
    requireNetworkError(send(*connection, get("http://[bad")));
    QByteArray const authority = server.url().authority().toLatin1();
    for (QByteArray const& base :
         {QByteArray("file:///etc/hostname"), "ftp://" + authority + "/", "gopher://" + authority + "/_x",
          QByteArray("data:,x"), "//" + authority + "/x", authority, QByteArray("/relative"), QByteArray("http://"),
          QByteArray()})
    {
        doing(text("base ", base));
        connection->initialize(relative(base), {}, {}, {});
        require(!connection->isConnected(), "isConnected() returns true");
        requireNetworkError(send(*connection));
    }
    doing("after all of them");
    requireEqual("the number of connections to the server", server.connectionCount(), 0);
}

void closedConnectionSendsNothing()
{
    RawServer const server;
    auto const connection = connectTo(server.url());
    require(connection->isConnected(), "isConnected() returns false after initialize()");
    connection->closeConnection();
    require(!connection->isConnected(), "isConnected() returns true after closeConnection()");
    requireNetworkError(send(*connection));
    requireNetworkError(download(*connection));
    requireEqual("the number of connections to the server", server.connectionCount(), 0);
    doing("never initialised");
    auto const fresh = makeConnection(1h);
    require(!fresh->isConnected(), "isConnected() returns true");
    requireNetworkError(send(*fresh));
    doing("initialised again");
    connection->initialize(server.url(), {}, {}, {});
    requireStatus(send(*connection), 200);
}

void bodiesArriveAsTheyAre()
{
    RawServer const server([](RawRequest const&) { return reply(200, "{}", {{"Set-Cookie", "a=b"}}); });
    auto const connection = connectTo(server.url());
    QByteArray const bytes = QByteArray("\0\xff\r\n", 4).repeated(100'000);
    struct
    {
        rest::HttpRequestData data;
        char const* method;
        QByteArray body;
        char const* type;
    } const calls[] = {
        {get(), "GET", {}, nullptr},
        {writeJson(), "POST", "{\"a\":1}", "application/json"},
        {write(HttpMethod::Put, bytes), "PUT", bytes, "application/octet-stream"},
        {write(HttpMethod::Post, {}), "POST", {}, nullptr},
        {rest::RequestDataCreator::makeRequest(HttpMethod::Put, relative("/x")), "PUT", {}, nullptr},
    };
    for (auto const& call : calls)
    {
        doing(text(call.method, " of ", call.body.size(), " bytes"));
        requireStatus(send(*connection, call.data), 200);
        auto const seen = server.requests().back();
        requireEqual("the method", seen.method, call.method);
        require(seen.body == call.body, text("the body has ", seen.body.size(), " bytes, or other ones"));
        require(seen.header("Cookie").isNull(), "a cookie is sent back");
        if (call.type != nullptr)
        {
            requireEqual("the type", seen.header("Content-Type"), call.type);
        }
        QByteArray const expectedLength = seen.method == "GET" ? QByteArray() : QByteArray::number(call.body.size());
        requireEqual("Content-Length", seen.header("Content-Length"), expectedLength);
    }
}

void credentialsGoAlongUnasked()
{
    RawServer const server;
    auto const connection = connectTo(server.url());
    auto const sent = [&](rest::HttpRequestData const& data)
    {
        requireStatus(send(*connection, data), 200);
        return server.requests().back().header("Authorization");
    };
    doing("user and password");
    requireEqual("Authorization", sent(get()), authorization);
    doing("a request that is not authenticated");
    auto const bare =
        rest::RequestDataCreator::makeRequestData(HttpMethod::Post, relative("/x"), QJsonObject(), 0ms, false);
    require(sent(bare).isNull(), "the credentials go along");
    doing("no user name");
    connection->initialize(server.url(), QString(), QStringLiteral("secret"), {});
    require(sent(get()).isNull(), "there is an Authorization");
    doing("letters beyond ASCII");
    connection->initialize(server.url(), QStringLiteral("\u00fc:"), QStringLiteral("\u20ac"), {});
    requireEqual("Authorization", sent(get()), "Basic " + QByteArray("\xc3\xbc::\xe2\x82\xac").toBase64());
    doing("user and password in the base URL");
    QUrl withUserInfo = server.url();
    withUserInfo.setUserInfo(QStringLiteral("url:password"));
    connection->initialize(withUserInfo, {}, {}, {});
    require(sent(get()).isNull(), "they are sent");
}

constexpr Row requestsRows[] = {
    {"urlsAreJoined", "Base and relative URL are joined by one slash; the query is the relative URL's.", urlsAreJoined},
    {"oddUrlsStayBelowTheBase", "A relative URL that looks like another address stays a path below the base.",
     oddUrlsStayBelowTheBase},
    {"unusableUrlsSendNothing", "A base that is not http or https, or no URL, ends every call as a network error.",
     unusableUrlsSendNothing},
    {"closedConnectionSendsNothing", "Between closeConnection() and initialize() calls end as network errors.",
     closedConnectionSendsNothing},
    {"bodiesArriveAsTheyAre", "Bodies arrive with their type and length; no cookie is kept.", bodiesArriveAsTheyAre},
    {"credentialsGoAlongUnasked", "User and password go along as Basic authentication, unless switched off.",
     credentialsGoAlongUnasked},
};

} // namespace

constinit Group const requests = {"requests", requestsRows};

} // namespace platformcheck
