#pragma once

#include <chrono>
#include <deque>
#include <memory>
#include <mutex>
#include <random>
#include <vector>

#include "tests/soak/Ledger.h"
#include "tests/support/FaultedService.h"
#include "tests/traffic/Calls.h"

namespace soak
{

using test::Connection;
using test::Slot;

/// How long something may take that should have ended long before.
constexpr std::chrono::seconds patience{30};

/// What the threads share: the service, the account of it all, some of the connections, and slots to upload to.
class Stage
{
public:
    static constexpr std::size_t sharedConnections = 4;

    Stage(test::FaultedService& service, Ledger& ledger);

    Ledger& ledger() { return ledger_; }
    /// What a read is about: one of the service's shells and orders, and all of its requests.
    test::Subject subject(std::mt19937_64& random) const;

    Connection connect(std::mt19937_64& random) const;
    Connection shared(std::size_t index) const;
    void share(std::size_t index, Connection connection);
    /// Sets the time-out of the shared connections.
    void setTimeout(std::chrono::milliseconds timeout);

    void addOrder(QString const& reference, Slot slot);
    /// A slot that nobody else has; with an empty reference when there is none.
    Slot takeSlot();
    /// The service has been started afresh.
    void forgetOrders();

private:
    test::FaultedService& service_;
    Ledger& ledger_;
    std::vector<QString> shells_;
    std::vector<collaboration::RequestInfo> requests_;
    mutable std::mutex mutex_;
    std::vector<Connection> connections_;
    std::vector<QString> orders_;
    std::vector<Slot> slots_;
};

/// One thread's part in the traffic.
class Caller
{
public:
    Caller(Stage& stage, int index, quint64 seed);

    std::mt19937_64& random() { return random_; }

    void beginRound(int round);
    /// Waits for the calls that the thread has not waited for yet.
    void endRound();
    void setUsesShared(bool onlyShared) { usesSharedOnly_ = onlyShared; }

    /// Makes the call, and remembers it to be cancelled or waited for later on; waits for the oldest one if there are
    /// many. The ledger learns of its end on whatever thread that happens.
    void make(test::Call const& call);

    // What happens to calls and connections in between.
    void cancelOne();
    void renewOwn();
    void renewShared();

private:
    static constexpr std::size_t mostPending = 16;

    Ledger& ledger() { return stage_.ledger(); }
    std::size_t below(std::size_t limit) { return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random_); }
    QString newMarker();
    /// A write has a marker of its own; without one it cannot be made now.
    test::Subject subjectOf(test::Call const& call);
    /// This thread's own connection or a shared one; only a shared one in calm weather.
    Connection pick();
    void awaitOldest();

    Stage& stage_;
    int const index_;
    std::mt19937_64 random_;
    Connection own_;
    bool usesSharedOnly_ = false;
    int round_ = 0;
    int markers_ = 0;
    std::deque<test::Running> pending_;
};

} // namespace soak
