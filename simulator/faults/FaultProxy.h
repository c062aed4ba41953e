#pragma once

#include "simulator/faults/Toxic.h"

#include <QJsonArray>
#include <QJsonObject>

#include <atomic>
#include <functional>
#include <list>
#include <mutex>
#include <random>
#include <thread>
#include <vector>

namespace simulator::faults
{

class ProxiedConnection;

enum class Direction : int
{
    Upstream,  ///< from the client to the server
    Downstream ///< from the server to the client
};

/// What a toxic is to be, as a user says it.
struct ToxicSettings
{
    ToxicKind const* kind = nullptr;
    Direction direction = Direction::Downstream;
    double toxicity = 1; ///< the probability with which a connection is struck
    Attributes attributes = {};

    /// `{"Type": "latency", "Stream": "upstream", "Toxicity": 0.5, "Attributes": {"latency": 20}}`; throws
    /// std::invalid_argument naming what is wrong. What is left out has its usual value.
    static ToxicSettings fromJson(QJsonObject const& json);
    /// The same as `kelo-simulator --fault` takes it: "latency:latency=20,stream=upstream,toxicity=0.5".
    static ToxicSettings fromText(QString const& text);
};

/// What `ToxicSettings::fromJson` takes.
extern Schema const toxicMembers;

/// A toxic in force at a proxy, shared by the connections it strikes.
struct ToxicInForce
{
    ToxicInForce(ToxicSettings what, int number) : settings(std::move(what)), id(number) {}

    ToxicSettings const settings;
    int const id;
    std::atomic<int> fired = 0;
    std::atomic<bool> isRemoved = false;
};

/// A TCP proxy that spoils what passes. Toxics come and go at any time, from any thread; those that come
/// strike open connections with the next bytes. Runs in threads of its own from construction to destruction.
class FaultProxy
{
public:
    /// Passes to 127.0.0.1:`upstreamPort`. Listens on `port`, 0: any free one, of the IPv4 address; throws
    /// std::runtime_error if it cannot. With the same seed and the same order of connections, chance strikes alike.
    explicit FaultProxy(int upstreamPort, quint64 seed = 1, int port = 0, QByteArray address = "127.0.0.1");
    FaultProxy(FaultProxy const&) = delete;
    FaultProxy& operator=(FaultProxy const&) = delete;
    ~FaultProxy();

    int port() const { return port_; }
    int upstreamPort() const { return upstreamPort_; }
    quint64 seed() const { return seed_; }

    /// The toxic, whose count of firings can be watched.
    std::shared_ptr<ToxicInForce const> add(ToxicSettings const& settings);
    /// From `ToxicSettings::fromText`, with its exceptions.
    std::shared_ptr<ToxicInForce const> add(QString const& text);
    /// Takes all toxics away. What they hold back goes on; a connection that `timeout` has silenced is closed. Throws
    /// std::runtime_error if, after `down`, the port cannot be had again.
    void clear();
    /// The same with the toxic of this number only; false if there is none.
    bool remove(int id);
    /// `[{"Id": n, "Type": ..., "Stream": ..., "Toxicity": ..., "Attributes": {...}, "Fired": n}]`
    QJsonArray toJson() const;

    /// Connections accepted so far, and those still open.
    int acceptedCount() const;
    int openCount() const;

private:
    friend class ProxiedConnection;
    using Toxics = std::vector<std::shared_ptr<ToxicInForce>>;

    bool removeIf(std::function<bool(ToxicInForce const&)> const& isMeant);
    void acceptLoop();
    /// This and the next with the mutex held.
    void acceptOne();
    void stopListening();
    /// The toxics of one direction.
    Toxics toxicsOf(Direction direction) const;
    int generation() const { return generation_; }
    qint64 random(qint64 low, qint64 high);
    bool strikes(double toxicity);

    int const upstreamPort_;
    quint64 const seed_;
    QByteArray const address_;
    int port_ = 0;
    int listener_ = -1;
    int const wakeEvent_;
    std::atomic<bool> isStopping_ = false;
    std::atomic<int> generation_ = 0; ///< changes with the toxics
    mutable std::mutex mutex_;
    Toxics toxics_;
    std::list<std::unique_ptr<ProxiedConnection>> connections_;
    int accepted_ = 0;
    int lastId_ = 0;
    std::mutex randomMutex_;
    std::mt19937_64 random_;
    std::thread acceptor_;
};

} // namespace simulator::faults
