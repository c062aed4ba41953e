// Which continuations are called, with what, and on which thread.
#include <memory>
#include <stdexcept>
#include <string>

#include <platform/threading/Future.h>

#include "testkit/platform/Race.h"
#include "testkit/platform/Rows.h"
#include "testkit/platform/Threads.h"

namespace platformcheck
{

namespace
{

using threading::Future;
using threading::Promise;

void valueOrFuture()
{
    Promise<int> promise;
    Promise<int> dropped;
    int skippedCalls = 0;
    auto const doubled = promise.future().then([](int const& value) { return 2 * value; });
    auto const chained = doubled.then([](Future<int> const& future) { return std::to_string(future.get()); });
    auto const nothing = promise.future().then([](int const&) {});
    auto const skipped = dropped.future().then([&skippedCalls](int const& value) { return value + ++skippedCalls; });
    auto const told = dropped.future().then([](Future<int> const& future) { return future.isCanceled() ? 1 : 0; });
    promise.setValue(21);
    dropped.cancel();
    doing("one that takes the value");
    requireEqual("its result", valueOf(doubled), 42);
    requireEqual("the result of one attached to it", valueOf(chained), std::string("42"));
    requireFinished(nothing);
    require(!nothing.isCanceled(), "the future of one without a result is cancelled");
    requireEqual(
        "the result of one attached late", valueOf(doubled.then([](int const& value) { return value + 1; })), 43);
    doing("one of a cancelled future that takes the value");
    requireCanceled(skipped);
    requireEqual("the number of its calls", skippedCalls, 0);
    doing("one of a cancelled future that takes the future");
    requireEqual("what isCanceled() returns in it", valueOf(told), 1);
}

void eachOnce()
{
    Promise<int> promise;
    Future<int> const future = promise.future();
    constexpr int count = 1000;
    int calls = 0;
    for (int i = 0; i < count; ++i)
    {
        future.then([&calls](int const&) { ++calls; });
    }
    promise.setValue(1);
    requireEqual("the number of calls of 1000 continuations", calls, count);
    future.then([&calls](Future<int> const&) { ++calls; });
    requireEqual("the number of calls with one that was attached late", calls, count + 1);
}

void withoutContextWhereItFinishes()
{
    Promise<int> promise;
    auto const where = [](int const&) { return std::this_thread::get_id(); };
    auto const early = promise.future().then(where);
    std::thread::id finisher;
    std::thread other(
        [&]
        {
            finisher = std::this_thread::get_id();
            promise.setValue(1);
        });
    other.join();
    require(early.isFinished(), "it has not run when setValue() returns");
    require(valueOf(early) == finisher, "it has not run on the thread that finishes the future");
    doing("one attached late");
    auto const late = promise.future().then(where);
    require(late.isFinished(), "it has not run when then() returns");
    require(valueOf(late) == std::this_thread::get_id(), "it has run on another thread");
}

void contextDecidesTheThread()
{
    LoopThread loop;
    auto const where = [](int const&) { return QThread::currentThread(); };
    for (bool const isLate : {false, true})
    {
        doing(isLate ? "attached late" : "attached before the future ends");
        Promise<int> promise;
        if (isLate)
        {
            promise.setValue(1);
        }
        auto const call = promise.future().then(loop.context(), where);
        promise.setValue(1);
        require(valueOf(call) == loop.thread(), "it has run in another thread than its context's");
    }
}

void contextCallsThroughTheEventLoop()
{
    Application const application;
    QObject context;
    int calls = 0;
    auto const count = [&calls](int const&) { ++calls; };
    Promise<int> promise;
    auto const early = promise.future().then(&context, count);
    promise.setValue(1);
    auto const late = promise.future().then(&context, count);
    requireEqual("the number of calls before events are processed", calls, 0);
    QCoreApplication::processEvents();
    requireEqual("the number of calls after events are processed", calls, 2);
    requireFinished(early);
    requireFinished(late);
}

void goneContextIsNotCalled()
{
    Application const application;
    bool isCalled = false;
    auto const call = [&isCalled](Future<int> const&) { isCalled = true; };
    Promise<int> promise;
    doing("context destroyed before the future ends");
    auto context = std::make_unique<QObject>();
    auto const before = promise.future().then(context.get(), call);
    context.reset();
    promise.setValue(1);
    QCoreApplication::processEvents();
    requireCanceled(before);
    doing("context destroyed before its event loop comes to it");
    context = std::make_unique<QObject>();
    auto const posted = promise.future().then(context.get(), call);
    context.reset();
    QCoreApplication::processEvents();
    requireCanceled(posted);
    require(!isCalled, "a continuation is called without its context");
}

void contextRacesWithFinishing()
{
    LoopThread loop;
    std::unique_ptr<Promise<int>> promise;
    std::unique_ptr<Future<void>> derived;
    doing("a context is destroyed beside setValue()");
    race(
        [&]
        {
            promise = std::make_unique<Promise<int>>();
            auto* const context = new QObject;
            context->moveToThread(loop.thread());
            derived = std::make_unique<Future<void>>(
                promise->future().then(context, [](int const& value) { requireEqual("the value", value, 1); }));
            context->deleteLater();
        },
        [] {}, [&] { promise->setValue(1); }, [&] { requireFinished(*derived); });
}

void throwingOneIsCanceled()
{
    Promise<int> promise;
    auto const thrown = promise.future().then([](int const&) -> int { throw std::runtime_error("of the check"); });
    auto const odd = promise.future().then([](int const&) { throw 1; });
    auto const next = promise.future().then([](int const& value) { return value; });
    doing("setValue() with continuations that throw");
    promise.setValue(1);
    requireCanceled(thrown);
    requireCanceled(odd);
    requireEqual("the result of the one after them", valueOf(next), 1);
}

constexpr Row continuationsRows[] = {
    {"valueOrFuture", "One that takes T is called with a value only, one that takes Future<T> always.", valueOrFuture},
    {"eachOnce", "Any number may be attached; each is called once.", eachOnce},
    {"withoutContextWhereItFinishes", "Without a context it runs on the finishing thread, or in then().",
     withoutContextWhereItFinishes},
    {"contextDecidesTheThread", "With a context it runs in that object's thread.", contextDecidesTheThread},
    {"contextCallsThroughTheEventLoop", "And always through its event loop.", contextCallsThroughTheEventLoop},
    {"goneContextIsNotCalled", "When its context is gone it does not run, and its future is cancelled.",
     goneContextIsNotCalled},
    {"contextRacesWithFinishing", "The context may go while the future ends; the result is finished.",
     contextRacesWithFinishing},
    {"throwingOneIsCanceled", "What a continuation throws goes no further; its future is cancelled.",
     throwingOneIsCanceled},
};

} // namespace

constinit Group const continuations = {"continuations", continuationsRows};

} // namespace platformcheck
