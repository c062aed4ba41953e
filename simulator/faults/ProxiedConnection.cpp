#include "simulator/faults/ProxiedConnection.h"

#include "simulator/Sockets.h"

#include <algorithm>

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

#include <testkit/ServerSocket.h>

namespace simulator::faults
{

/// One direction: reads from one socket, sends to the other what the toxics let through.
class ProxiedConnection::Link
{
public:
    Link(ProxiedConnection& connection, Direction direction, int from, int to)
        : connection_(connection), direction_(direction), from_(from), to_(to)
    {
    }

    void run();

private:
    /// A toxic and what it does here; spared by chance, it does nothing.
    struct Station
    {
        std::shared_ptr<ToxicInForce> toxic;
        std::unique_ptr<Toxic> effect;
    };
    class StationFlow;

    void updateStations();
    bool passOn(std::size_t station, QByteArray const& bytes);
    void end();

    ProxiedConnection& connection_;
    Direction const direction_;
    int const from_;
    int const to_;
    int generation_ = -1;
    std::vector<Station> stations_;
};

/// The flow as the toxic at one station sees it.
class ProxiedConnection::Link::StationFlow final : public Flow
{
public:
    StationFlow(Link& link, std::size_t station) : link_(link), station_(station) {}

    bool forward(QByteArray const& bytes) override { return link_.passOn(station_ + 1, bytes); }

    bool pause(std::chrono::microseconds time) override
    {
        auto& connection = link_.connection_;
        std::unique_lock lock(connection.mutex_);
        return !connection.changed_.wait_for(lock, time, [this] { return isOver(); });
    }

    void hang() override
    {
        auto& connection = link_.connection_;
        std::unique_lock lock(connection.mutex_);
        connection.changed_.wait(lock, [this] { return isOver(); });
    }

    void close() override { link_.connection_.end(false); }
    void reset() override { link_.connection_.end(true); }
    void countFired() override { ++link_.stations_[station_].toxic->fired; }
    qint64 random(qint64 low, qint64 high) override { return link_.connection_.proxy_.random(low, high); }

private:
    bool isOver() const { return link_.connection_.isEnded_ || link_.stations_[station_].toxic->isRemoved; }

    Link& link_;
    std::size_t const station_;
};

void ProxiedConnection::Link::run()
{
    QByteArray buffer(qsizetype{64} * 1024, Qt::Uninitialized);
    while (connection_.waitFor(from_, POLLIN))
    {
        auto const count = ::recv(from_, buffer.data(), static_cast<std::size_t>(buffer.size()), MSG_DONTWAIT);
        if (count < 0 && (errno == EAGAIN || errno == EINTR))
        {
            continue;
        }
        if (count < 0)
        {
            connection_.end(true);
            return;
        }
        updateStations();
        if (count == 0)
        {
            end();
            return;
        }
        if (!passOn(0, buffer.left(count)))
        {
            connection_.end(false);
            return;
        }
    }
}

void ProxiedConnection::Link::updateStations()
{
    auto& proxy = connection_.proxy_;
    auto const generation = proxy.generation();
    if (generation == generation_)
    {
        return;
    }
    generation_ = generation;
    auto before = std::exchange(stations_, {});
    for (auto const& toxic : proxy.toxicsOf(direction_))
    {
        auto const known =
            std::find_if(before.begin(), before.end(), [&](Station const& station) { return station.toxic == toxic; });
        if (known != before.end())
        {
            stations_.push_back(std::move(*known));
            continue;
        }
        auto const& settings = toxic->settings;
        auto const struck = settings.kind->make != nullptr && proxy.strikes(settings.toxicity);
        stations_.push_back({toxic, struck ? settings.kind->make(settings.attributes) : nullptr});
    }
}

bool ProxiedConnection::Link::passOn(std::size_t station, QByteArray const& bytes)
{
    if (station == stations_.size())
    {
        return connection_.sendAll(to_, bytes);
    }
    auto& effect = stations_[station].effect;
    StationFlow flow(*this, station);
    return effect ? effect->pass(bytes, flow) : passOn(station + 1, bytes);
}

void ProxiedConnection::Link::end()
{
    for (std::size_t station = 0; station < stations_.size(); ++station)
    {
        if (auto& effect = stations_[station].effect)
        {
            StationFlow flow(*this, station);
            effect->atEnd(flow);
        }
    }
    // A client that has gone needs no answer. One that the server has left may still be sending; closing now would take
    // the end of the answer from it.
    if (direction_ == Direction::Upstream)
    {
        connection_.end(false);
        return;
    }
    ::shutdown(to_, SHUT_WR);
}

ProxiedConnection::ProxiedConnection(FaultProxy& proxy, int client, int upstreamPort)
    : proxy_(proxy),
      client_(client),
      endEvent_(::eventfd(0, EFD_CLOEXEC)),
      thread_([this, upstreamPort] { run(upstreamPort); })
{
}

ProxiedConnection::~ProxiedConnection()
{
    thread_.join();
    ::close(endEvent_);
}

bool ProxiedConnection::end(bool byReset)
{
    {
        std::lock_guard const lock(mutex_);
        if (isEnded_)
        {
            return false;
        }
        endsByReset_ = byReset;
        isEnded_ = true;
    }
    ::eventfd_write(endEvent_, 1);
    changed_.notify_all();
    return true;
}

void ProxiedConnection::wake()
{
    std::lock_guard const lock(mutex_);
    changed_.notify_all();
}

void ProxiedConnection::run(int upstreamPort)
{
    server_ = connectToLoopback(upstreamPort);
    if (server_ >= 0)
    {
        Link upstream(*this, Direction::Upstream, client_, server_);
        Link downstream(*this, Direction::Downstream, server_, client_);
        std::thread answers([&downstream] { downstream.run(); });
        upstream.run();
        answers.join();
    }
    for (auto const socket : {client_, server_})
    {
        if (socket >= 0)
        {
            if (endsByReset_ || server_ < 0)
            {
                testkit::resetOnClose(socket);
            }
            ::close(socket);
        }
    }
    isFinished_ = true;
}

bool ProxiedConnection::waitFor(int socket, short events) const
{
    pollfd sockets[] = {{socket, events, 0}, {endEvent_, POLLIN, 0}};
    while (!isEnded_)
    {
        if (::poll(sockets, 2, -1) > 0 && sockets[0].revents != 0)
        {
            return !isEnded_;
        }
    }
    return false;
}

bool ProxiedConnection::sendAll(int socket, QByteArray const& bytes) const
{
    qsizetype sent = 0;
    while (sent < bytes.size())
    {
        if (!waitFor(socket, POLLOUT))
        {
            return false;
        }
        auto const left = static_cast<std::size_t>(bytes.size() - sent);
        auto const count = ::send(socket, bytes.constData() + sent, left, MSG_DONTWAIT | MSG_NOSIGNAL);
        if (count < 0 && errno != EAGAIN && errno != EINTR)
        {
            return false;
        }
        sent += std::max<ssize_t>(count, 0);
    }
    return true;
}

} // namespace simulator::faults
