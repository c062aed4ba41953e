#include "tests/soak/Ledger.h"

#include <algorithm>
#include <cstdio>
#include <utility>

#include <QJsonObject>

namespace soak
{

namespace
{

constexpr std::size_t mostViolations = 50;
constexpr char const* markerBegin = "soak-";

QString markerIn(QString const& text)
{
    static QRegularExpression const pattern(QStringLiteral("soak-\\d+-\\d+-\\d+"));
    return pattern.match(text).captured();
}

QString describe(QByteArray const& content)
{
    return QString::fromLatin1(content.left(80).toPercentEncoding(" ;"))
           + QStringLiteral(" (%1 bytes)").arg(content.size());
}

bool isSuccess(Outcome outcome)
{
    return outcome == Outcome::Ok || outcome == Outcome::Other;
}

} // namespace

QString Ledger::marker(int round, int thread, int number)
{
    return QLatin1String(markerBegin) + QStringLiteral("%1-%2-%3").arg(round).arg(thread).arg(number);
}

Ticket Ledger::open(char const* kind, QString const& marker)
{
    std::lock_guard const lock(mutex_);
    Ticket const ticket{++made_, kind, marker, spoilings_, isCalm_};
    open_.emplace(ticket.number, ticket);
    if (!marker.isEmpty())
    {
        writes_[marker].kind = kind;
    }
    return ticket;
}

void Ledger::close(Ticket const& ticket, test::Ending const& ending, QByteArray const& right)
{
    std::lock_guard const lock(mutex_);
    if (open_.erase(ticket.number) == 0)
    {
        violateLocked(std::string(ticket.kind) + ": a call has ended twice");
        return;
    }
    ++ended_;
    auto const outcome = judge(ticket, ending, right);
    ++outcomes_[ticket.kind][static_cast<std::size_t>(outcome)];
    if (ticket.mustSucceed && outcome != Outcome::Ok)
    {
        violateLocked(
            std::string(ticket.kind) + ": nothing is in its way, and it ends as "
            + test::outcomeNames[static_cast<std::size_t>(outcome)]);
    }
    if (outcome == Outcome::Refused && !isExcused(ticket))
    {
        violateLocked(std::string(ticket.kind) + ": refused, though the service was not told to");
    }
    if (auto const write = writes_.find(ticket.marker); write != writes_.end())
    {
        write->second.outcome = outcome;
        write->second.maybeProcessed = ending.maybeProcessed;
    }
}

bool Ledger::isExcused(Ticket const& ticket) const
{
    unsigned const before = ticket.spoilings;
    return before % 2 == 1 || before != spoilings_;
}

Outcome Ledger::judge(Ticket const& ticket, test::Ending const& ending, QByteArray const& right)
{
    std::string const kind = ticket.kind;
    if (ending.outcome == Outcome::Broken)
    {
        violateLocked(kind + ": lost without a reason, or ended more than once");
    }
    if (ending.outcome != Outcome::Ok || ending.content == right)
    {
        return ending.outcome;
    }
    auto const content = describe(ending.content).toStdString();
    if (isOfAnother(ending.content, right))
    {
        violateLocked(kind + ": the answer of another call: " + content);
    }
    else if (ending.isPartial)
    {
        return Outcome::Failed;
    }
    else if (!isExcused(ticket))
    {
        violateLocked(kind + ": wrong content: " + content + " instead of " + describe(right).toStdString());
    }
    return Outcome::Other;
}

bool Ledger::isOfAnother(QByteArray const& content, QByteArray const& right) const
{
    return !content.isEmpty()
           && (content.contains(markerBegin)
               || std::any_of(
                   rightContents_.begin(), rightContents_.end(),
                   [&](auto const& known) { return known.second == content && known.second != right; }));
}

void Ledger::violate(std::string const& what)
{
    std::lock_guard const lock(mutex_);
    violateLocked(what);
}

void Ledger::violateLocked(std::string const& what)
{
    ++violationCount_;
    if (violations_.size() < mostViolations)
    {
        violations_.push_back(what);
        std::printf("BROKEN  %s\n", what.c_str());
        std::fflush(stdout);
    }
}

void Ledger::learn(std::string const& name, QByteArray const& content)
{
    rightContents_[name] = content;
}

QByteArray Ledger::rightContent(std::string const& name) const
{
    auto const found = rightContents_.find(name);
    return found == rightContents_.end() ? QByteArray() : found->second;
}

void Ledger::setSpoiling(bool isSpoiling)
{
    spoilings_ += (spoilings_ % 2 == 1) == isSpoiling ? 0 : 1;
}

std::size_t Ledger::openCount() const
{
    std::lock_guard const lock(mutex_);
    return open_.size();
}

std::string Ledger::openCalls() const
{
    std::lock_guard const lock(mutex_);
    std::map<std::string, int> counts;
    for (auto const& [number, ticket] : open_)
    {
        ++counts[ticket.kind];
    }
    std::string text;
    for (auto const& [kind, count] : counts)
    {
        text += (text.empty() ? "" : ", ") + std::to_string(count) + " " + kind;
    }
    return text;
}

void Ledger::countWrites(QJsonArray const& journal, QJsonArray const& orders)
{
    auto const find = [this](QString const& text) { return writes_.find(markerIn(text)); };
    for (auto const& entry : journal)
    {
        auto const request = entry.toObject();
        auto found = find(request["Target"].toString());
        found = found == writes_.end() ? find(request["Body"].toString()) : found;
        if (found != writes_.end())
        {
            ++found->second.seen;
        }
    }
    for (auto const& order : orders)
    {
        if (auto const found = find(order.toObject()["Request"].toObject()["ProductionNote"].toString());
            found != writes_.end())
        {
            ++found->second.created;
        }
    }
}

char const* Ledger::faultOf(Write const& write)
{
    // Of the writes, only these leave something that can be counted beside the request itself.
    bool const isOrder = std::string(write.kind).find("order") != std::string::npos;
    auto const seen = write.seen;
    struct Rule
    {
        bool isBroken;
        char const* text;
    };
    Rule const rules[] = {
        {seen > 1 || write.created > 1, "reached the service more than once"},
        {isSuccess(write.outcome) && seen != 1, "reported as a success, the service has not seen it"},
        {isSuccess(write.outcome) && isOrder && write.created != 1, "reported as a success, there is no order"},
        {write.outcome == Outcome::Refused && seen != 1, "reported as refused, the service has not seen it"},
        {write.outcome == Outcome::Refused && write.created != 0, "reported as refused, there is an order"},
        {write.outcome == Outcome::Lost && !write.maybeProcessed && seen != 0,
         "reported as not sent, the service has seen it"},
    };
    auto const* const broken =
        std::find_if(std::begin(rules), std::end(rules), [](auto const& r) { return r.isBroken; });
    return broken == std::end(rules) ? nullptr : broken->text;
}

void Ledger::checkWrites(QJsonArray const& journal, QJsonArray const& orders)
{
    std::lock_guard const lock(mutex_);
    countWrites(journal, orders);
    for (auto it = writes_.begin(); it != writes_.end();)
    {
        auto& [name, write] = *it;
        auto const* const fault = faultOf(write);
        if (fault != nullptr)
        {
            violateLocked(
                std::string(write.kind) + " " + name.toStdString() + ": " + fault + " (seen "
                + std::to_string(write.seen) + ", created " + std::to_string(write.created) + ")");
        }
        if (fault != nullptr || std::exchange(write.isOld, true))
        {
            auto& counts = writeCounts_[write.kind];
            ++(write.seen == 0 ? counts.never : write.seen == 1 ? counts.once : counts.twice);
            it = writes_.erase(it);
            continue;
        }
        ++it;
    }
}

void Ledger::print() const
{
    std::lock_guard const lock(mutex_);
    std::printf("\n%-16s", "calls");
    for (auto const* const name : test::outcomeNames)
    {
        std::printf(" %10s", name);
    }
    std::printf("\n");
    for (auto const& [kind, counts] : outcomes_)
    {
        std::printf("%-16s", kind.c_str());
        for (auto const count : counts)
        {
            std::printf(" %10llu", count);
        }
        std::printf("\n");
    }
    std::printf(
        "made %llu, ended %llu\n\n%-16s %10s %10s %10s\n", made_, ended_, "writes seen", "once", "never", "twice");
    for (auto const& [kind, counts] : writeCounts_)
    {
        std::printf("%-16s %10llu %10llu %10llu\n", kind.c_str(), counts.once, counts.never, counts.twice);
    }
    std::printf("\nrules broken: %llu\n", violationCount_);
}

bool Ledger::hasViolations() const
{
    std::lock_guard const lock(mutex_);
    return violationCount_ > 0;
}

quint64 Ledger::made() const
{
    std::lock_guard const lock(mutex_);
    return made_;
}

} // namespace soak
