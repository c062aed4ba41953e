#include "simulator/faults/ToxicKinds.h"

namespace simulator::faults
{

namespace
{

class Timeout final : public Toxic
{
public:
    explicit Timeout(Attributes const& attributes) : timeout_(attributes["timeout"]) {}

    bool pass(QByteArray const&, Flow& flow) override
    {
        flow.countFired();
        timeout_.count() == 0 ? flow.hang() : static_cast<void>(flow.pause(timeout_));
        flow.close();
        return false;
    }

private:
    std::chrono::milliseconds const timeout_;
};

constexpr Member attributeMembers[] = {
    integer("timeout", 0, 86'400'000, "0", "milliseconds until then; 0: when the toxic is taken away"),
};

} // namespace

ToxicKind const timeout = {
    .name = "timeout",
    .meaning = "Nothing passes any more; the connection is closed some time after the first bytes came.",
    .attributes = attributeMembers,
    .make = [](Attributes const& attributes) -> std::unique_ptr<Toxic>
    { return std::make_unique<Timeout>(attributes); }};

} // namespace simulator::faults
