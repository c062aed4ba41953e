// The end of a retriever, of a chain of calls and of the connection under them, with calls pending.
#include <atomic>
#include <functional>
#include <memory>
#include <thread>
#include <utility>

#include <KeloCommunicationLib/account/AccountSettingsRetriever.h>
#include <KeloCommunicationLib/collaboration/RequestDetailsRetriever.h>
#include <platform/core/HostEnvironment.h>

#include "tests/lifetime/LifetimeFixture.h"
#include <tests/support/LogCapture.h>

namespace test
{

namespace
{

using collaboration::RequestInfo;
using collaboration::RequestType;

constexpr auto listOfRequests = "/I/requests";
constexpr auto details = "/details";
constexpr auto listOfPartners = "/partners";
constexpr auto logo = "/logo";

/// A service that holds back its answers to requests whose target ends with `held`, and a connection with it.
class Service
{
public:
    explicit Service(QByteArray held) : held_(std::move(held)) {}

    RawServer& server() { return server_; }

    std::unique_ptr<TessalyConnection>& connection() { return connection_; }

    /// As a host may do from another thread once `count` answers are held back; the future tells when that is.
    threading::Future<void> whenHeld(int count)
    {
        threading::Promise<void> held;
        auto const future = held.future();
        watcher_ = std::thread([this, count, held = std::move(held)]() mutable
                               { server_.waitForHeld(count) ? void(held.setValue()) : held.cancel(); });
        return future;
    }

    ~Service()
    {
        if (watcher_.joinable())
        {
            watcher_.join();
        }
    }

    Service(Service const&) = delete;
    Service& operator=(Service const&) = delete;

private:
    Action answer(QByteArray const& target) const
    {
        Action const action = reply(200, body(target), {{"Connection", "close"}}).thenClose();
        return target.endsWith(held_) ? action.afterRelease() : action;
    }

    static QByteArray body(QByteArray const& target)
    {
        if (target.endsWith(listOfRequests))
        {
            return R"([{"RequestId":"S","RequestType":0},{"RequestId":"T","RequestType":3}])";
        }
        if (target.endsWith(listOfPartners))
        {
            return R"([{"PartnerId":"A","PartnerName":"Ada"},{"PartnerId":"B","PartnerName":"Bob"}])";
        }
        return target.endsWith(details) ? "[]" : target.endsWith(logo) ? "" : "{}";
    }

    QByteArray const held_;
    RawServer server_{[this](RawRequest const& request) { return answer(request.target); }};
    std::unique_ptr<TessalyConnection> connection_ = TessalyConnection::makeConnection(server_.url(), {}, {});
    std::thread watcher_;
};

class Orchestrators : public LifetimeFixture
{
protected:
    Orchestrators()
    {
        core::HostEnvironment environment;
        environment.installationReference = [](QString const&) { return u"I"_qs; };
        core::setHostEnvironment(environment);
    }

    /// Each time has to leave as many sockets as it found.
    static void repeat(std::function<void()> const& once)
    {
        for (int i = 0; i < repetitions() && !HasFailure(); ++i)
        {
            int const socketsBefore = openSockets();
            once();
            EXPECT_TRUE(waitForSockets(socketsBefore));
        }
    }
};

enum class Abandonment : int
{
    DestroyRetriever,
    DestroyRetrieverOnFinished,
    CloseConnection,
    CancelFuture,
    DropFuture,
    DestroyConnection
};

struct PollRow
{
    char const* held;
    int heldCount;
    Abandonment ending;
    int finished;
    int failed;
};

void poll(PollRow const& row)
{
    Service service(row.held);
    auto retriever = std::make_unique<RequestDetailsRetriever>(*service.connection());
    int finished = 0;
    int failed = 0;
    threading::Promise<void> told;
    QObject::connect(
        retriever.get(), &RequestDetailsRetriever::finished,
        [&]
        {
            ++finished;
            told.setValue();
            EXPECT_EQ(retriever->isSuccess(), row.ending == Abandonment::DestroyRetrieverOnFinished);
            retriever.reset();
        });
    QObject::connect(
        retriever.get(), &RequestDetailsRetriever::failed,
        [&]
        {
            ++failed;
            told.setValue();
        });
    std::vector<RequestInfo> known;
    retriever->getUpdates({RequestType::DentalScan, RequestType::Template}, known);
    ASSERT_TRUE(await(service.whenHeld(row.heldCount)));
    if (row.ending == Abandonment::DestroyRetriever)
    {
        retriever.reset();
    }
    else if (row.ending == Abandonment::CloseConnection)
    {
        service.connection()->closeConnection();
        service.connection()->initialize(service.server().url(), {}, {}, {});
    }
    service.server().release();
    // Where nobody is told, the answers get the time of another exchange to do harm.
    ASSERT_TRUE(await(service.connection()->getShippingAddresses(u"I"_qs)));
    ASSERT_TRUE(row.ending == Abandonment::DestroyRetriever || await(told.future()));
    service.connection().reset();
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(finished, row.finished);
    EXPECT_EQ(failed, row.failed);
}

TEST_F(Orchestrators, retrieverEndsWithCallsPending)
{
    constexpr PollRow rows[] = {
        {listOfRequests, 1, Abandonment::DestroyRetriever, 0, 0},
        {listOfRequests, 1, Abandonment::CloseConnection, 0, 1},
        {details, 2, Abandonment::DestroyRetriever, 0, 0},
        {details, 2, Abandonment::CloseConnection, 1, 0},
        {"nothing", 0, Abandonment::DestroyRetrieverOnFinished, 1, 0},
    };
    for (auto const& row : rows)
    {
        SCOPED_TRACE(std::string(row.held) + ' ' + std::to_string(static_cast<int>(row.ending)));
        repeat([&row] { poll(row); });
    }
}

TEST_F(Orchestrators, retrieverDiesDuringALookUp)
{
    repeat(
        []
        {
            Service service(details);
            auto retriever = std::make_unique<RequestDetailsRetriever>(*service.connection());
            QObject context;
            service.whenHeld(1).then(
                &context,
                [&]
                {
                    retriever.reset();
                    service.server().release();
                });
            EXPECT_FALSE(retriever->getRestorationRequestDetails(RequestInfo()));
            EXPECT_EQ(retriever, nullptr);
        });
}

void abandonPartners(char const* held, int heldCount, Abandonment ending)
{
    Service service(held);
    std::atomic<int> ends = 0;
    auto future = service.connection()->getPartners(u"I"_qs, true);
    future.then([&ends](decltype(future) const&) { ++ends; });
    ASSERT_TRUE(service.server().waitForHeld(heldCount));
    switch (ending)
    {
    case Abandonment::CancelFuture:
        future.cancel();
        EXPECT_EQ(ends, 1);
        break;
    case Abandonment::DropFuture:
        future = {};
        service.server().release();
        break;
    case Abandonment::CloseConnection:
        service.connection()->closeConnection();
        EXPECT_EQ(ends, 1);
        break;
    default:
        break;
    }
    service.connection().reset();
    EXPECT_EQ(ends, 1);
}

TEST_F(Orchestrators, logosAreAbandoned)
{
    LogCapture const silent;
    for (Abandonment const ending :
         {Abandonment::CancelFuture, Abandonment::DropFuture, Abandonment::CloseConnection,
          Abandonment::DestroyConnection})
    {
        SCOPED_TRACE(static_cast<int>(ending));
        repeat([ending] { abandonPartners(listOfPartners, 1, ending); });
        repeat([ending] { abandonPartners(logo, 2, ending); });
    }
    EXPECT_THAT(silent.warnings(), testing::IsEmpty());
}

void retrieveFromADyingConnection(QByteArray const& held, bool inNestedEvent)
{
    Service service(held);
    LogCapture const log;
    QObject context;
    auto const pending = service.whenHeld(1);
    auto const destroy = [&service] { service.connection().reset(); };
    auto const destroyed = inNestedEvent ? pending.then(&context, destroy) : pending.then(destroy);
    EXPECT_FALSE(AccountSettingsRetriever().retrieveAccountSettings(*service.connection()));
    ASSERT_TRUE(await(destroyed));
    EXPECT_THAT(log.warnings(), testing::ElementsAre(testing::HasSubstr("KELO was unreachable")));
}

TEST_F(Orchestrators, connectionDiesDuringEachStepOfTheAccountSettings)
{
    for (char const* const held :
         {"/accountInfo?api-version=1.0", "/settings?api-version=1.0", "/ifu/status", "/uitranslation/status",
          "/help/status"})
    {
        SCOPED_TRACE(held);
        repeat([held] { retrieveFromADyingConnection(held, true); });
        repeat([held] { retrieveFromADyingConnection(held, false); });
    }
}

} // namespace

} // namespace test
