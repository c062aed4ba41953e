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

} // namespace

/// Nothing passes any more; the connection is closed `timeout` milliseconds after the first bytes came, with 0 only
/// when the toxic is taken away.
ToxicKind const timeout = {"timeout", {{{"timeout", 0}}}, [](Attributes const& attributes) -> std::unique_ptr<Toxic> {
                               return std::make_unique<Timeout>(attributes);
                           }};

} // namespace simulator::faults
