#include "simulator/faults/ToxicKinds.h"

namespace simulator::faults
{

namespace
{

class Slicer final : public Toxic
{
public:
    explicit Slicer(Attributes const& attributes)
        : size_(attributes["average_size"]), variation_(attributes["size_variation"]), delay_(attributes["delay"])
    {
    }

    bool pass(QByteArray const& bytes, Flow& flow) override
    {
        flow.countFired();
        for (qsizetype sent = 0; sent < bytes.size();)
        {
            auto const piece = bytes.mid(sent, std::max<qint64>(1, size_ + flow.random(-variation_, variation_)));
            if (!flow.forward(piece))
            {
                return false;
            }
            sent += piece.size();
            flow.pause(delay_);
        }
        return true;
    }

private:
    qint64 const size_;
    qint64 const variation_;
    std::chrono::microseconds const delay_;
};

constexpr Member attributeMembers[] = {
    integer("average_size", 1, 1 << 30, "64", "bytes of a piece"),
    integer("size_variation", 0, 1 << 30, "32", "bytes more or less"),
    integer("delay", 0, 1'000'000'000, "100", "microseconds between the pieces"),
};

} // namespace

ToxicKind const slicer = {
    .name = "slicer",
    .meaning = "Data comes in pieces.",
    .attributes = attributeMembers,
    .make = [](Attributes const& attributes) -> std::unique_ptr<Toxic>
    { return std::make_unique<Slicer>(attributes); }};

} // namespace simulator::faults
