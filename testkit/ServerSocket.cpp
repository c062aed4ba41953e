#include <testkit/ServerSocket.h>

#include <array>
#include <stdexcept>
#include <string>
#include <utility>

#include <arpa/inet.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <testkit/Certificates.h>

namespace testkit
{

int listenOnLoopback(int& port, int flags, char const* otherAddress)
{
    int const listener = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | flags, 0);
    int const on = 1;
    ::setsockopt(listener, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = otherAddress == nullptr ? htonl(INADDR_LOOPBACK) : ::inet_addr(otherAddress);
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    socklen_t length = sizeof address;
    auto* const generic = reinterpret_cast<sockaddr*>(&address);
    if (::bind(listener, generic, length) != 0 || ::listen(listener, SOMAXCONN) != 0
        || ::getsockname(listener, generic, &length) != 0)
    {
        ::close(listener);
        throw std::runtime_error("cannot listen on port " + std::to_string(port));
    }
    port = ntohs(address.sin_port);
    return listener;
}

void resetOnClose(int socket)
{
    linger const atOnce{1, 0};
    ::setsockopt(socket, SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
}

ServerTls::ServerTls(TlsOptions const& options) : context_(SSL_CTX_new(TLS_server_method()))
{
    Key const key = makeKey();
    Certificate const certificate = makeCertificate(options, key.get());
    if (options.version != 0)
    {
        // The old ones need what OpenSSL has switched off.
        SSL_CTX_set_security_level(context_, 0);
        SSL_CTX_set_min_proto_version(context_, options.version);
        SSL_CTX_set_max_proto_version(context_, options.version);
    }
    if (SSL_CTX_use_certificate(context_, certificate.get()) != 1 || SSL_CTX_use_PrivateKey(context_, key.get()) != 1)
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
    testkit::resetOnClose(socket_);
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

} // namespace testkit
