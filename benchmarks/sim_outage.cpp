// What a service sees of its clients around an outage, and when all of them start at the same time. In virtual time.
#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include <QCommandLineParser>
#include <QCoreApplication>

#include <KeloCommunicationLib/collaboration/PollSchedule.h>

namespace
{

using Milliseconds = std::chrono::milliseconds;
using namespace std::chrono_literals;

constexpr Milliseconds slot = 100ms; ///< what happens in one has no order
constexpr int slotsPerSecond = 10;
constexpr Milliseconds interval = 60s;
constexpr double newsPerInterval = 0.1; ///< of one client, evenly distributed over the time
constexpr double capacity = 2;          ///< over the steady load; what comes above it is answered with 503
constexpr std::chrono::seconds askedWait = 10s;

/// Everything is told in slots since the beginning.
struct Scenario
{
    char const* name;
    std::int64_t start; ///< the clients start evenly distributed in this time
    std::int64_t outageBegin;
    std::int64_t outageEnd;
    double rest;              ///< what is left of the service's capacity; without any, calls fail after
    std::int64_t failureTime; ///< this
    bool isEverythingNews;    ///< to the first poll
};

constexpr std::int64_t inSlots(Milliseconds time)
{
    return time / slot;
}

constexpr auto outageBegin = inSlots(10min);
constexpr auto outageEnd = inSlots(20min);
constexpr auto duration = inSlots(40min);
constexpr Scenario scenarios[] = {
    {"outage, connections refused", inSlots(interval), outageBegin, outageEnd, 0, 1, false},
    {"outage, time-outs of 30 s", inSlots(interval), outageBegin, outageEnd, 0, inSlots(30s), false},
    {"half the steady load served", inSlots(interval), outageBegin, outageEnd, 0.25, 1, false},
    {"all start within 5 s", inSlots(5s), 0, 0, 0, 0, true}};

/// How one kind of client waits: before its first poll, and after each.
struct Policy
{
    char const* name;
    std::function<Milliseconds(PollSchedule&, double)> begin;
    std::function<Milliseconds(PollSchedule&, rest::RestReplyStatus const&, double)> after;
};

Milliseconds atOnce(PollSchedule&, double)
{
    return 0ms;
}

Policy const policies[] = {
    {"this poller", &PollSchedule::begin, &PollSchedule::after},
    {"fixed interval", atOnce, [](auto&, auto const&, double) { return interval; }},
    {"again after 1 s", atOnce, [](auto&, auto const& status, double) { return status.kind == 0 ? interval : 1s; }}};

struct Client
{
    PollSchedule schedule;
    std::int64_t upToDateSince = 0; ///< its last poll that succeeded
    std::int64_t recovered = -1;    ///< the first one after the outage
    bool asksForDetails = false;    ///< the next call is the second one of its poll
};

class Simulation
{
public:
    Simulation(Scenario const& scenario, Policy const& policy, std::size_t clients, std::uint64_t seed)
        : scenario_(scenario),
          policy_(policy),
          random_(seed),
          clients_(clients),
          calls_(static_cast<std::size_t>(duration)),
          seen_(static_cast<std::size_t>(duration / slotsPerSecond)),
          steady_(static_cast<double>(clients) / 60 * (1 + newsIn(inSlots(interval))))
    {
        for (std::size_t client = 0; client < clients; ++client)
        {
            auto const start = static_cast<std::int64_t>(chance() * static_cast<double>(scenario.start));
            bool const isWarm = !scenario.isEverythingNews;
            clients_[client].upToDateSince = isWarm ? start - inSlots(interval) : -inSlots(12h);
            callAt(start + (isWarm ? 0 : inSlots(policy.begin(clients_[client].schedule, chance()))), client);
        }
    }

    void run()
    {
        for (now_ = 0; now_ < duration; ++now_)
        {
            isOut_ = now_ >= scenario_.outageBegin && now_ < scenario_.outageEnd;
            double const available = steady_ * capacity * (isOut_ ? scenario_.rest : 1);
            free_ = std::min(free_ + available / slotsPerSecond, available);
            auto due = std::move(calls_[static_cast<std::size_t>(now_)]);
            std::shuffle(due.begin(), due.end(), random_);
            seen_[static_cast<std::size_t>(now_ / slotsPerSecond)] += static_cast<double>(due.size()) / steady_;
            for (auto const client : due)
            {
                call(client);
            }
        }
    }

    /// Of each second, over the steady load.
    std::vector<double> const& load() const { return seen_; }

    double peak(std::int64_t begin, std::int64_t end) const
    {
        return begin == end
                   ? 0
                   : *std::max_element(seen_.begin() + begin / slotsPerSecond, seen_.begin() + end / slotsPerSecond);
    }

    /// Minutes after the outage until this share of the clients is up to date again.
    double recovery(double share) const
    {
        std::vector<std::int64_t> times;
        for (Client const& client : clients_)
        {
            times.push_back(client.recovered < 0 ? duration : client.recovered - scenario_.outageEnd);
        }
        std::sort(times.begin(), times.end());
        auto const last = static_cast<std::size_t>(std::ceil(share * static_cast<double>(times.size()))) - 1;
        return static_cast<double>(times[last]) / (60 * slotsPerSecond);
    }

private:
    double chance() { return std::generate_canonical<double, 53>(random_); }

    /// How likely there are any after this time.
    static double newsIn(std::int64_t time)
    {
        return 1 - std::exp(-newsPerInterval * static_cast<double>(time) / static_cast<double>(inSlots(interval)));
    }

    void callAt(std::int64_t time, std::size_t client)
    {
        if (time < duration)
        {
            calls_[static_cast<std::size_t>(time)].push_back(static_cast<std::uint32_t>(client));
        }
    }

    void call(std::size_t index)
    {
        if (isOut_ && scenario_.rest == 0)
        {
            end(index, {1, 0, 0, {}, {}, {}}, scenario_.failureTime);
        }
        else if (free_ < 1)
        {
            end(index, {2, 0, 503, {}, {}, askedWait}, 1);
        }
        else
        {
            free_ -= 1;
            Client& client = clients_[index];
            if (!client.asksForDetails && chance() < newsIn(now_ - client.upToDateSince))
            {
                client.asksForDetails = true;
                callAt(now_ + 1, index);
                return;
            }
            client.upToDateSince = now_;
            if (client.recovered < 0 && now_ >= scenario_.outageEnd)
            {
                client.recovered = now_;
            }
            end(index, {}, 1);
        }
    }

    void end(std::size_t index, rest::RestReplyStatus const& status, std::int64_t time)
    {
        Client& client = clients_[index];
        client.asksForDetails = false;
        callAt(now_ + time + inSlots(policy_.after(client.schedule, status, chance())), index);
    }

    Scenario const& scenario_;
    Policy const& policy_;
    std::mt19937_64 random_;
    std::vector<Client> clients_;
    std::vector<std::vector<std::uint32_t>> calls_; ///< the clients that call in each slot
    std::vector<double> seen_;
    double steady_;   ///< calls a second
    double free_ = 0; ///< calls that the service can answer now, at most those of a second
    bool isOut_ = false;
    std::int64_t now_ = 0;
};

/// A block of the highest load of each five seconds, by the minutes since the outage began.
void writeLoad(std::FILE* file, Policy const& policy, std::vector<double> const& load)
{
    std::fprintf(file, "\"%s\"\n", policy.name);
    for (std::size_t second = 0; second + 5 <= load.size(); second += 5)
    {
        auto const first = load.begin() + static_cast<std::ptrdiff_t>(second);
        double const minutes = (static_cast<double>(second) - static_cast<double>(outageBegin) / slotsPerSecond) / 60;
        std::fprintf(file, "%.3f\t%.4f\n", minutes, *std::max_element(first, first + 5));
    }
    std::fprintf(file, "\n\n");
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication const application(argc, argv);
    QCommandLineParser parser;
    parser.addOptions(
        {{"seed", "Another course of chance", "number", "1"},
         {"clients", "How many there are; few make the load uneven", "number", "100000"},
         {"data", "Writes the load of the first outage for the plot", "file"}});
    parser.addHelpOption();
    parser.process(application);
    auto const clients = std::max<std::size_t>(parser.value("clients").toULong(), 1);
    std::FILE* const data = parser.isSet("data") ? std::fopen(parser.value("data").toLocal8Bit(), "w") : nullptr;

    std::printf(
        "%zu clients; load over the steady load, the highest of each second; minutes until up to date\n\n", clients);
    std::printf("%-30s%-18s%10s%10s%8s%8s%8s\n", "", "", "during it", "after it", "50 %", "99 %", "all");
    double worst = 0;
    for (Scenario const& scenario : scenarios)
    {
        for (Policy const& policy : policies)
        {
            Simulation simulation(scenario, policy, clients, parser.value("seed").toULongLong());
            simulation.run();
            double const during = simulation.peak(scenario.outageBegin, scenario.outageEnd);
            double const after = simulation.peak(scenario.outageEnd, duration);
            std::printf(
                "%-30s%-18s%10.2f%10.2f%8.1f%8.1f%8.1f\n", scenario.name, policy.name, during, after,
                simulation.recovery(0.5), simulation.recovery(0.99), simulation.recovery(1));
            if (&policy == &policies[0])
            {
                worst = std::max({worst, during, after});
            }
            if (data != nullptr && &scenario == &scenarios[0])
            {
                writeLoad(data, policy, simulation.load());
            }
        }
    }
    std::printf("\nHighest load / steady load\n  %6.2f     this poller, at any time\n", worst);
    return data == nullptr || std::fclose(data) == 0 ? 0 : 1;
}
