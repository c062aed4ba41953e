// No code of the host runs under a lock: it may call back into the same objects, even from another thread that it waits
// for. A row that hangs has found a lock.
#include <atomic>
#include <functional>
#include <memory>
#include <optional>

#include "testkit/platform/Exchanges.h"
#include "testkit/platform/Rows.h"

namespace platformcheck
{

namespace
{

using threading::Future;
using threading::Promise;

/// Everything that takes a future's lock, if it has one.
template <class T>
void callAll(Promise<T>& promise, Future<T> const& future)
{
    elsewhere(
        [&]
        {
            future.isFinished();
            future.isCanceled();
            future.waitFor(0ms);
            future.sharedStateSignals();
            future.then([](Future<T> const&) {});
            promise.onCancel([] {});
            promise.future();
            future.cancel();
        });
}

void continuationsOfFutures()
{
    for (bool const isCanceled : {false, true})
    {
        doing(text("a continuation of a future that ", isCanceled ? "is cancelled" : "gets its value"));
        Promise<int> promise;
        Future<int> const future = promise.future();
        bool isCalled = false;
        future.then(
            [&](Future<int> const&)
            {
                callAll(promise, future);
                isCalled = true;
            });
        isCanceled ? future.cancel() : static_cast<void>(promise.setValue(1));
        require(isCalled, "it is not called");
        doing("a continuation that is attached late");
        future.then([&](Future<int> const&) { callAll(promise, future); });
    }
}

void cancelHandlers()
{
    Promise<int> promise;
    Future<int> const future = promise.future();
    doing("a handler of onCancel()");
    int calls = 0;
    promise.onCancel([&] { callAll(promise, future), ++calls; });
    future.cancel();
    doing("a handler of onCancel() that is set late");
    promise.onCancel([&] { callAll(promise, future), ++calls; });
    requireEqual("the number of calls", calls, 2);
}

void slotsOfSignals()
{
    using Signals = std::remove_pointer_t<decltype(std::declval<Future<int>>().sharedStateSignals())>;
    for (auto const signal : {&Signals::aboutToStartWaiting, &Signals::canceled, &Signals::finished})
    {
        Promise<int> promise;
        Future<int> const future = promise.future();
        // What the slot calls emits the signals, too.
        std::atomic<bool> isCalled = false;
        QObject::connect(
            future.sharedStateSignals(), signal,
            [&]
            {
                if (!isCalled.exchange(true))
                {
                    callAll(promise, future);
                }
            });
        doing("a slot that is connected directly");
        future.waitFor(0ms);
        future.cancel();
        require(isCalled, "it is not called");
    }
}

void destructorsOfContinuations()
{
    Promise<int> promise;
    Future<int> const future = promise.future();
    bool isCalled = false;
    auto const attach = [&]
    {
        std::shared_ptr<int> const captured(
            new int,
            [&](int const* number)
            {
                delete number;
                callAll(promise, future);
                isCalled = true;
            });
        future.then([captured](int const&) {});
    };
    attach();
    doing("the destructor of what a continuation has captured");
    promise.setValue(1);
    require(isCalled, "it is not called");
}

/// Calls `hook` when it is copied.
struct Inquisitive
{
    Inquisitive() = default;

    Inquisitive(Inquisitive const&) { ask(); }

    Inquisitive& operator=(Inquisitive const&)
    {
        ask();
        return *this;
    }

    static void ask()
    {
        if (hook)
        {
            auto const once = std::exchange(hook, nullptr);
            once();
        }
    }

    inline static std::function<void()> hook;
};

void copiesOfValues()
{
    Promise<Inquisitive> promise;
    Future<Inquisitive> const future = promise.future();
    doing("a value that is copied by setValue()");
    Inquisitive const value;
    Inquisitive::hook = [&] { elsewhere([&] { future.isFinished(), future.waitFor(0ms); }); };
    promise.setValue(value);
    doing("a value that is copied by get()");
    Inquisitive::hook = [&] { callAll(promise, future); };
    future.get();
    require(!Inquisitive::hook, "it is not copied");
}

/// Everything that a host may call while a callback of the connection runs.
void callAll(rest::Connection& connection, rest::FutureJsonReply const& pending)
{
    elsewhere(
        [&]
        {
            connection.isConnected();
            connection.getErrorParser();
            connection.httpConnection();
            connection.setUseProxyAutoDiscovery(false);
            connection.request(get()).cancel();
            connection
                .downloadBinary(
                    relative("/x"), [](BinaryReply const&) {}, 0ms)
                .cancel();
            connection.setTraceCallback({});
            pending.cancel();
        });
}

void callbacksOfConnections()
{
    RawServer server([](RawRequest const& request)
                     { return request.target == "/stall" ? stall() : reply(200).afterRelease(); });
    auto const connection = connectTo(server.url());
    auto const pending = connection->request(get("/stall"));
    std::atomic<int> calls = 0;
    auto const callback = [&](auto const&) { callAll(*connection, pending), ++calls; };
    connection->setTraceCallback(
        [&](auto const&)
        {
            doing("the trace callback");
            callback(0);
        });
    auto const read = connection->request(get()).then(callback);
    auto const fetched = connection->downloadBinary(
        relative("/x"), [&](BinaryReply const&) { callback(0); }, 0ms);
    require(server.waitForHeld(3), "the server does not get the requests");
    doing("a callback of the connection");
    server.release();
    requireFinished(read);
    requireFinished(fetched);
    requireEqual("the number of calls", calls.load() >= 3, true);
}

void handlersOfPendingCalls()
{
    RawServer const server([](RawRequest const&) { return stall(); });
    auto connection = connectTo(server.url());
    for (bool const isClosed : {false, true})
    {
        auto const other = connection->request(get());
        auto const call = connection->request(get());
        int calls = 0;
        call.then([&](rest::FutureJsonReply const&) { callAll(*connection, other), ++calls; });
        doing(isClosed ? "a continuation that closeConnection() calls" : "a continuation that cancel() calls");
        isClosed ? connection->closeConnection() : call.cancel();
        requireEqual("the number of calls", calls, 1);
    }
}

constexpr Row locksRows[] = {
    {"continuationsOfFutures", "A continuation may use its future and promise, from another thread, too.",
     continuationsOfFutures},
    {"cancelHandlers", "So may a handler of onCancel().", cancelHandlers},
    {"slotsOfSignals", "So may a slot of sharedStateSignals().", slotsOfSignals},
    {"destructorsOfContinuations", "So may the destructor of what a continuation has captured.",
     destructorsOfContinuations},
    {"copiesOfValues", "So may the copy constructor of a value.", copiesOfValues},
    {"callbacksOfConnections", "Continuations, trace and download callbacks may use the connection.",
     callbacksOfConnections},
    {"handlersOfPendingCalls", "So may continuations of calls that are cancelled or closed.", handlersOfPendingCalls},
};

} // namespace

constinit Group const locks = {"locks", locksRows};

} // namespace platformcheck
