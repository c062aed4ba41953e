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

} // namespace

/// The connection is closed once `bytes` bytes have passed.
ToxicKind const limitData = {
    "limit_data", {{{"bytes", 100}}}, [](Attributes const& attributes) -> std::unique_ptr<Toxic> {
        return std::make_unique<LimitData>(attributes);
    }};

} // namespace simulator::faults
