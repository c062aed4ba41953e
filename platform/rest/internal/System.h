#pragma once

#include <chrono>
#include <functional>
#include <thread>

#include <QFile>

#include <curl/curl.h>

/// What operating systems do differently; `SystemPosix.cpp` and `SystemWindows.cpp` do it.
namespace rest::system
{

/// Starts a thread that leaves all signals to the host's threads, except those that a fault of its own raises; throws
/// what `std::thread` does.
std::thread startThread(std::function<void()> run);

/// The time since the machine was started, its sleep included.
std::chrono::nanoseconds sinceBoot();

/// A socket that processes which the host starts do not inherit; `CURL_SOCKET_BAD` if there is none to be had.
curl_socket_t openSocket(curl_sockaddr const& address);
/// 0 on success, as libcurl wants to know it.
int closeSocket(curl_socket_t socket);
/// 0 while it is not connected.
long localPortOf(curl_socket_t socket);
/// True when the socket stands and nothing waits there to be read, not even the end of the connection.
bool isSilent(curl_socket_t socket);
/// Ends the connection when what was sent is not acknowledged in that time, where the system can do so.
void limitUnacknowledged(curl_socket_t socket, std::chrono::milliseconds duration);

/// Reads once at that offset, without moving the file's own position: the number of bytes, 0 at its end, -1 for an
/// error.
qint64 readAt(QFile const& file, qint64 offset, char* buffer, qint64 size);

} // namespace rest::system
