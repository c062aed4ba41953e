#include "tests/soak/Caller.h"

#include <utility>

namespace soak
{

namespace
{

constexpr qint64 replySizeLimit = 1 << 20;
QString const seededOrder = QStringLiteral("ORD-000001");

} // namespace

Stage::Stage(test::FaultedService& service, Ledger& ledger) : service_(service), ledger_(ledger)
{
    for (auto const& shell : service.direct().getTempShellCalculationData(seededOrder).getTempShellFile())
    {
        shells_.push_back(shell.getFileId());
        ledger.learn(
            "download " + shell.getFileId().toStdString(), service.direct().getTempShellFile(shell.getFileId()).get());
    }
    forgetOrders();
    std::mt19937_64 random;
    for (std::size_t index = 0; index < sharedConnections; ++index)
    {
        connections_.push_back(connect(random));
    }
}

Connection Stage::connect(std::mt19937_64& random) const
{
    auto const timeout = std::uniform_int_distribution(300, 800)(random);
    Connection connection = service_.connect(std::chrono::milliseconds(timeout));
    connection->setReplySizeLimit(replySizeLimit);
    return connection;
}

Connection Stage::shared(std::size_t index) const
{
    std::lock_guard const lock(mutex_);
    return connections_.at(index);
}

void Stage::share(std::size_t index, Connection connection)
{
    // The former one is destroyed after the lock is released, if nobody else holds it.
    std::lock_guard const lock(mutex_);
    connections_.at(index).swap(connection);
}

void Stage::setTimeout(std::chrono::milliseconds timeout)
{
    std::lock_guard const lock(mutex_);
    for (auto const& connection : connections_)
    {
        connection->setDefaultTimeout(timeout);
    }
}

void Stage::addOrder(QString const& reference, Slot slot)
{
    std::lock_guard const lock(mutex_);
    if (reference.startsWith(QLatin1String("ORD-")))
    {
        orders_.push_back(reference);
    }
    slots_.push_back(std::move(slot));
}

QString Stage::someOrder(std::mt19937_64& random) const
{
    std::lock_guard const lock(mutex_);
    return orders_.at(std::uniform_int_distribution<std::size_t>(0, orders_.size() - 1)(random));
}

Slot Stage::takeSlot()
{
    std::lock_guard const lock(mutex_);
    if (slots_.empty())
    {
        return {};
    }
    Slot slot = std::move(slots_.back());
    slots_.pop_back();
    return slot;
}

void Stage::forgetOrders()
{
    std::lock_guard const lock(mutex_);
    orders_ = {seededOrder};
    slots_.clear();
}

Caller::Caller(Stage& stage, int index, quint64 seed)
    : stage_(stage), index_(index), random_(seed), own_(stage.connect(random_))
{
}

void Caller::beginRound(int round)
{
    round_ = round;
    markers_ = 0;
}

void Caller::endRound()
{
    while (!pending_.empty())
    {
        awaitOldest();
    }
}

QString Caller::newMarker()
{
    return Ledger::marker(round_, index_, ++markers_);
}

Connection Caller::pick()
{
    return usesSharedOnly_ || below(2) == 0 ? stage_.shared(below(Stage::sharedConnections)) : own_;
}

void Caller::renewOwn()
{
    own_ = stage_.connect(random_);
}

void Caller::renewShared()
{
    auto const index = below(Stage::sharedConnections);
    auto const former = stage_.shared(index);
    if (below(2) == 0)
    {
        former->closeConnection();
    }
    stage_.share(index, stage_.connect(random_));
}

void Caller::cancelOne()
{
    if (!pending_.empty())
    {
        pending_[below(pending_.size())].cancel();
    }
}

void Caller::awaitOldest()
{
    if (!pending_.front().await())
    {
        ledger().violate("a call has not ended within the time that all faults leave it");
    }
    pending_.pop_front();
}

} // namespace soak
