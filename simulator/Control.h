#pragma once

#include "simulator/Desk.h"
#include "simulator/Routing.h"

namespace simulator
{

/// The control resources below "/_control", by which a test or a demonstration plays the rest of the world. They ask
/// for no credentials and stand in no journal; GET /_control lists them. They answer this machine's own programs and
/// pages of their own origin, lest a page in a browser use them by way of another name for this machine.
class Control
{
public:
    /// `contract`: the operations that faults and expectations may name. `listenAddress`: by which the service can be
    /// addressed beside the loopback ones.
    Control(Desk& desk, Router const& contract, QByteArray listenAddress);

    static bool isControl(Target const& target);
    /// Throws a Refusal.
    Answer handle(HttpRequest const& request, Target const& target);
    /// Does what POST fault does and returns the fault's number; throws a Refusal.
    int addFault(QJsonObject const& rule);

private:
    std::vector<Route> resources();
    void checkOrigin(HttpRequest const& request) const;
    QJsonObject index() const;

    Desk& desk_;
    Router const& contract_;
    QByteArray const listenAddress_;
    Router const routes_;
};

} // namespace simulator
