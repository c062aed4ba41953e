// The ends that a host can make of a call, at each moment of the call's life, for each kind of call.
#include <algorithm>
#include <atomic>
#include <functional>
#include <memory>
#include <thread>
#include <tuple>

#include <QTemporaryFile>

#include <platform/rest/MappedFile.h>
#include <platform/rest/Progress.h>

#include "tests/lifetime/LifetimeFixture.h"

namespace test
{

namespace
{

enum class Moment : int
{
    Queued, ///< all places to the origin are taken
    Sent,   ///< the server has read the request
    MidBody,
    Finished,
    InContinuation,
    InTrace,
    InProgress ///< the last report
};

enum class Ending : int
{
    DestroyConnection,
    CloseConnection,
    CancelFuture,
    DestroyContext
};

enum class Kind : int
{
    Read,
    Write,
    Upload,
    Download,
    BlockingRead,
    BlockingUpload
};

constexpr char const* momentNames[] = {"Queued",         "Sent",    "MidBody",   "Finished",
                                       "InContinuation", "InTrace", "InProgress"};
constexpr char const* endingNames[] = {"DestroyConnection", "CloseConnection", "CancelFuture", "DestroyContext"};
constexpr char const* kindNames[] = {"Read", "Write", "Upload", "Download", "BlockingRead", "BlockingUpload"};
constexpr Kind kinds[] = {Kind::Read,     Kind::Write,        Kind::Upload,
                          Kind::Download, Kind::BlockingRead, Kind::BlockingUpload};

struct Cell
{
    Moment moment;
    Ending ending;
    Kind kind;

    bool isBlocking() const { return kind == Kind::BlockingRead || kind == Kind::BlockingUpload; }

    /// Whether the I/O thread makes the end, in code of the host's that it runs.
    bool isInside() const { return moment >= Moment::InContinuation; }

    /// A blocking call has neither future nor continuation, and its object must not go before it is in it.
    bool exists() const
    {
        bool const isOfFuture = moment == Moment::InContinuation || moment == Moment::InProgress
                                || ending == Ending::CancelFuture || ending == Ending::DestroyContext;
        return !(isBlocking() && isOfFuture) && !(kind == Kind::BlockingRead && moment == Moment::Queued);
    }

    /// Whether the consumer gets its value all the same.
    bool succeeds() const
    {
        return ending == Ending::DestroyContext || moment == Moment::Finished || moment == Moment::InContinuation;
    }

    bool reachesTheServer() const { return moment != Moment::Queued || succeeds(); }
};

bool isSuccess(QByteArray const& bytes)
{
    return !bytes.isEmpty();
}

template <class T>
bool isSuccess(rest::RestReply<T> const& reply)
{
    return reply.status.kind == 0;
}

/// A call in progress, whatever the type of its reply.
struct Running
{
    using Callback = std::function<void()>;

    std::function<bool()> succeeded;
    std::function<bool()> wasCanceled;
    Callback cancel;
    std::function<threading::Future<void>(Callback)> always;
    std::function<threading::Future<void>(Callback)> withValue;
    std::function<threading::Future<void>(QObject*, Callback)> inThreadOf;
};

template <class T>
Running running(threading::Future<T> const& future)
{
    using Finished = threading::Future<T> const&;
    Running call;
    call.succeeded = [future] { return !future.isCanceled() && isSuccess(future.get()); };
    call.wasCanceled = [future] { return future.isCanceled(); };
    call.cancel = [future] { future.cancel(); };
    call.always = [future](Running::Callback callback)
    { return future.then([callback = std::move(callback)](Finished) { callback(); }); };
    call.withValue = [future](Running::Callback callback)
    { return future.then([callback = std::move(callback)](T const&) { callback(); }); };
    call.inThreadOf = [future](QObject* context, Running::Callback callback)
    { return future.then(context, [callback = std::move(callback)](Finished) { callback(); }); };
    return call;
}

/// One call from its start to what its end leaves behind.
class Passage
{
public:
    explicit Passage(Cell cell) : cell_(cell) {}

    void run();

private:
    Action answer(RawRequest const& request) const;
    void takeAllPlaces();
    void start();
    Running send();
    template <class Send>
    Running sendBlocking(Send send);
    void reachMoment();
    void end();
    void checkCall();
    void checkServer();

    Cell const cell_;
    int const socketsBefore_ = openSockets();
    RawServer server_{[this](RawRequest const& request) { return answer(request); }};
    std::unique_ptr<TessalyConnection> bystander_ = TessalyConnection::makeConnection(server_.url(), {}, {});
    std::unique_ptr<TessalyConnection> connection_ = TessalyConnection::makeConnection(server_.url(), {}, {});
    std::unique_ptr<QObject> context_ = std::make_unique<QObject>();
    QTemporaryFile upload_;
    Running call_;
    threading::Promise<void> started_;
    threading::Promise<void> ended_;
    std::thread caller_;
    threading::Future<void> always_;
    threading::Future<void> withValue_;
    threading::Future<void> inContext_;
    std::atomic<int> alwaysRan_ = 0;
    std::atomic<int> withValueRan_ = 0;
    std::atomic<int> inContextRan_ = 0;
};

Action Passage::answer(RawRequest const& request) const
{
    QByteArray const body = "{\"Padding\":\"" + QByteArray(request.target == "/now" ? 0 : 20000, 'x') + "\"}";
    // No connection is kept for the next exchange, so one that stays open is a leak.
    Action const action = reply(200, body, {{"Connection", "close"}}).thenClose();
    if (request.target == "/now")
    {
        return action;
    }
    return cell_.moment == Moment::MidBody ? action.holdingBack(body.size() / 2) : action.afterRelease();
}

void Passage::run()
{
    ASSERT_TRUE(upload_.open() && upload_.resize(100000));
    takeAllPlaces();
    start();
    reachMoment();
    started_.setValue();
    if (cell_.isInside())
    {
        server_.release();
        ASSERT_TRUE(await(ended_.future()));
    }
    else
    {
        end();
    }
    checkCall();
    checkServer();
}

void Passage::takeAllPlaces()
{
    int const places = cell_.moment == Moment::Queued ? 6 : 0;
    for (int i = 0; i < places; ++i)
    {
        bystander_->getTempShellFile(u"other"_qs);
    }
    ASSERT_TRUE(server_.waitForHeld(places));
}

void Passage::start()
{
    if (cell_.moment == Moment::InTrace)
    {
        connection_->setTraceCallback([this](rest::TraceData const&) { end(); });
    }
    {
        rest::ProgressScope const scope(
            [this](rest::TransferProgress const& progress)
            {
                if (cell_.moment == Moment::InProgress && progress.hasEnded)
                {
                    end();
                }
            });
        call_ = send();
    }
    if (cell_.moment == Moment::InContinuation)
    {
        call_.always([this] { end(); });
    }
    always_ = call_.always([this] { ++alwaysRan_; });
    withValue_ = call_.withValue([this] { ++withValueRan_; });
    inContext_ = call_.inThreadOf(context_.get(), [this] { ++inContextRan_; });
}

Running Passage::send()
{
    switch (cell_.kind)
    {
    case Kind::Read:
        return running(connection_->getShippingAddresses(u"call"_qs));
    case Kind::Write:
        return running(connection_->createCollaborationSession(u"call"_qs));
    case Kind::Upload:
        // The file's handle here goes at once.
        return running(connection_->uploadOrderFile(u"call"_qs, rest::MappedFile(upload_.fileName()).bytes()));
    case Kind::Download:
        return running(connection_->getTempShellFile(u"call"_qs));
    case Kind::BlockingRead:
        return sendBlocking([connection = connection_.get()]
                            { return connection->getThirdPartyAuthenticationKeys(u"call"_qs).first; });
    case Kind::BlockingUpload:
        break;
    }
    return sendBlocking(
        [client = connection_->httpConnection()]
        {
            auto const request =
                rest::RequestDataCreator::makeRequest(rest::HttpMethod::Put, QUrl(u"call"_qs), QByteArray("u"), 0ms);
            return rest::isNetworkError(client.send(request)) ? KeloErrorCode::NoConnection : KeloErrorCode::Success;
        });
}

template <class Send>
Running Passage::sendBlocking(Send send)
{
    threading::Promise<rest::RestReply<void>> promise;
    auto const future = promise.future();
    caller_ = std::thread([send, promise = std::move(promise)]() mutable
                          { send() == KeloErrorCode::Success ? void(promise.setValue({})) : promise.cancel(); });
    return running(future);
}

void Passage::reachMoment()
{
    if (cell_.moment == Moment::Queued)
    {
        return;
    }
    ASSERT_TRUE(server_.waitForHeld(1));
    if (cell_.moment == Moment::MidBody)
    {
        // What was there to be read before this exchange began has been read when it is over.
        bystander_->httpConnection().send(
            rest::RequestDataCreator::makeRequest(rest::HttpMethod::Get, QUrl(u"/now"_qs)));
    }
    else if (cell_.moment == Moment::Finished)
    {
        server_.release();
        ASSERT_TRUE(always_.waitFor(patience)) << "without the events of this thread";
    }
}

void Passage::end()
{
    // Over by now, but only the server has ordered the two, and no tool sees that.
    started_.future().wait();
    switch (cell_.ending)
    {
    case Ending::DestroyConnection:
        connection_.reset();
        break;
    case Ending::CloseConnection:
        connection_->closeConnection();
        break;
    case Ending::CancelFuture:
        call_.cancel();
        break;
    case Ending::DestroyContext:
        context_.reset();
        break;
    }
    ended_.setValue();
}

void Passage::checkCall()
{
    bool const endsAtOnce = !cell_.isInside() && !cell_.isBlocking() && !cell_.succeeds();
    EXPECT_TRUE(!endsAtOnce || call_.wasCanceled()) << "once the host's call has returned";
    if (cell_.succeeds())
    {
        server_.release();
    }
    else if (cell_.moment == Moment::Sent || cell_.moment == Moment::MidBody)
    {
        EXPECT_TRUE(server_.waitForClosedByClient(1));
    }
    ASSERT_TRUE(await(always_) && await(withValue_) && await(inContext_));
    EXPECT_EQ(call_.wasCanceled(), !cell_.succeeds());
    EXPECT_EQ(call_.succeeded(), cell_.succeeds());
    EXPECT_EQ(alwaysRan_, 1);
    EXPECT_EQ(withValueRan_, cell_.succeeds() ? 1 : 0);
    EXPECT_EQ(inContextRan_, cell_.ending == Ending::DestroyContext ? 0 : 1);
}

void Passage::checkServer()
{
    if (caller_.joinable())
    {
        caller_.join();
    }
    connection_.reset();
    bystander_.reset();
    server_.release();
    auto fresh = TessalyConnection::makeConnection(server_.url(), {}, {});
    auto const afterwards = fresh->getShippingAddresses(u"fresh"_qs);
    ASSERT_TRUE(await(afterwards));
    EXPECT_EQ(afterwards.get().status.kind, 0U);
    fresh.reset();

    auto const requests = server_.requests();
    auto const seen = std::count_if(
        requests.begin(), requests.end(), [](RawRequest const& request) { return request.target.contains("call"); });
    EXPECT_EQ(seen, cell_.reachesTheServer() ? 1 : 0);
    EXPECT_TRUE(waitForSockets(socketsBefore_ + 1)) << "beside the server's own";
}

using MomentAndEnding = std::tuple<Moment, Ending>;

class Moments : public LifetimeFixture, public testing::WithParamInterface<MomentAndEnding>
{
};

TEST_P(Moments, endTheCallOnceAndLeaveNothing)
{
    auto const [moment, ending] = GetParam();
    for (Kind const kind : kinds)
    {
        Cell const cell{moment, ending, kind};
        SCOPED_TRACE(kindNames[static_cast<int>(kind)]);
        for (int i = 0; cell.exists() && i < repetitions() && !HasFailure(); ++i)
        {
            Passage(cell).run();
        }
    }
}

std::string nameOf(testing::TestParamInfo<MomentAndEnding> const& row)
{
    auto const [moment, ending] = row.param;
    return std::string(momentNames[static_cast<int>(moment)]) + '_' + endingNames[static_cast<int>(ending)];
}

INSTANTIATE_TEST_SUITE_P(
    Lifetime, Moments,
    testing::Combine(
        testing::Values(
            Moment::Queued, Moment::Sent, Moment::MidBody, Moment::Finished, Moment::InContinuation, Moment::InTrace,
            Moment::InProgress),
        testing::Values(
            Ending::DestroyConnection, Ending::CloseConnection, Ending::CancelFuture, Ending::DestroyContext)),
    nameOf);

} // namespace

} // namespace test
