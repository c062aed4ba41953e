#include "RetrieverFixture.h"

#include <QEventLoop>

#include <KeloCommunicationLib/collaboration/RequestPoller.h>
#include <testkit/FakePollClock.h>

#include "tests/support/FaultedService.h"

namespace
{

using collaboration::RequestInfo;
using collaboration::RequestType;
using collaboration::SessionDetails;
using testing::_;
using testing::A;
using testing::Return;
using namespace std::chrono_literals;
using Requests = std::vector<RequestInfo>;

rest::RestReplyStatus const good = testkit::succeeded();
rest::RestReplyStatus const lost = testkit::noConnection().status;

rest::RestReplyStatus refused(int httpStatus, utility::Optional<std::chrono::seconds> retryAfter = {})
{
    return testkit::httpError(httpStatus, retryAfter).status;
}

TEST(PollScheduleTest, WaitsStayWithinTheirBounds)
{
    struct
    {
        std::vector<rest::RestReplyStatus> outcomes;
        std::chrono::seconds shortest;
        std::chrono::seconds longest;
    } const rows[] = {
        {{good}, 51s, 69s},
        {{lost}, 0s, 120s},
        {{refused(500)}, 0s, 120s},
        {{lost, lost}, 0s, 240s},
        {{lost, lost, lost, lost}, 0s, 300s},
        {{lost, lost, good, lost}, 0s, 120s},
        {{refused(503, 30s)}, 30s, 150s},
        {{lost, refused(429, 7s)}, 7s, 247s},
        {{refused(503, std::chrono::seconds::max())}, 86400s, 86520s},
        {{refused(503, -5s)}, 0s, 120s},
        {{refused(401)}, 765s, 1035s},
        {{lost, refused(403)}, 765s, 1035s}};
    for (auto const& row : rows)
    {
        for (double const chance : {0.0, 1.0})
        {
            PollSchedule schedule;
            std::chrono::milliseconds wait{};
            for (auto const& outcome : row.outcomes)
            {
                wait = schedule.after(outcome, chance);
            }
            EXPECT_EQ(wait, chance == 0 ? row.shortest : row.longest) << &row - rows;
        }
    }
}

class RequestPollerTest : public test::RetrieverFixture
{
protected:
    RequestPollerTest()
    {
        EXPECT_CALL(connection_, getRequests(_, A<GetRequestsInfo>()))
            .Times(testing::AnyNumber())
            .WillRepeatedly([this] { return lists_.emplace_back().future(); });
        watch();
    }

    /// Writes down what the poller reports.
    void watch()
    {
        QObject::connect(
            poller_.get(), &RequestPoller::polled,
            [this](RequestChanges const& changes)
            {
                QStringList found;
                for (auto const* requests : {&changes.added, &changes.changed})
                {
                    for (auto const& request : *requests)
                    {
                        found << request.requestDetails.id;
                    }
                    found << u"|"_qs;
                }
                log_ << (found + changes.removed).join(u' ');
            });
        QObject::connect(
            poller_.get(), &RequestPoller::failed,
            [this](rest::RestReplyStatus const& status) { log_ << QString::number(status.httpStatus); });
    }

    void pass(std::chrono::milliseconds time)
    {
        clock_->pass(time);
        runEvents();
    }
    /// Answers the latest list.
    void answer(rest::RestReplyStatus const& status, Requests list = {})
    {
        lists_.back().finish({status, std::move(list)});
        runEvents();
    }

    testkit::FakePollClock* clock_ = new testkit::FakePollClock;
    std::unique_ptr<RequestPoller> poller_ =
        std::make_unique<RequestPoller>(connection_, std::unique_ptr<PollClock>(clock_));
    std::vector<testkit::PendingReply<Requests>> lists_;
    QStringList log_;
};

TEST_F(RequestPollerTest, FetchesAndReportsEachStateOnce)
{
    RequestInfo const same{u"same"_qs, u"1"_qs, RequestType::LabDesign};
    RequestInfo const added{u"new"_qs, u"1"_qs, RequestType::LabDesign};
    RequestInfo const changed{u"changed"_qs, u"2"_qs, RequestType::LabDesign};
    RequestInfo const silent{u"silent"_qs, u"1"_qs, RequestType::Referral};
    RequestInfo const late{u"late"_qs, u"1"_qs, RequestType::TempShell};
    auto labs = groupOf<SessionDetails>(u"new"_qs);
    labs.push_back(groupOf<SessionDetails>(u"changed"_qs).front());
    auto const closedToo = testing::Property(&GetRequestDetailsInfo::getOnlyActiveRequests, false);
    EXPECT_CALL(connection_, getLabDesignRequestDetails(_, closedToo)).WillOnce(Return(testkit::ready(labs)));
    EXPECT_CALL(connection_, getReferralRequestDetails(_, _))
        .WillOnce(Return(testkit::ready(groupOf<collaboration::UploadFilesRequestDetail>(u"silent"_qs))));
    EXPECT_CALL(connection_, getTempShellRequestDetails(_, _))
        .WillOnce(Return(serviceError()))
        .WillOnce(Return(testkit::ready(groupOf<SessionDetails>(u"late"_qs))));
    poller_->setKnownRequests({{u"gone"_qs, u"1"_qs}, same, {changed.requestId, u"1"_qs, changed.requestType}});
    poller_->start();
    for (Requests const& list :
         {Requests{same, added, changed, silent, late}, {same, added, changed, silent, late}, {same, added}})
    {
        pass(240s);
        answer(good, list);
    }
    EXPECT_EQ(log_, (QStringList{u"new | changed | gone"_qs, u"500"_qs, u"late | |"_qs, u"| | changed late"_qs}))
        << "of the silent one, which has nothing from the partner, its end is no news either";
    QStringList known;
    for (auto const& request : poller_->knownRequests())
    {
        known << request.requestId + request.transactionId;
    }
    EXPECT_EQ(known, (QStringList{u"same1"_qs, u"new1"_qs}));
}

TEST_F(RequestPollerTest, PollsOnDemandButNeverTwiceAtATimeNorWhereItWasAskedNotTo)
{
    EXPECT_FALSE(poller_->pollNow()) << "stopped";
    poller_->start();
    EXPECT_EQ(poller_->untilNextPoll(), 120s);
    EXPECT_TRUE(poller_->pollNow() && poller_->pollNow() && poller_->pollNow());
    pass(1h);
    EXPECT_EQ(lists_.size(), 1U);
    answer(good);
    pass(0s);
    EXPECT_EQ(lists_.size(), 2U) << "one more for all demands made meanwhile";
    answer(good);
    EXPECT_EQ(poller_->untilNextPoll(), 60s);
    EXPECT_TRUE(poller_->pollNow() && poller_->pollNow());
    answer(lost);
    pass(59s);
    EXPECT_EQ(lists_.size(), 3U) << "the failure was the answer";
    pass(1s);
    answer(refused(503, 30s));
    poller_->stop();
    poller_->start();
    EXPECT_EQ(poller_->untilNextPoll(), 150s) << "a new start is no way around it";
    pass(29s);
    EXPECT_FALSE(poller_->pollNow());
    pass(1s);
    EXPECT_TRUE(poller_->pollNow());
    log_.clear();
    poller_->stop();
    poller_->start();
    pass(1h);
    answer(good, {{u"found"_qs, {}, RequestType::Unset}});
    EXPECT_EQ(lists_.size(), 5U);
    EXPECT_TRUE(log_.isEmpty() && poller_->knownRequests().empty()) << "the poll was before the stop";
    EXPECT_EQ(poller_->untilNextPoll(), 120s);
}

TEST_F(RequestPollerTest, AfterASleepItDoesNotComeBackAtOnce)
{
    struct
    {
        rest::RestReplyStatus before;
        std::chrono::milliseconds asleep;
        std::chrono::milliseconds wait; ///< from ten seconds after the awakening, when the timer fires
    } const rows[] = {
        {good, 9s, 41s}, {good, 8h, 120s}, {refused(401), 8h, 120s}, {refused(503, 9h), 8h, 59min + 50s + 120s}};
    poller_->start();
    for (auto const& row : rows)
    {
        EXPECT_TRUE(poller_->pollNow());
        answer(row.before);
        clock_->sleep(row.asleep);
        pass(10s);
        EXPECT_EQ(poller_->untilNextPoll(), row.wait) << &row - rows;
    }
}

TEST_F(RequestPollerTest, MayBeDeletedAtAnyMoment)
{
    auto const end = [this] { poller_.reset(); };
    std::function<void()> const moments[] = {
        end, [&] { QObject::connect(poller_.get(), &RequestPoller::polled, end); },
        [&] { QObject::connect(poller_.get(), &RequestPoller::failed, end); },
        [&] { QObject::connect(poller_.get(), &RequestPoller::stateChanged, end); }};
    EXPECT_CALL(connection_, getTempShellRequestDetails(_, _)).WillRepeatedly(Return(serviceError()));
    for (auto const& moment : moments)
    {
        poller_ = std::make_unique<RequestPoller>(connection_, std::make_unique<testkit::FakePollClock>());
        poller_->start();
        poller_->pollNow();
        moment();
        answer(good, {{u"s"_qs, {}, RequestType::TempShell}});
        EXPECT_EQ(poller_, nullptr) << &moment - moments;
    }
}

TEST_F(RequestPollerTest, ComesBackToAServiceThatWasAwayAndThenBusy)
{
    test::FaultedService service;
    auto const connection = service.connect(60s);
    clock_ = new testkit::FakePollClock;
    poller_ = std::make_unique<RequestPoller>(*connection, std::unique_ptr<PollClock>(clock_));
    watch();
    auto const waitAfter = [&](char const* fault)
    {
        service.clearFaults();
        service.addFault(fault);
        pass(poller_->untilNextPoll().value());
        while (poller_->state() == RequestPoller::State::Polling)
        {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
        return poller_->untilNextPoll();
    };
    poller_->start();
    EXPECT_EQ(waitAfter("down"), 60s);
    EXPECT_EQ(waitAfter("tooManyRequests:times=-1,seconds=7"), 127s);
    EXPECT_EQ(waitAfter("status:times=-1,status=503"), 150s);
    EXPECT_EQ(waitAfter("delay:times=1"), 60s);
    EXPECT_EQ(log_.mid(0, 3), (QStringList{u"0"_qs, u"429"_qs, u"503"_qs}));
    EXPECT_GT(log_.value(3).size(), 10) << "the requests of the installation";
}

} // namespace
