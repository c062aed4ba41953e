#include "simulator/faults/ToxicKinds.h"

namespace simulator::faults
{

namespace
{

class ResetPeer final : public Toxic
{
public:
    explicit ResetPeer(Attributes const& attributes) : timeout_(attributes["timeout"]) {}

    bool pass(QByteArray const&, Flow& flow) override
    {
        flow.countFired();
        flow.pause(timeout_);
        flow.reset();
        return false;
    }

private:
    std::chrono::milliseconds const timeout_;
};

} // namespace

/// Both ends get a TCP reset `timeout` milliseconds after the first bytes came, which are lost.
ToxicKind const resetPeer = {
    "reset_peer", {{{"timeout", 0}}}, [](Attributes const& attributes) -> std::unique_ptr<Toxic> {
        return std::make_unique<ResetPeer>(attributes);
    }};

} // namespace simulator::faults
