// A host's mistake that the thread sanitizer must not miss: a continuation writes what the caller reads without waiting
// for it. The argument names the thread on which it runs.
#include <atomic>
#include <cstring>
#include <memory>

#include <QCoreApplication>
#include <QThread>

#include <KeloCommunicationLib/connection/TessalyConnection.h>

#include <testkit/RawServer.h>

namespace
{

int value = 0;
// Tells that the continuation has run, and orders nothing.
std::atomic<bool> hasRun = false;

void write()
{
    value = 1;
    hasRun.store(true, std::memory_order_relaxed);
}

int read()
{
    while (!hasRun.load(std::memory_order_relaxed))
    {
    }
    return value;
}

int raceWithTheIoThread(TessalyConnection const& connection)
{
    connection.getShippingAddresses(QStringLiteral("I")).then([](auto const&) { write(); });
    return read();
}

int raceWithTheContextsThread(TessalyConnection const& connection)
{
    QThread thread;
    auto const context = std::make_unique<QObject>();
    context->moveToThread(&thread);
    thread.start();
    connection.getShippingAddresses(QStringLiteral("I")).then(context.get(), [](auto const&) { write(); });
    int const result = read();
    thread.quit();
    thread.wait();
    return result;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication const application(argc, argv);
    testkit::RawServer const server;
    auto const connection = TessalyConnection::makeConnection(server.url(), {}, {});
    bool const onIoThread = argc > 1 && std::strcmp(argv[1], "io") == 0;
    return (onIoThread ? raceWithTheIoThread(*connection) : raceWithTheContextsThread(*connection)) == 1 ? 0 : 1;
}
