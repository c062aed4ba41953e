// Whom the library believes to be the service. The certificates come from one authority, which this program trusts.
#include <array>
#include <utility>

#include <QFile>
#include <QTemporaryDir>

#include <arpa/inet.h>
#include <openssl/ssl.h>
#include <sys/socket.h>
#include <unistd.h>

#include "tests/rest/RestTestSupport.h"
#include "tests/security/TrustedAuthority.h"
#include <testkit/Certificates.h>

namespace test
{

using namespace testkit;

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

/// The certificate that the server shows to a client that takes anything; empty if that one does not get through.
QByteArray certificateOf(RawServer const& server)
{
    int const socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<std::uint16_t>(server.port()));
    bool const isConnected = ::connect(socket, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0;
    SSL_CTX* const context = SSL_CTX_new(TLS_client_method());
    SSL_CTX_set_security_level(context, 0);
    SSL_CTX_set_min_proto_version(context, TLS1_VERSION);
    SSL* const client = SSL_new(context);
    SSL_set_fd(client, socket);
    bool const isGreeted = isConnected && SSL_connect(client) == 1;
    QByteArray const pem = isGreeted ? toPem(Certificate(SSL_get1_peer_certificate(client)).get()) : QByteArray();
    SSL_free(client);
    SSL_CTX_free(context);
    ::close(socket);
    return pem;
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
        {"another name", named("DNS:other.example"), "made out to another name."},
        {"another address", named("IP:127.0.0.2"), "made out to another name."},
        {"expired", valid(-48h, -1h), "it has expired."},
        {"not yet valid", valid(1h, 24h), "it is not yet valid"},
        {"of no authority", {}, "it is self-signed."},
        {"of an unknown authority", {TlsOptions::Signer::Stranger}, "that this system does not know."},
        {"TLS 1.2", speaking(TLS1_2_VERSION), nullptr},
        // The server may be gone before its reason is read.
        {"TLS 1.1", speaking(TLS1_1_VERSION), "No secure connection"},
        {"TLS 1.0", speaking(TLS1_VERSION), "No secure connection"},
    };
    int const reads = readsOfSystemAuthorities();
    for (auto const& row : rows)
    {
        SCOPED_TRACE(row.what);
        RawServer const server({}, {true, {}, row.server});
        EXPECT_FALSE(certificateOf(server).isEmpty());
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
    EXPECT_LE(readsOfSystemAuthorities() - reads, 1);
}

QString pemFile(
    QString const& path, std::initializer_list<TestAuthority const*> authorities, QByteArray const& end = {})
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    for (auto const* authority : authorities)
    {
        file.write(authority->pem());
    }
    file.write(end);
    return path;
}

TEST(Tls, certificatesOfOnesOwnCountOnTheirConnectionOnly)
{
    RawServer const ofSystem({}, {true, {}, good});
    RawServer const ofStranger({}, {true, {}, {TlsOptions::Signer::Stranger}});
    QTemporaryDir const folder;
    auto const* const known = &TestAuthority::instance();
    auto const* const stranger = &TestAuthority::stranger();
    QString const usual = pemFile(folder.filePath(u"usual.pem"_qs), {stranger});
    struct
    {
        QString file;
        char const* ofSystem = nullptr; ///< null: accepted
        char const* ofStranger = nullptr;
    } const rows[] = {
        {{}, nullptr, "that this system does not know."},
        {usual},
        {{}, nullptr, "that this system does not know."},
        {pemFile(folder.filePath(u"two.pem"_qs), {known, stranger})},
        {pemFile(folder.filePath(u"own.pem"_qs), {}, certificateOf(ofStranger))},
        {pemFile(folder.filePath(u"other.pem"_qs), {known}), nullptr, "that this system does not know."},
        {usual},
        {folder.filePath(u"none.pem"_qs), "none.pem cannot be used: No such file", "No such file"},
        {folder.path(), "cannot be used", "cannot be used"},
        {pemFile(folder.filePath(u"empty.pem"_qs), {}), "no certificate in PEM form", "no certificate"},
        {pemFile(folder.filePath(u"cut.pem"_qs), {stranger}, "-----BEGIN CERTIFICATE-----\nMII"), "damaged", "damaged"},
    };
    auto const toSystem = connectTo(ofSystem.url());
    auto const toStranger = connectTo(ofStranger.url());
    int answered = 0;
    for (auto const& row : rows)
    {
        SCOPED_TRACE(row.file.toStdString());
        for (auto const& [connection, refusal] :
             {std::pair(&toSystem, row.ofSystem), std::pair(&toStranger, row.ofStranger)})
        {
            (*connection)->setExtraCertificates(row.file);
            auto const answer = send(**connection);
            answered += answer->httpStatusCode() == 200 ? 1 : 0;
            EXPECT_EQ(answer->httpStatusCode() == 200, refusal == nullptr) << answer->errorText().toStdString();
            EXPECT_THAT(answer->errorText().toStdString(), testing::HasSubstr(refusal == nullptr ? "" : refusal));
        }
    }
    EXPECT_EQ(ofSystem.requestCount() + ofStranger.requestCount(), answered);
    // Kept connections are used again by those who trust the same certificates only.
    EXPECT_EQ(ofSystem.connectionCount(), 5);
    toStranger->setExtraCertificates(usual);
    int const reads = readsOfSystemAuthorities();
    int const connections = ofStranger.connectionCount();
    for (int count = 0; count < 10; ++count)
    {
        // One without a body goes out on a connection of its own.
        EXPECT_EQ(
            send(*toStranger, RequestDataCreator::makeRequest(HttpMethod::Post, path("/x")))->httpStatusCode(), 200);
    }
    EXPECT_EQ(ofStranger.connectionCount(), connections + 10);
    EXPECT_LE(readsOfSystemAuthorities() - reads, 1);
}

} // namespace

} // namespace test
