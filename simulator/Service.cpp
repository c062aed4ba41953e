#include "simulator/Service.h"

#include "simulator/Control.h"
#include "simulator/Simulator.h"

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

void Desk::reset(unsigned newSeed)
{
    seed = newSeed;
    state = seededState(seed);
    journal.clear();
    faults.clear();
}

Service::Service(SimulatorOptions const& options)
    : expectedAuthorization_(basicAuthorization(options)),
      log_(options.log),
      contract_(contractRoutes()),
      control_(controlRoutes(desk_, contract_))
{
    desk_.speaksTls = options.tls;
    desk_.reset(options.seed);
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
    simulator::addFault(desk_, contract_, rule);
}

void Service::clearFaults()
{
    Lock const lock(mutex_);
    desk_.faults.clear();
}

Answer Service::handle(HttpRequest const& request)
{
    Lock lock(mutex_);
    Target const target(request.target);
    if (target.path.startsWith("/_control/"))
    {
        return control(request, target);
    }
    auto const number = desk_.journal.add(request);
    QString operation;
    auto answer = answerTo(request, target, operation, lock);
    desk_.journal.complete(number, operation, answer.status);
    lock.unlock();
    if (log_)
    {
        log_(QStringLiteral("%1 %2 -> %3 %4")
                 .arg(
                     QString::fromUtf8(request.method), QString::fromUtf8(request.target),
                     QString::number(answer.status), operation));
    }
    return answer;
}

void Service::authorize(HttpRequest const& request) const
{
    if (!expectedAuthorization_.isEmpty() && request.authorization != expectedAuthorization_)
    {
        throw Refusal(Reason::Unauthorized, {});
    }
}

Answer Service::answerTo(HttpRequest const& request, Target const& target, QString& operation, Lock& lock)
try
{
    authorize(request);
    auto const& route = Router::choose(contract_.candidates(request.method, target), request.body);
    operation = QLatin1String(route.operation);
    auto const fault = desk_.faults.fire(operation);
    if (!fault)
    {
        return Router::run(route, target, request, desk_.state);
    }
    stopping_.wait_for(lock, fault->delay, [this] { return isStopping_; });
    if (auto const replacement = fault->replacement())
    {
        return *replacement;
    }
    auto answer = Router::run(route, target, request, desk_.state);
    fault->distort(answer);
    return answer;
}
catch (Refusal const& refusal)
{
    return refusal.answer();
}

Answer Service::control(HttpRequest const& request, Target const& target)
try
{
    auto const& route = Router::choose(control_.candidates(request.method, target), request.body);
    return Router::run(route, target, request, desk_.state);
}
catch (Refusal const& refusal)
{
    return refusal.answer();
}

} // namespace simulator
