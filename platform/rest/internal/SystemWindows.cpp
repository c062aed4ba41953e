#include <platform/rest/internal/System.h>

#include <algorithm>
#include <limits>

#include <winsock2.h>
#include <ws2tcpip.h>

#include <io.h>

namespace rest::system
{

std::thread startThread(std::function<void()> run)
{
    return std::thread(std::move(run));
}

std::chrono::nanoseconds sinceBoot()
{
    return std::chrono::milliseconds(::GetTickCount64());
}

curl_socket_t openSocket(curl_sockaddr const& address)
{
    return ::WSASocketW(
        address.family, address.socktype, address.protocol, nullptr, 0,
        WSA_FLAG_OVERLAPPED | WSA_FLAG_NO_HANDLE_INHERIT);
}

int closeSocket(curl_socket_t socket)
{
    return ::closesocket(socket);
}

long localPortOf(curl_socket_t socket)
{
    sockaddr_storage address{};
    int size = sizeof address;
    if (::getsockname(socket, reinterpret_cast<sockaddr*>(&address), &size) != 0)
    {
        return 0;
    }
    switch (address.ss_family)
    {
    case AF_INET:
        return ntohs(reinterpret_cast<sockaddr_in const&>(address).sin_port);
    case AF_INET6:
        return ntohs(reinterpret_cast<sockaddr_in6 const&>(address).sin6_port);
    default:
        return 0;
    }
}

bool isSilent(curl_socket_t socket)
{
    // libcurl's sockets do not block.
    char byte = 0;
    return ::recv(socket, &byte, 1, MSG_PEEK) < 0 && ::WSAGetLastError() == WSAEWOULDBLOCK;
}

void limitUnacknowledged(curl_socket_t socket, std::chrono::milliseconds duration)
{
    // TCP_MAXRT, which not every compiler's headers know.
    constexpr int longestRetransmission = 5;
    auto const seconds = static_cast<DWORD>(std::chrono::ceil<std::chrono::seconds>(duration).count());
    ::setsockopt(socket, IPPROTO_TCP, longestRetransmission, reinterpret_cast<char const*>(&seconds), sizeof seconds);
}

qint64 readAt(QFile const& file, qint64 offset, char* buffer, qint64 size)
{
    auto* const handle = reinterpret_cast<HANDLE>(::_get_osfhandle(file.handle()));
    OVERLAPPED place{};
    place.Offset = static_cast<DWORD>(offset);
    place.OffsetHigh = static_cast<DWORD>(offset >> 32);
    auto const wanted = static_cast<DWORD>(std::min<qint64>(size, std::numeric_limits<int>::max()));
    DWORD count = 0;
    if (::ReadFile(handle, buffer, wanted, &count, &place) == 0)
    {
        return ::GetLastError() == ERROR_HANDLE_EOF ? 0 : -1;
    }
    return count;
}

} // namespace rest::system
