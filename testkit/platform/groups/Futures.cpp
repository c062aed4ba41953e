// A future finishes exactly once, whoever finishes, cancels, waits or dies first.
#include <atomic>
#include <memory>
#include <optional>
#include <string>
#include <vector>

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
using namespace std::chrono_literals;

void finishesWithItsFirstValue()
{
    Promise<int> promise;
    Future<int> const future = promise.future();
    require(!future.isFinished() && !future.isCanceled(), "a new promise's future is finished");
    require(promise.setValue(3), "the first setValue() returns false");
    require(!promise.setValue(4), "the second setValue() returns true");
    promise.cancel();
    future.cancel();
    requireEqual("the value after a second one and cancel()", valueOf(future), 3);
    requireEqual("the value of another handle", valueOf(promise.future()), 3);
    requireEqual("the value of makeReadyFuture(5)", valueOf(threading::makeReadyFuture(5)), 5);

    Promise<void> nothing;
    require(nothing.setValue(), "setValue() of a Promise<void> returns false");
    requireFinished(nothing.future());
    require(!nothing.future().isCanceled(), "a Future<void> with its value is cancelled");
}

void cancelFinishes()
{
    for (bool const byConsumer : {true, false})
    {
        doing(byConsumer ? "Future::cancel()" : "Promise::cancel()");
        Promise<int> promise;
        Future<int> const future = promise.future();
        byConsumer ? future.cancel() : promise.cancel();
        require(!promise.setValue(5), "setValue() of what is cancelled returns true");
        requireCanceled(future);
    }
}

void droppedPromiseCancels()
{
    auto promise = std::make_unique<Promise<int>>();
    Future<int> const future = promise->future();
    doing("moving a promise");
    Promise<int> moved = std::move(*promise);
    promise.reset();
    require(!future.isFinished(), "the future ends with the promise that was moved from");
    doing("replacing a promise by another");
    moved = Promise<int>();
    requireCanceled(future);
    doing("destroying a promise");
    std::optional<Promise<void>> dropped(std::in_place);
    Future<void> const other = dropped->future();
    dropped.reset();
    requireCanceled(other);
}

void cancelTellsTheProducerOnce()
{
    int told = 0;
    Promise<int> promise;
    Future<int> const future = promise.future();
    Future<void> const derived = future.then([](int const&) {});
    promise.onCancel([&told] { ++told; });
    doing("cancelling the future of a continuation");
    derived.cancel();
    require(!future.isFinished(), "the future that it is attached to ends, too");
    doing("cancelling a future twice");
    future.cancel();
    future.cancel();
    requireEqual("the number of calls of its handler", told, 1);
    promise.onCancel([&told] { told += 10; });
    requireEqual("the number of calls, with 10 for a handler that came late,", told, 11);

    doing("cancelling a future that has its value");
    Promise<int> finished;
    finished.onCancel([&told] { told = -1; });
    finished.setValue(1);
    finished.future().cancel();
    finished.onCancel([&told] { told = -1; });
    requireEqual("what the handlers have counted", told, 11);
}

void signalsAreEmittedOnce()
{
    Promise<int> promise;
    Future<int> const future = promise.future();
    auto* const signalObject = future.sharedStateSignals();
    using Signals = std::remove_pointer_t<decltype(future.sharedStateSignals())>;
    std::string order;
    QObject::connect(signalObject, &Signals::canceled, [&order] { order += " canceled"; });
    QObject::connect(signalObject, &Signals::finished, [&order] { order += " finished"; });
    QObject::connect(
        signalObject, &Signals::aboutToStartWaiting,
        [&]
        {
            order += " aboutToStartWaiting";
            future.cancel();
        });
    future.wait();
    future.wait();
    requireEqual("the order of the signals", order, std::string(" aboutToStartWaiting canceled finished"));
}

void whenAllGathersAll()
{
    std::vector<Promise<int>> promises(3);
    auto const all = threading::whenAll(std::vector{promises[0].future(), promises[1].future(), promises[2].future()});
    promises[2].setValue(2);
    promises[0].cancel();
    require(!all.isFinished(), "it is finished before all parts are");
    promises[1].setValue(1);
    auto const parts = [&all]
    {
        requireFinished(all);
        return all.get();
    }();
    requireEqual("the number of parts", parts.size(), 3U);
    requireCanceled(parts[0]);
    requireEqual("the second part", valueOf(parts[1]), 1);
    requireEqual("the third part", valueOf(parts[2]), 2);
    doing("whenAll() of nothing");
    requireFinished(threading::whenAll(std::vector<Future<int>>()));
    doing("cancelling what whenAll() returns");
    Promise<int> open;
    threading::whenAll(std::vector{open.future()}).cancel();
    require(!open.future().isFinished(), "a part ends with it");
}

/// What races are about.
struct Contested
{
    std::unique_ptr<Promise<std::shared_ptr<int>>> promise;
    std::optional<Future<std::shared_ptr<int>>> future;
    std::atomic<int> calls = 0;

    void prepare()
    {
        promise = std::make_unique<Promise<std::shared_ptr<int>>>();
        future = promise->future();
        calls = 0;
    }

    void attach()
    {
        future->then(
            [this](Future<std::shared_ptr<int>> const& finished)
            {
                ++calls;
                require(finished.isFinished(), "a continuation gets a future that is not finished");
                require(
                    (finished.get() == nullptr) == finished.isCanceled(),
                    "a future is cancelled and has a value, or neither");
            });
    }

    void finish() { promise->setValue(std::make_shared<int>(1)); }

    void requireOneCall() const { requireEqual("the number of calls of a continuation", calls.load(), 1); }
};

void attachingRacesWithFinishing()
{
    Contested contested;
    auto const prepare = [&] { contested.prepare(); };
    auto const attach = [&] { contested.attach(); };
    auto const check = [&] { contested.requireOneCall(); };
    doing("then() beside setValue()");
    race(
        prepare, attach, [&] { contested.finish(); }, check);
    doing("then() beside the promise's destruction");
    race(
        prepare, attach, [&] { contested.promise.reset(); }, check);
}

void cancellingRacesWithFinishing()
{
    Contested contested;
    std::atomic<int> told = 0;
    doing("cancel() beside onCancel() and setValue()");
    race(
        [&]
        {
            contested.prepare();
            contested.attach();
            told = 0;
        },
        [&] { contested.future->cancel(); },
        [&]
        {
            contested.promise->onCancel([&told] { ++told; });
            contested.finish();
        },
        [&]
        {
            contested.requireOneCall();
            requireEqual(
                "the number of calls of the cancel handler", told.load(), contested.future->isCanceled() ? 1 : 0);
        });
}

void waitingRacesWithFinishing()
{
    Contested contested;
    doing("get() beside setValue()");
    race(
        [&] { contested.prepare(); },
        [&] { require(contested.future->get() != nullptr, "get() returns before there is a value"); },
        [&] { contested.finish(); }, [] {});
    doing("wait() beside cancel()");
    race(
        [&] { contested.prepare(); }, [&] { contested.future->wait(); }, [&] { contested.future->cancel(); },
        [&] { requireCanceled(*contested.future); });
}

void lastHandlesRaceWithFinishing()
{
    Contested contested;
    doing("the last future goes beside setValue() and the promise's destruction");
    race(
        [&]
        {
            contested.prepare();
            contested.attach();
        },
        [&] { contested.future.reset(); },
        [&]
        {
            contested.finish();
            contested.promise.reset();
        },
        [&] { contested.requireOneCall(); });
}

void whenAllRacesWithItsParts()
{
    std::optional<Promise<int>> first;
    std::optional<Promise<int>> second;
    std::optional<Future<std::vector<Future<int>>>> all;
    doing("one part gets its value beside the other's cancel()");
    race(
        [&]
        {
            first.emplace();
            second.emplace();
            all = threading::whenAll(std::vector{first->future(), second->future()});
        },
        [&] { first->setValue(1); }, [&] { second->cancel(); },
        [&]
        {
            requireFinished(*all);
            requireEqual("the number of parts", all->get().size(), 2U);
        });
}

constexpr Row futuresRows[] = {
    {"finishesWithItsFirstValue", "The first value counts; later values and cancelling change nothing.",
     finishesWithItsFirstValue},
    {"cancelFinishes", "Cancelled by either side, a future is finished and cancelled; get() gives a default value.",
     cancelFinishes},
    {"droppedPromiseCancels", "A promise that is destroyed or replaced without a value cancels its future.",
     droppedPromiseCancels},
    {"cancelTellsTheProducerOnce", "Future::cancel() calls the handler of onCancel() once, also one set later.",
     cancelTellsTheProducerOnce},
    {"signalsAreEmittedOnce", "sharedStateSignals() tells that a wait begins, the cancelling and the end; each once.",
     signalsAreEmittedOnce},
    {"whenAllGathersAll", "whenAll() finishes with its last part, keeps their order and leaves them alone.",
     whenAllGathersAll},
    {"attachingRacesWithFinishing", "A continuation attached while the future ends is called once.",
     attachingRacesWithFinishing},
    {"cancellingRacesWithFinishing", "Of cancel() and setValue() at the same time one counts, for all who ask.",
     cancellingRacesWithFinishing},
    {"waitingRacesWithFinishing", "A wait that begins while the future ends returns.", waitingRacesWithFinishing},
    {"lastHandlesRaceWithFinishing", "Handles may go while the future ends; its continuation is called once.",
     lastHandlesRaceWithFinishing},
    {"whenAllRacesWithItsParts", "Parts of whenAll() may end at the same time.", whenAllRacesWithItsParts},
};

} // namespace

constinit Group const futures = {"futures", futuresRows};

} // namespace platformcheck
