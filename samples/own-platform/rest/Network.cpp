#include "Network.h"

#include <utility>

#include <QCoreApplication>
#include <QHostAddress>
#include <QNetworkAccessManager>
#include <QNetworkProxyFactory>

#include <platform/threading/Workers.h>

#include "Call.h"

namespace rest
{

namespace
{

class SystemProxies : public QNetworkProxyFactory
{
public:
    QList<QNetworkProxy> queryProxy(QNetworkProxyQuery const& query) override
    {
        QString const host = query.peerHostName();
        bool const isLoopback = host == QLatin1String("localhost") || QHostAddress(host).isLoopback();
        return isLoopback ? QList<QNetworkProxy>{QNetworkProxy::NoProxy} : systemProxyForQuery(query);
    }
};

void useProxies(QNetworkAccessManager& manager, bool systems)
{
    // Either takes the place of the other.
    if (!systems)
    {
        manager.setProxy(QNetworkProxy::NoProxy);
    }
    else if (manager.proxyFactory() == nullptr)
    {
        manager.setProxyFactory(new SystemProxies);
    }
}

} // namespace

std::shared_ptr<Network> Network::instance()
{
    static auto const network = std::make_shared<Network>();
    return network;
}

Network::Network()
{
    // Made before, the workers are destroyed after the thread that hands them work.
    threading::workers();
    thread_.setObjectName(QStringLiteral("network"));
    inThread_.moveToThread(&thread_);
    // The objects of a thread are destroyed there.
    QObject::connect(
        &thread_, &QThread::finished, &inThread_,
        [this]
        {
            for (auto const& [id, call] : std::exchange(calls_, {}))
            {
                delete call;
            }
        });
    thread_.start();
    qAddPostRoutine([] { instance()->end(); });
}

Network::~Network()
{
    end();
}

void Network::end()
{
    {
        std::lock_guard const lock(mutex_);
        hasEnded_ = true;
    }
    thread_.quit();
    thread_.wait();
    // Calls that have not begun are cancelled with their promises.
    QCoreApplication::removePostedEvents(&inThread_);
}

std::shared_ptr<QNetworkAccessManager> Network::makeManager()
{
    std::shared_ptr<QNetworkAccessManager> manager(
        new QNetworkAccessManager, [](QNetworkAccessManager* unused) { unused->deleteLater(); });
    manager->moveToThread(&thread_);
    return manager;
}

void Network::start(CallId id, Exchange exchange, std::function<void(Outcome)> done)
{
    post([this, id, exchange = std::move(exchange), done = std::move(done)]() mutable
         { begin(id, std::move(exchange), std::move(done)); });
}

void Network::begin(CallId id, Exchange exchange, std::function<void(Outcome)> done)
{
    useProxies(*exchange.manager, exchange.usesSystemProxies);
    calls_[id] = new Call(
        std::move(exchange),
        [this, id, done = std::move(done)](Outcome outcome)
        {
            // Not deleted here, in the middle of its signal.
            calls_.extract(id).mapped()->deleteLater();
            done(std::move(outcome));
        });
}

void Network::abort(CallId id)
{
    post(
        [this, id]
        {
            if (auto const call = calls_.extract(id))
            {
                delete call.mapped();
            }
        });
}

void Network::post(std::function<void()> task)
{
    std::lock_guard const lock(mutex_);
    if (!hasEnded_)
    {
        QMetaObject::invokeMethod(&inThread_, std::move(task), Qt::QueuedConnection);
    }
}

} // namespace rest
