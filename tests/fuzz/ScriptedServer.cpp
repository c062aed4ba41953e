#include "tests/fuzz/ScriptedServer.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <optional>
#include <utility>

#include <unistd.h>

#include "tests/fuzz/Fuzzing.h"

namespace fuzz
{

namespace
{

constexpr int longestBacklog = 16;
constexpr qsizetype repetitions = 64;
constexpr qsizetype longestPiece = qsizetype(512) * 1024;
// So often must the client have found nothing new before it counts as waiting.
constexpr int patience = 3;

} // namespace

ScriptedServer::ScriptedServer(QByteArray const& script)
    : listener_(socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0))
{
    listen();
    struct Mark
    {
        QByteArrayView text;
        std::optional<After> after = std::nullopt;
    };
    static Mark const marks[] = {
        {"|next|", After::NextRequest}, {"|close|", After::Close}, {"|pause|", After::Pause}, {"|more|"}};

    Piece piece;
    qsizetype repeatable = 0;
    for (QByteArrayView rest = script; !rest.empty();)
    {
        auto const* const mark = std::find_if(
            std::begin(marks), std::end(marks), [rest](Mark const& each) { return rest.startsWith(each.text); });
        if (mark == std::end(marks))
        {
            piece.bytes += rest.front();
            rest = rest.sliced(1);
            continue;
        }
        rest = rest.sliced(mark->text.size());
        if (mark->after)
        {
            piece.after = *mark->after;
            pieces_.push_back(std::exchange(piece, {}));
        }
        else
        {
            QByteArray const again = piece.bytes.sliced(repeatable);
            piece.bytes += again.repeated(std::min(repetitions - 1, longestPiece / (again.size() + 1)));
        }
        repeatable = piece.bytes.size();
    }
    pieces_.push_back(std::move(piece));
}

ScriptedServer::~ScriptedServer()
{
    for (Connection& connection : connections_)
    {
        close(connection);
    }
    ::close(listener_);
}

void ScriptedServer::listen()
{
    // A name of which only the family is given becomes a free one outside of the file system.
    address_.sun_family = AF_UNIX;
    auto* const name = reinterpret_cast<sockaddr*>(&address_);
    require(
        bind(listener_, name, sizeof address_.sun_family) == 0 && ::listen(listener_, longestBacklog) == 0
            && getsockname(listener_, name, &addressSize_) == 0,
        "a server can be started");
}

void ScriptedServer::accept()
{
    for (int socket = 0; (socket = accept4(listener_, nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC)) != -1;)
    {
        connections_.emplace_back().socket = socket;
        isIdle_ = false;
    }
}

void ScriptedServer::serve()
{
    isIdle_ = true;
    accept();
    for (Connection& connection : connections_)
    {
        if (connection.socket != -1)
        {
            read(connection);
            send(connection);
        }
    }
    idleRounds_ = isIdle_ ? idleRounds_ + 1 : 0;
}

void ScriptedServer::read(Connection& connection)
{
    std::array<char, 16384> buffer{};
    ssize_t size = 0;
    while ((size = recv(connection.socket, buffer.data(), buffer.size(), 0)) > 0)
    {
        isIdle_ = false;
        connection.received.append(buffer.data(), size);
        received_.append(buffer.data(), size);
    }
    if (size == 0)
    {
        close(connection);
        return;
    }
    // The bodies that the client sends hold no empty line.
    if (auto const requests = connection.received.count("\r\n\r\n"); requests > connection.requests)
    {
        connection.requests = requests;
        sendNextPiece(connection);
    }
}

void ScriptedServer::sendNextPiece(Connection& connection)
{
    Piece piece;
    if (!pieces_.empty())
    {
        piece = std::move(pieces_.front());
        pieces_.pop_front();
    }
    connection.unsent += piece.bytes;
    connection.after = piece.after;
    isIdle_ = false;
}

void ScriptedServer::send(Connection& connection)
{
    if (connection.socket == -1)
    {
        return;
    }
    if (!connection.unsent.isEmpty())
    {
        auto const count = static_cast<std::size_t>(connection.unsent.size());
        ssize_t const sent = ::send(connection.socket, connection.unsent.constData(), count, MSG_NOSIGNAL);
        if (sent > 0)
        {
            isIdle_ = false;
            connection.unsent.remove(0, sent);
            return;
        }
    }
    bool const isClientWaiting = idleRounds_ >= patience && connection.requests > 0;
    bool const isAllSent = connection.unsent.isEmpty();
    if (isAllSent && connection.after == After::Pause && isClientWaiting)
    {
        sendNextPiece(connection);
    }
    else if ((isAllSent && connection.after == After::Close) || isClientWaiting)
    {
        close(connection);
    }
}

void ScriptedServer::close(Connection& connection)
{
    if (connection.socket != -1)
    {
        ::close(connection.socket);
        connection.socket = -1;
        isIdle_ = false;
    }
}

} // namespace fuzz
