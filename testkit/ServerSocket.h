#pragma once

#include <QByteArray>

#include <openssl/ssl.h>

#include <testkit/TlsOptions.h>

namespace testkit
{

/// A socket that listens on 127.0.0.1, or another IPv4 address if one is given, with port 0 on any free one, which then
/// is put in; `flags` as socket(2) takes them. The caller closes it. Throws std::runtime_error if the port cannot be
/// had.
int listenOnLoopback(int& port, int flags = 0, char const* otherAddress = nullptr);
/// Makes the coming close of a connection a TCP reset.
void resetOnClose(int socket);

/// The key, the certificate and the context of a TLS server.
class ServerTls
{
public:
    explicit ServerTls(TlsOptions const& options);
    ServerTls(ServerTls const&) = delete;
    ServerTls& operator=(ServerTls const&) = delete;
    ~ServerTls();

    /// Performs the handshake on a connected socket; null when it fails.
    SSL* accept(int socket) const;

private:
    SSL_CTX* context_;
};

/// One accepted connection, plain or TLS. Owns the socket.
class ServerSocket
{
public:
    explicit ServerSocket(int socket);
    ServerSocket(ServerSocket const&) = delete;
    ServerSocket& operator=(ServerSocket const&) = delete;
    ~ServerSocket();

    bool startTls(ServerTls const& tls);
    bool isResumed() const { return ssl_ != nullptr && SSL_session_reused(ssl_) == 1; }
    /// Appends what is there, waiting for at least one byte; false at the end of the connection.
    bool readSome(QByteArray& buffer);
    bool writeAll(QByteArray const& bytes);
    /// Waits until the client has closed the connection or `event` is readable; true in the first case.
    bool waitForCloseOr(int event);
    /// Makes the coming close a TCP reset.
    void resetOnClose();
    /// Ends all reading and writing of another thread. Not to be called while that thread closes.
    void shutDown();
    void close();

private:
    int socket_;
    SSL* ssl_ = nullptr;
};

} // namespace testkit
