#include "tests/soak/Soak.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <thread>

#include <testkit/Waiting.h>
#include <tests/support/OpenSockets.h>

namespace soak
{

namespace
{

using namespace std::chrono_literals;

constexpr int threads = 8;
// What the program may hold more at its end than after warming up.
constexpr double growth = 1.05;
// Memory that settles more slowly than in so short a run says nothing.
constexpr auto shortestJudged = 60s;

#ifdef KELO_SANITIZED
constexpr bool isSanitized = true;
#else
constexpr bool isSanitized = false;
#endif

struct Disturbance
{
    int weight; ///< how often, compared with the calls
    void (Caller::*run)();
};
constexpr Disturbance disturbances[] = {{8, &Caller::cancelOne}, {1, &Caller::renewOwn}, {1, &Caller::renewShared}};

void work(Caller& caller, Stop const& stop)
{
    auto const calls = test::calls();
    std::vector<int> weights;
    std::transform(
        calls.begin(), calls.end(), std::back_inserter(weights), [](auto const& call) { return call.weight; });
    for (auto const& disturbance : disturbances)
    {
        weights.push_back(disturbance.weight);
    }
    std::discrete_distribution<std::size_t> distribution(weights.begin(), weights.end());
    while (!stop.isSet())
    {
        auto const choice = distribution(caller.random());
        if (choice < calls.size())
        {
            caller.make(calls[choice]);
        }
        else
        {
            (caller.*disturbances[choice - calls.size()].run)();
        }
    }
    caller.endRound();
}

} // namespace

Soak::Soak(std::chrono::seconds duration, quint64 seed)
    : duration_(duration),
      service_(seed),
      stage_(service_, ledger_),
      storm_(service_, ledger_, seed),
      calmCaller_(stage_, threads, seed + threads)
{
    for (int index = 0; index < threads; ++index)
    {
        callers_.push_back(std::make_unique<Caller>(stage_, index, seed + static_cast<quint64>(index)));
    }
    calmCaller_.setUsesShared(true);
}

bool Soak::run()
{
    auto const start = Clock::now();
    auto const warmUp = std::max<Clock::duration>(duration_ / 10, std::min<Clock::duration>(3s, duration_ / 3));
    learn();
    while (round_ == 0 || Clock::now() - start < warmUp)
    {
        runRound();
    }
    auto const before = measure();
    auto nextReport = Clock::now() + 60s;
    while (Clock::now() - start < duration_)
    {
        runRound();
        if (Clock::now() > nextReport)
        {
            nextReport += 60s;
            std::printf(
                "%d rounds, %llu calls, %lld KiB\n", round_, ledger_.made(), Resources::now().residentKibibytes);
            std::fflush(stdout);
        }
    }
    // Twice, for each looks at the writes of its own round and the one before.
    checkWrites();
    auto const after = measure();
    compareMemory(before, after);
    print(before, after);
    return !ledger_.hasViolations();
}

void Soak::learn()
{
    ledger_.setLearning(true);
    runCalm();
    ledger_.setLearning(false);
    checkWrites();
    occupyConnections();
    service_.reset();
    sockets_ = test::openSockets();
}

void Soak::runRound()
{
    ++round_;
    blowAndCall();
    awaitEnd();
    runCalm();
    awaitEnd();
    checkWrites();
}

void Soak::blowAndCall()
{
    Stop stop;
    std::atomic<int> working = threads;
    std::vector<std::thread> all;
    all.emplace_back([&] { blow(stop); });
    for (auto const& caller : callers_)
    {
        caller->beginRound(round_);
        all.emplace_back(
            [&working, &stop, &caller = *caller]
            {
                work(caller, stop);
                --working;
            });
    }
    stop.waitFor(std::clamp<std::chrono::milliseconds>(duration_ / 10, 500ms, 2000ms));
    stop.set();
    all.front().join();
    if (!testkit::comesTrue([&working] { return working == 0; }))
    {
        giveUp(std::to_string(working) + " threads still wait");
    }
    for (std::size_t index = 1; index < all.size(); ++index)
    {
        all[index].join();
    }
}

void Soak::blow(Stop const& stop)
try
{
    storm_.blow(stop);
}
catch (std::exception const& error)
{
    ledger_.violate(std::string("the faults cannot be changed: ") + error.what());
}

void Soak::awaitEnd()
{
    if (!testkit::comesTrue([this] { return ledger_.openCount() == 0; }))
    {
        giveUp("futures have not finished");
    }
}

void Soak::runCalm()
{
    // What the faults have left of the connections is found out by calls that may be repeated.
    occupyConnections();
    stage_.setTimeout(patience);
    calmCaller_.beginRound(round_);
    ledger_.setCalm(true);
    for (auto const& call : test::calls())
    {
        calmCaller_.make(call);
        awaitEnd();
    }
    calmCaller_.endRound();
    ledger_.setCalm(false);
    stage_.setTimeout(500ms);
}

void Soak::checkWrites()
{
    ledger_.checkWrites(
        service_.simulator().journal()["Requests"].toArray(), service_.simulator().control("GET", "orders").array());
    service_.reset();
    stage_.forgetOrders();
}

void Soak::occupyConnections()
{
    constexpr int perConnection = 4;
    constexpr int connections = 6;
    auto const throughProxy = service_.connect(patience);
    service_.addFault("delay:milliseconds=5,times=-1");
    std::vector<threading::Future<rest::RestReply<OrderShippingAddressList>>> futures;
    for (int count = 0; count < perConnection * connections; ++count)
    {
        futures.push_back(throughProxy->getShippingAddresses(test::FaultedService::installation));
        futures.push_back(service_.direct()->getShippingAddresses(test::FaultedService::installation));
    }
    if (!threading::whenAll(futures).waitFor(patience))
    {
        giveUp("calls that nothing holds up do not end");
    }
    service_.clearFaults();
}

Resources Soak::measure()
{
    service_.reset();
    occupyConnections();
    service_.reset();
    auto const most = static_cast<int>(sockets_ * growth);
    if (!testkit::comesTrue([most] { return test::openSockets() <= most; }))
    {
        ledger_.violate(
            "sockets are left open: " + std::to_string(test::openSockets()) + " instead of "
            + std::to_string(sockets_));
    }
    return Resources::now();
}

void Soak::compareMemory(Resources const& before, Resources const& after)
{
    auto const kibibytes = static_cast<double>(before.residentKibibytes) * growth;
    if (duration_ >= shortestJudged && !isSanitized && static_cast<double>(after.residentKibibytes) > kibibytes)
    {
        ledger_.violate(
            "memory is not given back: " + std::to_string(after.residentKibibytes) + " KiB resident after "
            + std::to_string(before.residentKibibytes));
    }
}

void Soak::print(Resources const& before, Resources const& after) const
{
    ledger_.print();
    std::printf("\nfaults fired\n");
    for (auto const& [name, count] : storm_.fired())
    {
        std::printf("  %-16s %10llu\n", name.c_str(), count);
    }
    std::printf("\n%-16s %10s %10s %10s\n", "", "fresh", "warmed up", "at the end");
    std::printf("%-16s %10d %10d %10d\n", "open sockets", sockets_, before.sockets, after.sockets);
    std::printf("%-16s %10s %10lld %10lld", "resident KiB", "", before.residentKibibytes, after.residentKibibytes);
    std::printf("%s\n", duration_ < shortestJudged || isSanitized ? "  (not judged in this run)" : "");
    std::printf("\n%d rounds\n", round_);
}

void Soak::giveUp(std::string const& what)
{
    ledger_.violate(what + "; not ended: " + ledger_.openCalls());
    ledger_.print();
    std::fflush(stdout);
    // What hangs would hang the end of the process, too.
    std::_Exit(EXIT_FAILURE);
}

} // namespace soak
