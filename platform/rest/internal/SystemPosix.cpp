#include <platform/rest/internal/System.h>

#include <cerrno>
#include <csignal>
#include <ctime>

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

namespace rest::system
{

namespace
{

class SignalsBlocked
{
public:
    SignalsBlocked()
    {
        sigset_t blocked;
        sigfillset(&blocked);
        for (int const fault : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT, SIGTRAP, SIGSYS})
        {
            sigdelset(&blocked, fault);
        }
        pthread_sigmask(SIG_SETMASK, &blocked, &former_);
    }

    SignalsBlocked(SignalsBlocked const&) = delete;
    SignalsBlocked& operator=(SignalsBlocked const&) = delete;

    ~SignalsBlocked() { pthread_sigmask(SIG_SETMASK, &former_, nullptr); }

private:
    sigset_t former_{};
};

} // namespace

std::thread startThread(std::function<void()> run)
{
    SignalsBlocked const inheritedByTheThread;
    return std::thread(std::move(run));
}

std::chrono::nanoseconds sinceBoot()
{
#ifdef CLOCK_BOOTTIME
    constexpr clockid_t clock = CLOCK_BOOTTIME;
#else
    // There it goes on while the machine sleeps.
    constexpr clockid_t clock = CLOCK_MONOTONIC;
#endif
    timespec time{};
    ::clock_gettime(clock, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

curl_socket_t openSocket(curl_sockaddr const& address)
{
#ifdef SOCK_CLOEXEC
    return ::socket(address.family, address.socktype | SOCK_CLOEXEC, address.protocol);
#else
    int const socket = ::socket(address.family, address.socktype, address.protocol);
    if (socket >= 0)
    {
        ::fcntl(socket, F_SETFD, FD_CLOEXEC);
    }
    return socket;
#endif
}

int closeSocket(curl_socket_t socket)
{
    return ::close(socket);
}

long localPortOf(curl_socket_t socket)
{
    sockaddr_storage address{};
    socklen_t size = sizeof address;
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
    char byte = 0;
    return ::recv(socket, &byte, 1, MSG_PEEK | MSG_DONTWAIT) < 0 && (errno == EAGAIN || errno == EWOULDBLOCK);
}

void limitUnacknowledged(curl_socket_t socket, std::chrono::milliseconds duration)
{
#if defined(TCP_USER_TIMEOUT)
    auto const milliseconds = static_cast<unsigned>(duration.count());
    ::setsockopt(socket, IPPROTO_TCP, TCP_USER_TIMEOUT, &milliseconds, sizeof milliseconds);
#elif defined(TCP_RXT_CONNDROPTIME)
    auto const seconds = static_cast<int>(std::chrono::ceil<std::chrono::seconds>(duration).count());
    ::setsockopt(socket, IPPROTO_TCP, TCP_RXT_CONNDROPTIME, &seconds, sizeof seconds);
#endif
}

qint64 readAt(QFile const& file, qint64 offset, char* buffer, qint64 size)
{
    ssize_t count = 0;
    do
    {
        count = ::pread(file.handle(), buffer, static_cast<std::size_t>(size), offset);
    } while (count < 0 && errno == EINTR);
    return count;
}

} // namespace rest::system
