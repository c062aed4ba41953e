#pragma once

#include "simulator/Control.h"

#include <condition_variable>
#include <mutex>

namespace simulator
{

struct SimulatorOptions;

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
    Answer answerTo(HttpRequest const& request, QByteArray const& target, Journal::Outcome& outcome, Lock& lock);
    Answer control(HttpRequest const& request, Target const& target);
    /// Without the base path; empty if it does not begin with it.
    QByteArray belowBase(QByteArray const& target) const;

    QByteArray const expectedAuthorization_; // empty: anybody may come in
    std::function<void(QString const&)> const log_;
    Router const contract_;
    QByteArray const basePath_; // as "/api/v1", or empty
    Desk desk_;
    Control control_;
    std::mutex mutex_;
    std::condition_variable stopping_;
    bool isStopping_ = false;
};

} // namespace simulator
