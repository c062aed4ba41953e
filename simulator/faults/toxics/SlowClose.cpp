#include "simulator/faults/ToxicKinds.h"

namespace simulator::faults
{

namespace
{

class SlowClose final : public Toxic
{
public:
    explicit SlowClose(Attributes const& attributes) : delay_(attributes["delay"]) {}

    void atEnd(Flow& flow) override
    {
        flow.countFired();
        flow.pause(delay_);
    }

private:
    std::chrono::milliseconds const delay_;
};

constexpr Member attributeMembers[] = {
    integer("delay", 0, 86'400'000, "100", "milliseconds"),
};

} // namespace

ToxicKind const slowClose = {
    .name = "slow_close",
    .meaning = "The receiver learns late that the sender has closed.",
    .attributes = attributeMembers,
    .make = [](Attributes const& attributes) -> std::unique_ptr<Toxic>
    { return std::make_unique<SlowClose>(attributes); }};

} // namespace simulator::faults
