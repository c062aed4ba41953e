#pragma once

#include "simulator/Journal.h"
#include "simulator/Routing.h"
#include "simulator/State.h"
#include "simulator/faults/FaultProxy.h"
#include "simulator/faults/ServiceFaults.h"

#include <condition_variable>
#include <mutex>

namespace simulator
{

struct SimulatorOptions;

/// All that the service holds between requests. The service's one mutex guards it.
struct Desk
{
    State state;
    Journal journal;
    ServiceFaults faults;
    faults::FaultProxy* faultProxy = nullptr; ///< null: there is none in front
    bool speaksTls = false;
    unsigned seed = 0;

    /// Back to a fresh start: seeded state, no journal, no faults.
    void reset(unsigned newSeed);
};

/// The service without its transport: a request in, an answer out, from any number of threads.
class Service
{
public:
    explicit Service(SimulatorOptions const& options);

    Answer handle(HttpRequest const& request);
    /// Ends the delays that faults cause, those to come included.
    void stopWaiting();
    void setFaultProxy(faults::FaultProxy* proxy);
    /// Throws a Refusal.
    void addFault(QJsonObject const& rule);
    void clearFaults();

private:
    using Lock = std::unique_lock<std::mutex>;

    void authorize(HttpRequest const& request) const;
    Answer answerTo(HttpRequest const& request, Target const& target, QString& operation, Lock& lock);
    Answer control(HttpRequest const& request, Target const& target);

    QByteArray const expectedAuthorization_; // empty: anybody may come in
    std::function<void(QString const&)> const log_;
    Router const contract_;
    Desk desk_;
    Router const control_;
    std::mutex mutex_;
    std::condition_variable stopping_;
    bool isStopping_ = false;
};

} // namespace simulator
