#include "benchmarks/LoadServer.h"

#include <array>
#include <csignal>
#include <cstdlib>
#include <map>
#include <string_view>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/epoll.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace bench
{

namespace
{

int listenOnLoopback(int& port)
{
    int const listener = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* const generic = reinterpret_cast<sockaddr*>(&address);
    if (listener < 0 || ::bind(listener, generic, size) != 0 || ::listen(listener, 64) != 0
        || ::getsockname(listener, generic, &size) != 0)
    {
        std::abort();
    }
    port = ntohs(address.sin_port);
    return listener;
}

void watch(int poller, int socket)
{
    epoll_event event{};
    event.events = EPOLLIN;
    event.data.fd = socket;
    ::epoll_ctl(poller, EPOLL_CTL_ADD, socket, &event);
}

/// Answers every complete request in `input`; false once the peer is gone.
bool answer(int socket, std::string& input, std::string const& reply)
{
    std::array<char, 65536> buffer{};
    ssize_t const count = ::recv(socket, buffer.data(), buffer.size(), 0);
    if (count <= 0)
    {
        return false;
    }
    input.append(buffer.data(), static_cast<std::size_t>(count));
    for (auto end = input.find("\r\n\r\n"); end != std::string::npos; end = input.find("\r\n\r\n"))
    {
        input.erase(0, end + 4);
        if (::send(socket, reply.data(), reply.size(), MSG_NOSIGNAL) != static_cast<ssize_t>(reply.size()))
        {
            return false;
        }
    }
    return true;
}

[[noreturn]] void serve(int listener, std::string const& reply)
{
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    int const poller = ::epoll_create1(0);
    watch(poller, listener);
    std::map<int, std::string> inputs;
    std::array<epoll_event, 64> events{};
    for (;;)
    {
        int const count = ::epoll_wait(poller, events.data(), static_cast<int>(events.size()), -1);
        for (int index = 0; index < count; ++index)
        {
            int const socket = events.at(static_cast<std::size_t>(index)).data.fd;
            if (socket == listener)
            {
                int const client = ::accept(listener, nullptr, nullptr);
                int const on = 1;
                ::setsockopt(client, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
                watch(poller, client);
            }
            else if (!answer(socket, inputs[socket], reply))
            {
                inputs.erase(socket);
                ::close(socket);
            }
        }
    }
}

} // namespace

LoadServer::LoadServer(std::string const& body)
{
    int const listener = listenOnLoopback(port_);
    std::string const reply = "HTTP/1.1 200 OK\r\nContent-Type: application/json\r\nContent-Length: "
                              + std::to_string(body.size()) + "\r\n\r\n" + body;
    process_ = ::fork();
    if (process_ == 0)
    {
        serve(listener, reply);
    }
    ::close(listener);
}

LoadServer::~LoadServer()
{
    ::kill(process_, SIGKILL);
    ::waitpid(process_, nullptr, 0);
}

QUrl LoadServer::url() const
{
    return QUrl(QStringLiteral("http://127.0.0.1:%1").arg(port_));
}

} // namespace bench
