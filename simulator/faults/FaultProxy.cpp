#include "simulator/faults/FaultProxy.h"

#include "simulator/Http.h"
#include "simulator/faults/FaultText.h"
#include "simulator/faults/FindByName.h"
#include "simulator/faults/ProxiedConnection.h"
#include "simulator/faults/ToxicKinds.h"

#include <algorithm>
#include <stdexcept>

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

#include <testkit/ServerSocket.h>

namespace simulator::faults
{

namespace
{

constexpr char const* upstreamName = "upstream";
constexpr char const* downstreamName = "downstream";

constexpr Member members[] = {
    {"Type", Kind::Text, true, {}, "one of the toxics listed below"},
    optional("Stream", Kind::Text, "upstream (from the client) or downstream", downstreamName),
    optional("Toxicity", Kind::Any, "the probability, from 0 to 1, with which a connection is struck; 1 unless given"),
    optional("Attributes", Kind::Any, "an object; those of the toxic"),
};

[[noreturn]] void refuse(QString const& what)
{
    throw Refusal(Reason::BadValue, what);
}

Direction directionOf(QString const& name)
{
    if (name != QLatin1String(upstreamName) && name != QLatin1String(downstreamName))
    {
        refuse("Stream: " + oneOf(name, {upstreamName, downstreamName}));
    }
    return name == QLatin1String(upstreamName) ? Direction::Upstream : Direction::Downstream;
}

} // namespace

Schema const toxicMembers = members;

ToxicSettings ToxicSettings::fromText(QString const& text)
{
    return fromJson(FaultText(text).toToxic());
}

ToxicSettings ToxicSettings::fromJson(QJsonObject const& json)
{
    ToxicSettings settings;
    auto const type = json["Type"].toString();
    settings.kind = findToxicKind(type);
    if (settings.kind == nullptr)
    {
        refuse("Type: " + oneOf(type, namesOf(toxicKinds())));
    }
    check(members, json);
    settings.direction = directionOf(json["Stream"].toString(downstreamName));
    settings.toxicity = json.contains("Toxicity") ? json["Toxicity"].toDouble(-1) : 1;
    auto const byChance = settings.kind->make != nullptr;
    if (!(settings.toxicity >= 0 && settings.toxicity <= 1) || (!byChance && settings.toxicity != 1))
    {
        refuse(byChance ? "Toxicity: from 0 to 1" : "Toxicity: " + type + " is never left to chance");
    }
    auto const given = json["Attributes"].toObject();
    check(settings.kind->attributes, given);
    auto const attributes = completed(settings.kind->attributes, given);
    for (auto const& name : attributes.keys())
    {
        settings.attributes[name] = attributes[name].toInteger();
    }
    return settings;
}

FaultProxy::FaultProxy(int upstreamPort, quint64 seed, int port, QByteArray address)
    : upstreamPort_(upstreamPort),
      seed_(seed),
      address_(std::move(address)),
      port_(port),
      listener_(testkit::listenOnLoopback(port_, SOCK_NONBLOCK, address_.constData())),
      wakeEvent_(::eventfd(0, EFD_CLOEXEC)),
      random_(seed),
      acceptor_([this] { acceptLoop(); })
{
}

FaultProxy::~FaultProxy()
{
    isStopping_ = true;
    ::eventfd_write(wakeEvent_, 1);
    acceptor_.join();
    {
        std::lock_guard const lock(mutex_);
        stopListening();
        for (auto const& connection : connections_)
        {
            connection->end(false);
        }
    }
    // Their threads still ask for the toxics, which takes the mutex.
    connections_.clear();
    ::close(wakeEvent_);
}

std::shared_ptr<ToxicInForce const> FaultProxy::add(QString const& text)
{
    return add(ToxicSettings::fromText(text));
}

std::shared_ptr<ToxicInForce const> FaultProxy::add(ToxicSettings const& settings)
{
    std::lock_guard const lock(mutex_);
    auto toxic = std::make_shared<ToxicInForce>(settings, ++lastId_);
    toxics_.push_back(toxic);
    ++generation_;
    if (settings.kind->make == nullptr)
    {
        ++toxic->fired;
        stopListening();
        for (auto const& connection : connections_)
        {
            toxic->fired += connection->end(true) ? 1 : 0;
        }
    }
    return toxic;
}

void FaultProxy::clear()
{
    removeIf([](ToxicInForce const&) { return true; });
}

bool FaultProxy::remove(int id)
{
    return removeIf([id](ToxicInForce const& toxic) { return toxic.id == id; });
}

bool FaultProxy::removeIf(std::function<bool(ToxicInForce const&)> const& isMeant)
{
    std::lock_guard const lock(mutex_);
    auto const isOver = [&isMeant](auto const& toxic)
    {
        toxic->isRemoved = isMeant(*toxic);
        return toxic->isRemoved.load();
    };
    auto const count = std::erase_if(toxics_, isOver);
    ++generation_;
    for (auto const& connection : connections_)
    {
        connection->wake();
    }
    auto const isDown = std::any_of(
        toxics_.begin(), toxics_.end(), [](auto const& toxic) { return toxic->settings.kind->make == nullptr; });
    if (listener_ < 0 && !isStopping_ && !isDown)
    {
        listener_ = testkit::listenOnLoopback(port_, SOCK_NONBLOCK, address_.constData());
        ::eventfd_write(wakeEvent_, 1);
    }
    return count > 0;
}

QJsonArray FaultProxy::toJson() const
{
    QJsonArray array;
    std::lock_guard const lock(mutex_);
    for (auto const& toxic : toxics_)
    {
        auto const& settings = toxic->settings;
        QJsonObject attributes;
        for (auto const& name : settings.attributes.keys())
        {
            attributes[name] = settings.attributes[name];
        }
        array.append(QJsonObject{
            {"Id", toxic->id},
            {"Type", settings.kind->name},
            {"Stream", settings.direction == Direction::Upstream ? upstreamName : downstreamName},
            {"Toxicity", settings.toxicity},
            {"Attributes", attributes},
            {"Fired", toxic->fired.load()}});
    }
    return array;
}

int FaultProxy::acceptedCount() const
{
    std::lock_guard const lock(mutex_);
    return accepted_;
}

int FaultProxy::openCount() const
{
    std::lock_guard const lock(mutex_);
    auto const open = std::count_if(
        connections_.begin(), connections_.end(), [](auto const& connection) { return !connection->isFinished(); });
    return static_cast<int>(open);
}

void FaultProxy::acceptLoop()
{
    while (!isStopping_)
    {
        std::unique_lock lock(mutex_);
        pollfd waited[] = {{wakeEvent_, POLLIN, 0}, {listener_, POLLIN, 0}};
        lock.unlock();
        ::poll(waited, 2, -1);
        if (waited[0].revents != 0)
        {
            eventfd_t count = 0;
            ::eventfd_read(wakeEvent_, &count);
        }
        lock.lock();
        acceptOne();
    }
}

void FaultProxy::acceptOne()
{
    connections_.remove_if([](auto const& connection) { return connection->isFinished(); });
    auto const client = listener_ < 0 ? -1 : ::accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
    if (client >= 0)
    {
        ++accepted_;
        int const on = 1;
        ::setsockopt(client, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
        connections_.push_back(std::make_unique<ProxiedConnection>(*this, client, upstreamPort_));
    }
}

void FaultProxy::stopListening()
{
    if (listener_ >= 0)
    {
        // Closing alone leaves it listening as long as the acceptor still waits for it.
        ::shutdown(listener_, SHUT_RDWR);
        ::close(listener_);
        listener_ = -1;
        ::eventfd_write(wakeEvent_, 1);
    }
}

FaultProxy::Toxics FaultProxy::toxicsOf(Direction direction) const
{
    std::lock_guard const lock(mutex_);
    Toxics chosen;
    std::copy_if(
        toxics_.begin(), toxics_.end(), std::back_inserter(chosen),
        [direction](auto const& toxic) { return toxic->settings.direction == direction; });
    return chosen;
}

qint64 FaultProxy::random(qint64 low, qint64 high)
{
    std::lock_guard const lock(randomMutex_);
    return std::uniform_int_distribution(low, high)(random_);
}

bool FaultProxy::strikes(double toxicity)
{
    std::lock_guard const lock(randomMutex_);
    return std::bernoulli_distribution(toxicity)(random_);
}

} // namespace simulator::faults
