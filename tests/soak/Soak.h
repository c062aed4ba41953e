#pragma once

#include <chrono>
#include <memory>
#include <vector>

#include "tests/soak/Caller.h"
#include "tests/soak/Resources.h"
#include "tests/soak/Storm.h"

namespace soak
{

/// Rounds of traffic in bad weather. After each, all calls must have ended, the writes are compared with what the
/// service has seen, and every kind of call must work again.
class Soak
{
public:
    Soak(std::chrono::seconds duration, quint64 seed);

    /// False if a rule was broken.
    bool run();

private:
    using Clock = std::chrono::steady_clock;

    void learn();
    void runRound();
    void blowAndCall();
    void blow(Stop const& stop);
    void awaitEnd();
    void runCalm();
    void checkWrites();
    /// Six connections to each address, none of them dead, and a service as at its start.
    Resources measure();
    void occupyConnections();
    void compareMemory(Resources const& before, Resources const& after);
    void print(Resources const& before, Resources const& after) const;
    [[noreturn]] void giveUp(std::string const& what);

    std::chrono::seconds const duration_;
    test::FaultedService service_;
    Ledger ledger_;
    Stage stage_;
    Storm storm_;
    std::vector<std::unique_ptr<Caller>> callers_;
    Caller calmCaller_;
    int round_ = 0;
    int sockets_ = 0; ///< open before the first fault
};

} // namespace soak
