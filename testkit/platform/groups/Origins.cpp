// Where a request may go.
#include "testkit/platform/Exchanges.h"
#include "testkit/platform/Rows.h"

namespace platformcheck
{

namespace
{

Action redirectTo(QByteArray const& location, int status = 302)
{
    return reply(status, "{}", {{"Location", location}});
}

/// "/3" leads to "/2" and so on, "/0" answers.
Action countDown(RawRequest const& request)
{
    int const number = request.target.mid(1).toInt();
    return number == 0 ? reply(200, "[]") : redirectTo("/" + QByteArray::number(number - 1));
}

void readsFollowOnTheSameOrigin()
{
    for (bool const tls : {false, true})
    {
        QByteArray absolute;
        RawServer const server(
            [&absolute](RawRequest const& request)
            { return request.target == "/absolute" ? redirectTo(absolute) : countDown(request); },
            {tls, {}});
        absolute = server.url(QStringLiteral("/0")).toEncoded();
        auto const connection = carelesslyConnectTo(server);
        doing(tls ? "a redirect to an absolute URL, TLS" : "a redirect to an absolute URL");
        requireStatus(send(*connection, get("/absolute")), 200);
        doing("five redirects");
        requireStatus(send(*connection, get("/5")), 200);
        requireEqual("the last Authorization", server.requests().back().header("Authorization"), authorization);
        doing("six redirects");
        requireStatus(send(*connection, get("/6")), 302);
    }
}

void otherOriginsAreNotFollowed()
{
    RawServer const other;
    RawServer const otherTls({}, {true, {}});
    for (bool const tls : {false, true})
    {
        QByteArray location;
        RawServer const server([&location](RawRequest const&) { return redirectTo(location, 307); }, {tls, {}});
        QByteArray const port = QByteArray::number(server.port());
        QByteArray const own = tls ? "https:" : "http:";
        QByteArray const foreign = tls ? "http:" : "https:";
        auto const connection = carelesslyConnectTo(server);
        for (QByteArray const& target :
             {other.url(QStringLiteral("/y")).toEncoded(), otherTls.url(QStringLiteral("/y")).toEncoded(),
              own + "//localhost:" + port + "/y", "//localhost:" + port + "/y", foreign + "//127.0.0.1:" + port + "/y",
              QByteArray("file:///etc/hostname")})
        {
            location = target;
            doing(text(tls ? "TLS, redirect to " : "redirect to ", target));
            int const before = server.connectionCount();
            requireStatus(send(*connection), 307);
            require(other.connectionCount() + otherTls.connectionCount() == 0, "the other server is called");
            require(server.connectionCount() <= before + 1, "it is followed");
        }
        requireEqual("the number of requests", server.requestCount(), 6);
    }
}

void credentialsStayOnTheOrigin()
{
    RawServer const other;
    QByteArray const address = other.url(QStringLiteral("/stolen")).toEncoded();
    for (int const status : {301, 302, 303, 307, 308})
    {
        RawServer const server([&](RawRequest const&) { return redirectTo(address, status); });
        doing(text("redirect by status ", status));
        auto const connection = connectTo(server.url());
        for (auto const& data : {get(), writeJson()})
        {
            connection->request(data).waitFor(patience());
        }
        for (RawRequest const& request : other.requests())
        {
            require(request.header("Authorization").isNull(), "another origin gets user and password");
        }
    }
}

void writesAreNotRedirected()
{
    for (int const status : {301, 302, 303, 307, 308})
    {
        RawServer const server([status](RawRequest const& request)
                               { return request.target == "/x" ? redirectTo("/0", status) : reply(200); });
        auto const connection = connectTo(server.url());
        for (auto const& data : {write(HttpMethod::Put, "x"), write(HttpMethod::Post, {}), writeJson()})
        {
            doing(text("redirect of a write by status ", status));
            requireStatus(send(*connection, data), status);
        }
        requireEqual("the number of requests", server.requestCount(), 3);
    }
}

void certificatesAreChecked()
{
    RawServer const server({}, {true, {}});
    auto const connection = connectTo(server.url());
    doing("a certificate that nobody has signed");
    requireNetworkError(send(*connection, write(HttpMethod::Put, "x")));
    requireEqual("the number of requests", server.requestCount(), 0);
    doing("disableCertificateChecking()");
    requireStatus(send(*carelesslyConnectTo(server)), 200);
    doing("the connection that checks certificates, after another that does not");
    requireNetworkError(send(*connection));
    requireEqual("the number of requests", server.requestCount(), 1);
}

constexpr Row originsRows[] = {
    {"readsFollowOnTheSameOrigin", "A GET follows up to five redirects on its origin; a sixth is the answer.",
     readsFollowOnTheSameOrigin},
    {"otherOriginsAreNotFollowed", "A redirect to another scheme, host or port is not followed, but the answer.",
     otherOriginsAreNotFollowed},
    {"credentialsStayOnTheOrigin", "Whatever a server answers, no other origin gets the credentials.",
     credentialsStayOnTheOrigin},
    {"writesAreNotRedirected", "A redirect of a POST or PUT is not followed, but the answer.", writesAreNotRedirected},
    {"certificatesAreChecked", "A server's certificate is checked until the host says otherwise, per connection.",
     certificatesAreChecked},
};

} // namespace

constinit Group const origins = {"origins", originsRows};

} // namespace platformcheck
