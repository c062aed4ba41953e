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
    /// As "/api/v1", or empty.
    QByteArray const& basePath() const { return basePath_; }

private:
    using Lock = std::unique_lock<std::mutex>;

    /// The end of a request's way, when its operation is known and no fault has struck yet.
    using Work = std::function<Answer()>;

    void startReplay(SimulatorOptions const& options);
    void authorize(HttpRequest const& request) const;
    Answer answerTo(HttpRequest const& request, quint64 number, Journal::Outcome& outcome, Lock& lock);
    Work operationFor(HttpRequest const& request, QString& operation);
    Work recordingFor(HttpRequest const& request, quint64 number, Journal::Outcome& outcome, Lock& lock);
    void wait(Lock& lock, std::chrono::milliseconds time);
    Answer control(HttpRequest const& request, Target const& target);
    /// Without the base path; empty if it does not begin with it.
    QByteArray belowBase(QByteArray const& target) const;

    QByteArray const expectedAuthorization_; // empty: anybody may come in
    std::function<void(QString const&)> const log_;
    Router const contract_;
    std::function<void(QString const&)> const unmatched_;
    QByteArray basePath_;
    Desk desk_;
    Control control_;
    std::mutex mutex_;
    std::condition_variable stopping_;
    bool isStopping_ = false;
};

} // namespace simulator
