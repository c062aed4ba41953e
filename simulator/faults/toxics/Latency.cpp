#include "simulator/faults/ToxicKinds.h"

namespace simulator::faults
{

namespace
{

class Latency final : public Toxic
{
public:
    explicit Latency(Attributes const& attributes) : latency_(attributes["latency"]), jitter_(attributes["jitter"]) {}

    bool pass(QByteArray const& bytes, Flow& flow) override
    {
        flow.countFired();
        // Taken away during the pause, it no longer delays what it holds.
        flow.pause(std::chrono::milliseconds(std::max<qint64>(0, latency_ + flow.random(-jitter_, jitter_))));
        return flow.forward(bytes);
    }

private:
    qint64 const latency_;
    qint64 const jitter_;
};

constexpr Member attributeMembers[] = {
    integer("latency", 0, 86'400'000, "100", "milliseconds"),
    integer("jitter", 0, 86'400'000, "0", "milliseconds more or less"),
};

} // namespace

ToxicKind const latency = {
    .name = "latency",
    .meaning = "Every piece arrives later.",
    .attributes = attributeMembers,
    .make = [](Attributes const& attributes) -> std::unique_ptr<Toxic>
    { return std::make_unique<Latency>(attributes); }};

} // namespace simulator::faults
