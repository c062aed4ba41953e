#pragma once

#include "simulator/faults/FaultProxy.h"

#include <condition_variable>

namespace simulator::faults
{

/// One connection through a proxy: two sockets, two directions, a thread each. Ends when the client closes, a toxic or
/// the proxy says so.
class ProxiedConnection
{
public:
    /// Takes the client's socket over.
    ProxiedConnection(FaultProxy& proxy, int client, int upstreamPort);
    ProxiedConnection(ProxiedConnection const&) = delete;
    ProxiedConnection& operator=(ProxiedConnection const&) = delete;
    ~ProxiedConnection();

    /// Makes both directions end soon; with `byReset`, both peers get a TCP reset. False if that was done before.
    bool end(bool byReset);
    bool isFinished() const { return isFinished_; }
    /// Something that a paused toxic waits for may have changed.
    void wake();

private:
    class Link;

    void run(int upstreamPort);
    /// Waits until the socket is ready for `events`; false when the connection is to end.
    bool waitFor(int socket, short events) const;
    bool sendAll(int socket, QByteArray const& bytes) const;

    FaultProxy& proxy_;
    int const client_;
    int server_ = -1;
    int const endEvent_;
    std::atomic<bool> isEnded_ = false;
    std::atomic<bool> endsByReset_ = false;
    std::atomic<bool> isFinished_ = false;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::thread thread_;
};

} // namespace simulator::faults
