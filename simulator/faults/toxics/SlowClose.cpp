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

} // namespace

/// The receiver learns `delay` milliseconds late that the sender has closed.
ToxicKind const slowClose = {
    "slow_close", {{{"delay", 100}}}, [](Attributes const& attributes) -> std::unique_ptr<Toxic> {
        return std::make_unique<SlowClose>(attributes);
    }};

} // namespace simulator::faults
