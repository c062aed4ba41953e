// Whom the library believes to be the service. The certificates come from one authority, which this program trusts.
#include <array>

#include <arpa/inet.h>
#include <openssl/ssl.h>
#include <sys/socket.h>
#include <unistd.h>

#include "tests/rest/RestTestSupport.h"

namespace test
{

namespace
{

using namespace std::chrono_literals;

TlsOptions const good{TlsOptions::Signer::Authority};

TlsOptions named(char const* names)
{
    TlsOptions options = good;
    options.names = names;
    return options;
}

TlsOptions valid(std::chrono::hours from, std::chrono::hours until)
{
    TlsOptions options = good;
    options.validFrom = from;
    options.validUntil = until;
    return options;
}

TlsOptions speaking(int version)
{
    TlsOptions options = good;
    options.version = version;
    return options;
}

/// Whether a client that takes anything gets through to the server.
bool isServing(RawServer const& server)
{
    int const socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(server.port());
    bool const isConnected = ::connect(socket, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0;
    SSL_CTX* const context = SSL_CTX_new(TLS_client_method());
    SSL_CTX_set_security_level(context, 0);
    SSL_CTX_set_min_proto_version(context, TLS1_VERSION);
    SSL* const client = SSL_new(context);
    SSL_set_fd(client, socket);
    bool const isGreeted = isConnected && SSL_connect(client) == 1;
    SSL_free(client);
    SSL_CTX_free(context);
    ::close(socket);
    return isGreeted;
}

TEST(Tls, serverIsBelievedOnlyIfEverythingAboutItIsRight)
{
    struct
    {
        char const* what = nullptr;
        TlsOptions server;
        char const* refusal = nullptr; ///< null: accepted
    } const rows[] = {
        {"as it should be", good, nullptr},
        {"this and other names", named("DNS:other.example,IP:127.0.0.1"), nullptr},
        {"another name", named("DNS:other.example"), "subject name"},
        {"another address", named("IP:127.0.0.2"), "subject name"},
        {"expired", valid(-48h, -1h), "certificate has expired"},
        {"not yet valid", valid(1h, 24h), "certificate is not yet valid"},
        {"of no authority", {}, "self-signed certificate"},
        {"TLS 1.2", speaking(TLS1_2_VERSION), nullptr},
        // The server may be gone before its reason is read.
        {"TLS 1.1", speaking(TLS1_1_VERSION), "No secure connection"},
        {"TLS 1.0", speaking(TLS1_VERSION), "No secure connection"},
    };
    for (auto const& row : rows)
    {
        SCOPED_TRACE(row.what);
        RawServer const server({}, {true, {}, row.server});
        EXPECT_TRUE(isServing(server));
        auto const connection = connectTo(server.url());
        auto const answer = send(*connection, upload("x"));
        if (row.refusal == nullptr)
        {
            EXPECT_EQ(answer->httpStatusCode(), 200) << answer->errorText().toStdString();
            continue;
        }
        EXPECT_THAT(answer, IsNetworkError());
        EXPECT_THAT(answer->errorText().toStdString(), testing::HasSubstr(row.refusal));
        EXPECT_FALSE(saysMaybeProcessed(answer));
        EXPECT_EQ(server.requestCount(), 0);
    }
}

TEST(Tls, redirectsStayOnTheOrigin)
{
    RawServer const plain;
    RawServer const other({}, {true, {}, good});
    QByteArray location;
    RawServer const server(
        [&location](RawRequest const& request) {
            return request.target == "/x" ? reply(302, "{}", {{"Location", location}}) : reply(200);
        },
        {true, {}, good});
    QByteArray const port = QByteArray::number(server.port());
    struct
    {
        QByteArray location;
        int status = 302;
    } const rows[] = {
        {"/y", 200},
        {"https://127.0.0.1:" + port + "/y", 200},
        {plain.url().toEncoded() + "/y"},
        {"http://127.0.0.1:" + port + "/y"},
        {other.url().toEncoded() + "/y"},
        {"https://localhost:" + port + "/y"},
        {"//localhost:" + port + "/y"},
    };
    auto const connection = connectTo(server.url());
    int connections = 1;
    for (auto const& row : rows)
    {
        SCOPED_TRACE(row.location.toStdString());
        location = row.location;
        EXPECT_EQ(send(*connection)->httpStatusCode(), row.status);
        EXPECT_EQ(server.connectionCount(), connections);
    }
    EXPECT_EQ(plain.connectionCount() + other.connectionCount(), 0);
}

} // namespace

} // namespace test
