#pragma once

#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <random>
#include <vector>

#include "tests/soak/Ledger.h"
#include "tests/support/FaultedService.h"

namespace soak
{

using Connection = std::shared_ptr<TessalyConnection>;

/// How long something may take that should have ended long before.
constexpr std::chrono::seconds patience{30};

/// An order's slot for a file, and the marker from which the file's content is made.
struct Slot
{
    QString reference;
    QString marker;
};

/// What the threads share: the service, the account of it all, some of the connections, and slots to upload to.
class Stage
{
public:
    static constexpr std::size_t sharedConnections = 4;

    Stage(test::FaultedService& service, Ledger& ledger);

    Ledger& ledger() { return ledger_; }
    std::vector<QString> const& shells() const { return shells_; }

    Connection connect(std::mt19937_64& random) const;
    Connection shared(std::size_t index) const;
    void share(std::size_t index, Connection connection);
    /// Sets the time-out of the shared connections.
    void setTimeout(std::chrono::milliseconds timeout);

    void addOrder(QString const& reference, Slot slot);
    /// An order that the service has.
    QString someOrder(std::mt19937_64& random) const;
    /// A slot that nobody else has; with an empty reference when there is none.
    Slot takeSlot();
    /// The service has been started afresh.
    void forgetOrders();

private:
    test::FaultedService& service_;
    Ledger& ledger_;
    std::vector<QString> shells_;
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

    Stage& stage() { return stage_; }
    Ledger& ledger() { return stage_.ledger(); }
    std::mt19937_64& random() { return random_; }
    std::size_t below(std::size_t limit) { return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random_); }

    void beginRound(int round);
    /// Waits for the calls that the thread has not waited for yet.
    void endRound();
    QString newMarker();

    /// This thread's own connection or a shared one; only a shared one in calm weather.
    Connection pick();
    void renewOwn();
    void renewShared();
    void setUsesShared(bool onlyShared) { usesSharedOnly_ = onlyShared; }

    /// Remembers a call to be cancelled or waited for later on; waits for the oldest one if there are many.
    template <class T>
    void remember(threading::Future<T> const& future)
    {
        pending_.push_back({[future] { future.cancel(); }, [future] { return future.waitFor(patience); }});
        if (pending_.size() > mostPending)
        {
            awaitOldest();
        }
    }
    void cancelOne();

private:
    struct Pending
    {
        std::function<void()> cancel;
        std::function<bool()> await;
    };
    static constexpr std::size_t mostPending = 16;

    void awaitOldest();

    Stage& stage_;
    int const index_;
    std::mt19937_64 random_;
    Connection own_;
    bool usesSharedOnly_ = false;
    int round_ = 0;
    int markers_ = 0;
    std::deque<Pending> pending_;
};

} // namespace soak
