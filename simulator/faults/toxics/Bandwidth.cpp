#include "simulator/faults/ToxicKinds.h"

namespace simulator::faults
{

namespace
{

class Bandwidth final : public Toxic
{
public:
    explicit Bandwidth(Attributes const& attributes) : bytesPerMillisecond_(attributes["rate"]) {}

    bool pass(QByteArray const& bytes, Flow& flow) override
    {
        flow.countFired();
        // A tenth of a second's worth at a time, so that the receiver sees a slow flow and no bursts.
        auto const portion = 100 * bytesPerMillisecond_;
        for (qsizetype sent = 0; sent < bytes.size(); sent += portion)
        {
            auto const piece = bytes.mid(sent, portion);
            flow.pause(std::chrono::microseconds(1000 * piece.size() / bytesPerMillisecond_));
            if (!flow.forward(piece))
            {
                return false;
            }
        }
        return true;
    }

private:
    qint64 const bytesPerMillisecond_;
};

constexpr Member attributeMembers[] = {
    integer("rate", 1, 1'000'000'000, "64", "kilobytes a second at most"),
};

} // namespace

ToxicKind const bandwidth = {
    .name = "bandwidth",
    .meaning = "Data passes slowly.",
    .attributes = attributeMembers,
    .make = [](Attributes const& attributes) -> std::unique_ptr<Toxic>
    { return std::make_unique<Bandwidth>(attributes); }};

} // namespace simulator::faults
