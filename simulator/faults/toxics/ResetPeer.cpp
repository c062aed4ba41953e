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

constexpr Member attributeMembers[] = {
    integer("timeout", 0, 86'400'000, "0", "milliseconds until then"),
};

} // namespace

ToxicKind const resetPeer = {
    .name = "reset_peer",
    .meaning = "Both ends get a TCP reset some time after the first bytes came, which are lost.",
    .attributes = attributeMembers,
    .make = [](Attributes const& attributes) -> std::unique_ptr<Toxic>
    { return std::make_unique<ResetPeer>(attributes); }};

} // namespace simulator::faults
