#include "simulator/faults/ToxicKinds.h"

namespace simulator::faults
{

namespace
{

class LimitData final : public Toxic
{
public:
    explicit LimitData(Attributes const& attributes) : left_(attributes["bytes"]) {}

    bool pass(QByteArray const& bytes, Flow& flow) override
    {
        auto const piece = bytes.left(left_);
        left_ -= piece.size();
        if (!piece.isEmpty() && !flow.forward(piece))
        {
            return false;
        }
        if (left_ > 0)
        {
            return true;
        }
        flow.countFired();
        flow.close();
        return false;
    }

private:
    qint64 left_;
};

constexpr Member attributeMembers[] = {
    integer("bytes", 0, 1LL << 40, "100", "that pass"),
};

} // namespace

ToxicKind const limitData = {
    .name = "limit_data",
    .meaning = "The connection is closed once so much has passed.",
    .attributes = attributeMembers,
    .make = [](Attributes const& attributes) -> std::unique_ptr<Toxic>
    { return std::make_unique<LimitData>(attributes); }};

} // namespace simulator::faults
