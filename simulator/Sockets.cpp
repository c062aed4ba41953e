#include "simulator/Sockets.h"

#include <QDir>

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <vector>

namespace simulator
{

namespace
{

using AddressOf = int(int socket, sockaddr* address, socklen_t* size);

/// The port of one end of a descriptor; -1 when it is no IPv4 connection.
int portOf(int descriptor, AddressOf* addressOf)
{
    sockaddr_in address = {};
    socklen_t size = sizeof address;
    auto const result = addressOf(descriptor, reinterpret_cast<sockaddr*>(&address), &size);
    return result == 0 && address.sin_family == AF_INET ? ntohs(address.sin_port) : -1;
}

/// This process's connections that were accepted on the local port.
std::vector<int> connections(int localPort, std::optional<int> remotePort)
{
    std::vector<int> found;
    for (auto const& name : QDir("/proc/self/fd").entryList(QDir::Files | QDir::System))
    {
        auto const descriptor = name.toInt();
        auto const peer = portOf(descriptor, ::getpeername);
        if (peer >= 0 && portOf(descriptor, ::getsockname) == localPort && remotePort.value_or(peer) == peer)
        {
            found.push_back(descriptor);
        }
    }
    return found;
}

sockaddr_in loopbackAddress(int port)
{
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    return address;
}

} // namespace

void shutdownConnections(int localPort, std::optional<int> remotePort)
{
    for (auto const descriptor : connections(localPort, remotePort))
    {
        ::shutdown(descriptor, SHUT_RDWR);
    }
}

bool sendOnConnection(int localPort, int remotePort, QByteArray const& bytes)
{
    auto const found = connections(localPort, remotePort);
    qsizetype sent = 0;
    while (!found.empty() && sent < bytes.size())
    {
        auto const left = static_cast<std::size_t>(bytes.size() - sent);
        auto const count = ::send(found.front(), bytes.constData() + sent, left, MSG_NOSIGNAL);
        if (count <= 0)
        {
            return false;
        }
        sent += count;
    }
    return !found.empty();
}

int connectToLoopback(int port)
{
    auto const socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    auto const address = loopbackAddress(port);
    if (::connect(socket, reinterpret_cast<sockaddr const*>(&address), sizeof address) != 0)
    {
        ::close(socket);
        return -1;
    }
    int const yes = 1;
    ::setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &yes, sizeof yes);
    return socket;
}

} // namespace simulator
