// Coroutines over futures, and futures as Qt's.
#include <atomic>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <QCoreApplication>

#include <gmock/gmock.h>

#include <KeloCommunicationLib/async/Await.h>
#include <KeloCommunicationLib/async/QFuture.h>
#include <testkit/platform/Race.h>
#include <tests/support/LogCapture.h>

namespace test
{

namespace
{

using KeloCommunicationLib::fromQFuture;
using KeloCommunicationLib::on;
using KeloCommunicationLib::toQFuture;
using threading::Future;
using threading::makeReadyFuture;
using threading::Promise;

/// A local of a coroutine. All are gone when the frames are.
struct Local
{
    Local() { ++alive; }
    Local(Local const&) = delete;
    Local& operator=(Local const&) = delete;
    ~Local() { --alive; }

    static inline std::atomic<int> alive = 0;
};

/// Whether and where a coroutine has gone on.
struct Track
{
    int follow(int value)
    {
        ++resumed;
        thread = std::this_thread::get_id();
        return value < 0 ? throw std::runtime_error("negative") : value + 1;
    }

    std::atomic<int> resumed = 0;
    std::thread::id thread;
};

class Board : public QObject
{
public:
    Future<int> count(std::shared_ptr<Track> track, Future<int> awaited) const
    {
        Local const local;
        co_return track->follow(co_await awaited);
    }
};

template <class Awaited, class... Objects>
Future<int> count(std::shared_ptr<Track> track, Awaited awaited, Objects... /*objects*/)
{
    Local const local;
    co_return track->follow(co_await std::move(awaited));
}

/// A coroutine type as other libraries have them: its owner destroys it.
struct Task
{
    struct promise_type
    {
        Task get_return_object() { return {std::coroutine_handle<promise_type>::from_promise(*this)}; }
        std::suspend_never initial_suspend() { return {}; }
        std::suspend_always final_suspend() noexcept { return {}; }
        void return_void() {}
        void unhandled_exception() { std::terminate(); }
    };

    std::coroutine_handle<> coroutine;
};

template <class Awaited>
Task follow(std::shared_ptr<Track> track, Awaited awaited)
{
    Local const local;
    try
    {
        track->follow(co_await std::move(awaited));
    }
    catch (KeloCommunicationLib::Canceled const&)
    {
        track->follow(0);
    }
}

/// A coroutine that waits.
struct Waiting
{
    std::unique_ptr<Board> board = std::make_unique<Board>();
    std::shared_ptr<Track> track = std::make_shared<Track>();
    Promise<int> promise;
    Future<int> awaited = promise.future();
    Future<int> outer;
    Task task;
};

struct Form
{
    char const* name;
    Future<int> (*start)(Waiting& waiting);
    bool hasObject;
} const forms[] = {
    {"without an object", [](Waiting& w) { return count(w.track, w.awaited); }, false},
    {"with an object", [](Waiting& w) { return count(w.track, w.awaited, w.board.get()); }, true},
    {"on an object", [](Waiting& w) { return count(w.track, on(w.board.get(), w.awaited)); }, true},
    {"of an object", [](Waiting& w) { return w.board->count(w.track, w.awaited); }, true}};

struct Event
{
    char const* name = "";
    void (*happen)(Waiting& waiting) = nullptr;
    int value = 0;
    int resumed = 0;
    bool cancelsAwaited = false;
    bool mayComeBefore = false;
} const events[] = {
    {"object destroyed", [](Waiting& w) { w.board.reset(); }},
    {"value", [](Waiting& w) { w.promise.setValue(1); }, 2, 1, false, true},
    {"exception", [](Waiting& w) { w.promise.setValue(-1); }, 0, 1, false, true},
    {"cancelled", [](Waiting& w) { w.awaited.cancel(); }, 0, 0, true, true},
    {"given up", [](Waiting& w) { w.promise = Promise<int>(); }, 0, 0, true, true},
    {"coroutine cancelled", [](Waiting& w) { w.outer.cancel(); }, 0, 0, true}};

class Async : public testing::Test
{
protected:
    int argumentCount_ = 0;
    QCoreApplication application_{argumentCount_, nullptr};
};

void onOtherThread(std::function<void()> const& function)
{
    std::thread(function).join();
}

/// The event comes before the coroutine, which then begins on another thread, or while it waits.
void tryCoroutine(Form const& form, Event const& event, bool comesBefore)
{
    SCOPED_TRACE(std::string(event.name) + (comesBefore ? " before " : " ") + form.name);
    Waiting waiting;
    auto const happen = [&] { event.happen(waiting); };
    auto const start = [&] { waiting.outer = form.start(waiting); };
    if (comesBefore)
    {
        happen();
        onOtherThread(start);
    }
    else
    {
        start();
        EXPECT_EQ(Local::alive, 1);
        // An object is destroyed in its thread.
        &event == events ? happen() : onOtherThread(happen);
    }
    EXPECT_EQ(waiting.track->resumed, form.hasObject ? 0 : event.resumed);
    QCoreApplication::processEvents();
    EXPECT_EQ(waiting.track->resumed, event.resumed);
    EXPECT_EQ(waiting.track->thread == std::this_thread::get_id(), event.resumed > 0 && form.hasObject);
    ASSERT_TRUE(waiting.outer.isFinished());
    EXPECT_EQ(waiting.outer.isCanceled(), event.value == 0);
    EXPECT_EQ(waiting.outer.get(), event.value);
    EXPECT_EQ(waiting.awaited.isCanceled(), event.cancelsAwaited);
    EXPECT_EQ(Local::alive, 0);
}

TEST_F(Async, coroutineEndsWithWhatItWaitsFor)
{
    LogCapture const log;
    for (Form const& form : forms)
    {
        for (Event const& event : events)
        {
            form.hasObject || &event != events ? tryCoroutine(form, event, false) : void();
            event.mayComeBefore ? tryCoroutine(form, event, true) : void();
        }
    }
    std::string const warning = "An exception left a coroutine: negative";
    EXPECT_EQ(log.warnings(), std::vector<std::string>(2 * std::size(forms), warning));

    Promise<int> first;
    Promise<int> second;
    Future<int> outer;
    auto const cancelItself = [&]() -> Future<int>
    {
        co_await first.future();
        outer.cancel();
        co_return co_await second.future();
    };
    outer = cancelItself();
    first.setValue(1);
    EXPECT_TRUE(second.future().isCanceled());
}

TEST_F(Async, coroutineOfAnotherTypeMayBeDestroyedWhileItWaits)
{
    for (unsigned row = 0; row < 8; ++row)
    {
        bool const isDestroyed = (row & 1U) != 0;
        Waiting w;
        w.task = (row & 2U) != 0 ? follow(w.track, on(w.board.get(), w.awaited)) : follow(w.track, w.awaited);
        EXPECT_EQ(Local::alive, 1);
        isDestroyed ? w.task.coroutine.destroy() : void();
        (row & 4U) != 0 ? w.promise.cancel() : void(w.promise.setValue(1));
        QCoreApplication::processEvents();
        EXPECT_EQ(w.track->resumed, isDestroyed ? 0 : 1);
        EXPECT_EQ(Local::alive, 0);
        isDestroyed ? void() : w.task.coroutine.destroy();
    }
    Waiting w;
    w.task = follow(w.track, on(w.board.get(), w.awaited));
    w.board.reset();
    w.promise.setValue(1);
    EXPECT_EQ(Local::alive, 1) << "its owner's to destroy";
    w.task.coroutine.destroy();
}

TEST_F(Async, finishingMeetsAnEndOfAnotherKind)
{
    void (*const ends[])(Waiting & waiting) = {
        [](Waiting& w) { w.task.coroutine.destroy(); }, events[0].happen, events[3].happen, events[5].happen};
    for (auto const& end : ends)
    {
        std::unique_ptr<Waiting> waiting;
        std::size_t form = 0;
        auto const prepare = [&]
        {
            waiting = std::make_unique<Waiting>();
            Waiting& w = *waiting;
            form = &end == &ends[1] ? 3 : (form + 1) % std::size(forms);
            &end == ends ? void(w.task = follow(w.track, on(w.board.get(), w.awaited)))
                         : void(w.outer = forms[form].start(w));
        };
        auto const check = [&]
        {
            QCoreApplication::processEvents();
            EXPECT_TRUE(waiting->outer.isFinished());
            EXPECT_EQ(Local::alive, 0);
        };
        platformcheck::race(
            prepare, [&] { end(*waiting); }, [&] { waiting->promise.setValue(1); }, check);
    }
}

/// Knows how often it was copied on its way.
struct Cargo
{
    Cargo() = default;
    Cargo(Cargo const& other) : copies(other.copies + 1) {}
    Cargo(Cargo&& other) noexcept = default;
    Cargo& operator=(Cargo const& other) = delete;
    Cargo& operator=(Cargo&& other) noexcept = default;
    ~Cargo() = default;

    int copies = 0;
};

Future<Cargo> handOn(Future<Cargo> awaited)
{
    // Many that are finished do not pile up on the stack.
    for (int round = 0; round < 100'000; ++round)
    {
        co_await makeReadyFuture(round);
    }
    co_return co_await std::move(awaited);
}

TEST_F(Async, valuesAreMoved)
{
    Promise<Cargo> promise;
    QFuture<Cargo> arrived = toQFuture(handOn(promise.future()));
    onOtherThread([&promise] { std::move(promise).setValue(Cargo()); });
    EXPECT_EQ(arrived.takeResult().copies, 0);
}

TEST_F(Async, futuresFinishAndCancelEachOtherAsQtsAndBack)
{
    auto const seven = toQFuture(makeReadyFuture(6)).then([](int value) { return value + 1; });
    EXPECT_EQ(fromQFuture(seven).get(), 7);

    Promise<void> dropped;
    QFuture<void> const canceled = toQFuture(dropped.future());
    auto const andBack = fromQFuture(canceled);
    dropped.cancel();
    EXPECT_TRUE(canceled.isFinished() && canceled.isCanceled());
    EXPECT_TRUE(andBack.isCanceled());

    Promise<void> pending;
    fromQFuture(toQFuture(pending.future())).cancel();
    QCoreApplication::processEvents();
    EXPECT_TRUE(pending.future().isCanceled());

    LogCapture const log;
    QPromise<int> failing;
    auto const failed = fromQFuture(failing.future());
    failing.start();
    failing.setException(std::make_exception_ptr(std::runtime_error("lost")));
    failing.finish();
    EXPECT_TRUE(failed.isCanceled());
    EXPECT_THAT(log.warnings(), testing::ElementsAre("An exception ended a QFuture: lost"));
}

} // namespace

} // namespace test
