#pragma once

#include <string>

#include <sys/types.h>

#include <QUrl>

namespace bench
{

/// A small HTTP/1.1 server in a process of its own, on a loopback port that the system chooses, so that every client
/// under comparison loads the same server and none shares its process. It answers each request with the same body and
/// keeps connections alive. It ends with its parent.
class LoadServer
{
public:
    /// Starts the server; call before the process has other threads.
    explicit LoadServer(std::string const& body);
    LoadServer(LoadServer const&) = delete;
    LoadServer& operator=(LoadServer const&) = delete;
    ~LoadServer();

    QUrl url() const;

private:
    pid_t process_ = -1;
    int port_ = 0;
};

} // namespace bench
