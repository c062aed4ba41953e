#include "simulator/Sockets.h"

#include <QDir>

#include <netinet/in.h>
#include <sys/socket.h>

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

} // namespace

void shutdownConnections(int localPort, std::optional<int> remotePort)
{
    for (auto const& name : QDir("/proc/self/fd").entryList(QDir::Files | QDir::System))
    {
        auto const descriptor = name.toInt();
        auto const peer = portOf(descriptor, ::getpeername);
        if (peer >= 0 && portOf(descriptor, ::getsockname) == localPort && remotePort.value_or(peer) == peer)
        {
            ::shutdown(descriptor, SHUT_RDWR);
        }
    }
}

} // namespace simulator
