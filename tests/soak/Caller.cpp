#include "tests/soak/Caller.h"

#include <string_view>
#include <utility>

namespace soak
{

namespace
{

constexpr qint64 replySizeLimit = 1 << 20;
QString const seededOrder = QStringLiteral("ORD-000001");

} // namespace

Stage::Stage(test::FaultedService& service, Ledger& ledger)
    : service_(service),
      ledger_(ledger),
      requests_(service.direct()->getRequests(test::FaultedService::installation, false).get().value)
{
    for (auto const& shell : service.direct()->getTempShellCalculationData(seededOrder).getTempShellFile())
    {
        auto const id = shell.getFileId();
        shells_.push_back(id);
        ledger.learn("download" + id.toStdString(), service.direct()->getTempShellFile(id).get());
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
    orders_.push_back(reference);
    slots_.push_back(std::move(slot));
}

test::Subject Stage::subject(std::mt19937_64& random) const
{
    auto const oneOf = [&random](std::vector<QString> const& all)
    { return all.at(std::uniform_int_distribution<std::size_t>(0, all.size() - 1)(random)); };
    std::lock_guard const lock(mutex_);
    return {.shell = oneOf(shells_), .order = oneOf(orders_), .requests = requests_};
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

test::Subject Caller::subjectOf(test::Call const& call)
{
    auto subject = stage_.subject(random_);
    bool const isUpload = std::string_view(call.name) == "upload";
    if (isUpload)
    {
        subject.file = stage_.takeSlot();
        subject.marker = subject.file.marker;
    }
    else if (call.isWrite)
    {
        // Mostly small, now and then large, and never the same twice.
        auto const lines = static_cast<int>(below(16) == 0 ? 2000 + below(8000) : 1 + below(200));
        subject.marker = newMarker();
        subject.file = {.marker = newMarker(), .lines = lines};
    }
    return subject;
}

void Caller::make(test::Call const& call)
{
    auto const subject = subjectOf(call);
    if (call.isWrite && subject.marker.isEmpty())
    {
        return;
    }
    auto const ticket = ledger().open(call.name, subject.marker);
    auto running = call.start(pick(), subject);
    bool const isDownload = std::string_view(call.name) == "download";
    auto const resource = call.name + (isDownload ? subject.shell.toStdString() : std::string());
    if (ledger().isLearning())
    {
        ledger().learn(resource, running.ending.get().content);
    }
    auto const right = call.right != nullptr ? call.right(subject) : ledger().rightContent(resource);
    running.ending.then(
        [&stage = stage_, ticket, right](threading::Future<test::Ending> const& finished)
        {
            auto const ending = finished.get();
            // A spoilt answer is no basis for an upload.
            if (!ending.order.isEmpty() && !ending.slot.reference.isEmpty() && ending.content == right)
            {
                stage.addOrder(ending.order, ending.slot);
            }
            stage.ledger().close(ticket, ending, right);
        });
    pending_.push_back(std::move(running));
    if (pending_.size() > mostPending)
    {
        awaitOldest();
    }
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
    if (!pending_.front().ending.waitFor(patience))
    {
        ledger().violate("a call has not ended within the time that all faults leave it");
    }
    pending_.pop_front();
}

} // namespace soak
