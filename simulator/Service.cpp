#include "simulator/Service.h"

#include "simulator/Simulator.h"
#include "simulator/StateJson.h"

namespace simulator
{

namespace
{

std::vector<Route> contractRoutes()
{
    std::vector<Route> all;
    for (auto const& family : families())
    {
        auto routes = family.routes();
        std::move(routes.begin(), routes.end(), std::back_inserter(all));
    }
    return all;
}

QByteArray basicAuthorization(SimulatorOptions const& options)
{
    return options.username.isEmpty() ? QByteArray()
                                      : "Basic " + (options.username + ':' + options.password).toUtf8().toBase64();
}

} // namespace

Service::Service(SimulatorOptions const& options)
    : expectedAuthorization_(basicAuthorization(options)),
      log_(options.log),
      contract_(contractRoutes()),
      unmatched_(options.unmatched),
      basePath_(options.basePath.toUtf8()),
      control_(desk_, contract_, options.listenAddress.toLatin1())
{
    desk_.speaksTls = options.tls;
    if (options.recordings.empty())
    {
        desk_.start = options.state.isEmpty() ? seededState(options.seed) : stateFromText(options.state);
    }
    else
    {
        startReplay(options);
    }
    desk_.reset();
}

void Service::startReplay(SimulatorOptions const& options)
{
    Recording recording(options.recordings, contract_, basePath_);
    basePath_ = recording.basePath;
    for (auto const& id : recording.installations)
    {
        desk_.start.installations.insert(id, "as recorded");
    }
    desk_.replay.emplace(std::move(recording), options.recordedDelays, options.tls);
}

void Service::stopWaiting()
{
    Lock const lock(mutex_);
    isStopping_ = true;
    stopping_.notify_all();
}

void Service::setFaultProxy(faults::FaultProxy* proxy)
{
    Lock const lock(mutex_);
    desk_.faultProxy = proxy;
}

void Service::addFault(QJsonObject const& rule)
{
    Lock const lock(mutex_);
    control_.addFault(rule);
    ++desk_.changes;
}

void Service::clearFaults()
{
    Lock const lock(mutex_);
    desk_.faults.clear();
    ++desk_.changes;
}

Answer Service::handle(HttpRequest const& request)
{
    Lock lock(mutex_);
    auto const below = belowBase(request.target);
    if (Target const target(below.isEmpty() ? request.target : below); Control::isControl(target))
    {
        return control(request, target);
    }
    auto const number = desk_.journal.add(request);
    ++desk_.changes;
    Journal::Outcome outcome;
    auto answer = answerTo(request, number, outcome, lock);
    desk_.journal.complete(number, outcome, answer);
    ++desk_.changes;
    lock.unlock();
    if (unmatched_ && !outcome.unmatched.isEmpty())
    {
        unmatched_(outcome.unmatched);
    }
    if (log_)
    {
        log_(QStringLiteral("%1 %2 -> %3 %4")
                 .arg(
                     QString::fromUtf8(request.method), QString::fromUtf8(request.target),
                     QString::number(answer.status), outcome.operation));
    }
    return answer;
}

QByteArray Service::belowBase(QByteArray const& target) const
{
    return target.startsWith(basePath_ + '/') ? target.mid(basePath_.size()) : QByteArray();
}

void Service::authorize(HttpRequest const& request) const
{
    if (!expectedAuthorization_.isEmpty() && request.header("Authorization") != expectedAuthorization_)
    {
        throw Refusal(Reason::Unauthorized, {});
    }
}

Answer Service::answerTo(HttpRequest const& request, quint64 number, Journal::Outcome& outcome, Lock& lock)
try
{
    auto const work =
        desk_.replay ? recordingFor(request, number, outcome, lock) : operationFor(request, outcome.operation);
    auto const fault = desk_.faults.fire(outcome.operation);
    if (!fault)
    {
        return work();
    }
    outcome.fault = fault->id;
    outcome.faultKind = QLatin1String(fault->kind->name);
    wait(lock, fault->delay);
    if (auto const replacement = fault->replacement())
    {
        return *replacement;
    }
    auto answer = work();
    fault->distort(answer);
    return answer;
}
catch (Refusal const& refusal)
{
    return refusal.answer();
}

Service::Work Service::operationFor(HttpRequest const& request, QString& operation)
{
    authorize(request);
    auto const below = belowBase(request.target);
    if (below.isEmpty())
    {
        throw Refusal(Reason::UnknownPath, QString::fromUtf8(request.target + "; all are below " + basePath_ + '/'));
    }
    Target const target(below);
    auto const& route = Router::choose(contract_.candidates(request.method, target), request.body);
    operation = QLatin1String(route.operation);
    return [this, &route, &request, target] { return Router::run(route, target, request, desk_.state); };
}

Service::Work Service::recordingFor(HttpRequest const& request, quint64 number, Journal::Outcome& outcome, Lock& lock)
{
    outcome.operation = operationOf(contract_, request.method, belowBase(request.target), request.body);
    return [this, &request, number, &outcome, &lock]
    {
        auto const found = desk_.replay->answerTo(request, number);
        outcome.unmatched = found.unmatched;
        wait(lock, found.time);
        return found.answer;
    };
}

void Service::wait(Lock& lock, std::chrono::milliseconds time)
{
    stopping_.wait_for(lock, time, [this] { return isStopping_; });
}

Answer Service::control(HttpRequest const& request, Target const& target)
try
{
    return control_.handle(request, target);
}
catch (Refusal const& refusal)
{
    return refusal.answer();
}

} // namespace simulator
