#pragma once

#include <deque>
#include <vector>

#include <sys/socket.h>
#include <sys/un.h>

#include <QByteArray>

namespace fuzz
{

/// A server that lives in the thread of its client, on a socket that only this machine knows, and answers as a script
/// says. In the script stand, between the bytes that are sent:
///   |next|   what follows answers the next request
///   |close|  the same, and the connection ends here
///   |pause|  what follows is sent when the client has taken what came before
///   |more|   what came since the last mark is sent 64 times
/// The connection ends with the script, and when the client has a request open that nothing more is going to answer.
class ScriptedServer
{
public:
    explicit ScriptedServer(QByteArray const& script);
    ScriptedServer(ScriptedServer const&) = delete;
    ScriptedServer& operator=(ScriptedServer const&) = delete;
    ~ScriptedServer();

    /// Where it listens.
    sockaddr_un const& address() const { return address_; }

    socklen_t addressSize() const { return addressSize_; }

    /// Does what can be done without waiting.
    void serve();
    /// What was received on all connections.
    QByteArray const& received() const { return received_; }

    /// How often `serve` has found nothing to do since there was something.
    int idleRounds() const { return idleRounds_; }

private:
    enum class After : int
    {
        NextRequest,
        Close,
        Pause
    };
    struct Piece
    {
        QByteArray bytes;
        After after = After::Close;
    };
    struct Connection
    {
        int socket = -1;
        QByteArray received;
        qsizetype requests = 0;
        QByteArray unsent;
        After after = After::NextRequest;
    };

    void listen();
    void accept();
    void read(Connection& connection);
    void send(Connection& connection);
    void sendNextPiece(Connection& connection);
    void close(Connection& connection);

    int const listener_;
    sockaddr_un address_{};
    socklen_t addressSize_ = sizeof address_;
    std::deque<Piece> pieces_;
    std::vector<Connection> connections_;
    QByteArray received_;
    bool isIdle_ = false;
    int idleRounds_ = 0;
};

} // namespace fuzz
