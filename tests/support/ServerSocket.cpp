#include "tests/support/ServerSocket.h"

#include <array>
#include <stdexcept>
#include <utility>

#include <openssl/evp.h>
#include <openssl/x509v3.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace test
{

namespace
{

void addSubjectNames(X509* certificate)
{
    X509V3_CTX context;
    X509V3_set_ctx_nodb(&context);
    X509V3_set_ctx(&context, certificate, certificate, nullptr, nullptr, 0);
    X509_EXTENSION* const names =
        X509V3_EXT_conf_nid(nullptr, &context, NID_subject_alt_name, "IP:127.0.0.1,DNS:localhost");
    X509_add_ext(certificate, names, -1);
    X509_EXTENSION_free(names);
}

X509* selfSigned(EVP_PKEY* key)
{
    X509* const certificate = X509_new();
    X509_set_version(certificate, 2);
    ASN1_INTEGER_set(X509_get_serialNumber(certificate), 1);
    X509_gmtime_adj(X509_getm_notBefore(certificate), -3600);
    X509_gmtime_adj(X509_getm_notAfter(certificate), 86400);
    X509_set_pubkey(certificate, key);
    X509_NAME* const name = X509_get_subject_name(certificate);
    static constexpr std::array<unsigned char, 10> commonName = {"127.0.0.1"};
    X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_ASC, commonName.data(), -1, -1, 0);
    X509_set_issuer_name(certificate, name);
    addSubjectNames(certificate);
    X509_sign(certificate, key, EVP_sha256());
    return certificate;
}

} // namespace

ServerTls::ServerTls() : context_(SSL_CTX_new(TLS_server_method()))
{
    EVP_PKEY* const key = EVP_EC_gen("P-256");
    X509* const certificate = selfSigned(key);
    bool const usable =
        SSL_CTX_use_certificate(context_, certificate) == 1 && SSL_CTX_use_PrivateKey(context_, key) == 1;
    X509_free(certificate);
    EVP_PKEY_free(key);
    if (!usable)
    {
        throw std::runtime_error("No certificate could be made for the test server");
    }
}

ServerTls::~ServerTls()
{
    SSL_CTX_free(context_);
}

SSL* ServerTls::accept(int socket) const
{
    SSL* const ssl = SSL_new(context_);
    SSL_set_fd(ssl, socket);
    if (SSL_accept(ssl) == 1)
    {
        return ssl;
    }
    SSL_free(ssl);
    return nullptr;
}

ServerSocket::ServerSocket(int socket) : socket_(socket) {}

ServerSocket::~ServerSocket()
{
    close();
}

bool ServerSocket::startTls(ServerTls const& tls)
{
    ssl_ = tls.accept(socket_);
    return ssl_ != nullptr;
}

bool ServerSocket::readSome(QByteArray& buffer)
{
    std::array<char, 65536> chunk{};
    auto const count = ssl_ != nullptr ? SSL_read(ssl_, chunk.data(), static_cast<int>(chunk.size()))
                                       : static_cast<int>(::recv(socket_, chunk.data(), chunk.size(), 0));
    if (count <= 0)
    {
        return false;
    }
    buffer.append(chunk.data(), count);
    return true;
}

bool ServerSocket::writeAll(QByteArray const& bytes)
{
    qsizetype written = 0;
    while (written < bytes.size())
    {
        auto const missing = static_cast<std::size_t>(bytes.size() - written);
        auto const count = ssl_ != nullptr ? SSL_write(ssl_, bytes.constData() + written, static_cast<int>(missing))
                                           : ::send(socket_, bytes.constData() + written, missing, MSG_NOSIGNAL);
        if (count <= 0)
        {
            return false;
        }
        written += count;
    }
    return true;
}

bool ServerSocket::waitForCloseOr(int event)
{
    std::array<pollfd, 2> watched = {pollfd{socket_, POLLRDHUP, 0}, pollfd{event, POLLIN, 0}};
    ::poll(watched.data(), watched.size(), -1);
    return watched[0].revents != 0;
}

void ServerSocket::resetOnClose()
{
    linger const option{1, 0};
    ::setsockopt(socket_, SOL_SOCKET, SO_LINGER, &option, sizeof option);
}

void ServerSocket::shutDown()
{
    if (socket_ >= 0)
    {
        ::shutdown(socket_, SHUT_RDWR);
    }
}

void ServerSocket::close()
{
    SSL_free(std::exchange(ssl_, nullptr));
    if (int const socket = std::exchange(socket_, -1); socket >= 0)
    {
        ::close(socket);
    }
}

} // namespace test
