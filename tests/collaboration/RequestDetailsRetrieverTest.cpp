#include "RetrieverFixture.h"

#include <memory>
#include <string>
#include <thread>

#include <KeloCommunicationLib/connection/KeloErrors.h>
#include <tests/support/LogCapture.h>

namespace
{

using collaboration::FileInfo;
using collaboration::RequestInfo;
using collaboration::RequestType;
using collaboration::RestorationRequestDetail;
using collaboration::SessionDetails;
using collaboration::TemplateRequestDetail;
using collaboration::UploadFilesRequestDetail;
using testing::_;
using testing::A;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Return;
using testing::SizeIs;
using testkit::PendingReply;

/// A details query for exactly these requests.
MATCHER_P(AsksFor, ids, "")
{
    return arg.getRequestIds() == ids && arg.getVersionNumber() == QVersionNumber(3, 1) && arg.getOnlyActiveRequests()
           && arg.getType() == RequestType::Unset;
}

QStringList idsOf(RequestDetailsRetriever const& retriever)
{
    QStringList ids;
    for (auto const& details : retriever.getAllRequestDetails())
    {
        ids.append(details.requestDetails.id);
    }
    return ids;
}

class RequestDetailsRetrieverTest : public test::RetrieverFixture
{
protected:
    RequestDetailsRetrieverTest()
    {
        QObject::connect(retriever_.get(), &RequestDetailsRetriever::finished, [this] { ++finished_; });
        QObject::connect(
            retriever_.get(), &RequestDetailsRetriever::failed,
            [this](QString const& text)
            { failures_.append(text + u' ' + QString::number(retriever_->lastStatus().kind)); });
    }

    /// Expects one call of each of three kinds, answered by the pending replies.
    void expectThreeKinds()
    {
        EXPECT_CALL(connection_, getDentalScanRequestDetails(_, _)).WillOnce(Return(scan_.future()));
        EXPECT_CALL(connection_, getTemplateRequestDetails(_, _)).WillOnce(Return(template_.future()));
        EXPECT_CALL(connection_, getRestorationRequestDetails(_, _)).WillOnce(Return(restoration_.future()));
        retriever_->setRequestIds(std::vector<RequestInfo>{
            {u"t"_qs, {}, RequestType::Template},
            {u"s"_qs, {}, RequestType::DentalScan},
            {u"r"_qs, {}, RequestType::Restoration}});
    }

    void startPoll(PendingReply<std::vector<RequestInfo>> const& list, std::vector<RequestInfo> known)
    {
        EXPECT_CALL(connection_, getRequests(u"I"_qs, A<GetRequestsInfo>())).WillOnce(Return(list.future()));
        retriever_->getUpdates({RequestType::LabDesign}, known);
        known.assign(1, RequestInfo{u"not what was known"_qs, {}, RequestType::LabDesign});
    }

    std::unique_ptr<RequestDetailsRetriever> retriever_ = std::make_unique<RequestDetailsRetriever>(connection_);
    int finished_ = 0;
    QStringList failures_;
    PendingReply<std::vector<SessionDetails>> scan_;
    PendingReply<std::vector<TemplateRequestDetail>> template_;
    PendingReply<std::vector<RestorationRequestDetail>> restoration_;
};

TEST_F(RequestDetailsRetrieverTest, AsksOnceForEachKindInFixedOrder)
{
    retriever_->setRequestIds(std::vector<std::pair<QString, RequestType>>{
        {u"7"_qs, RequestType::Referral},
        {u"6"_qs, RequestType::CentralizedRestoration},
        {u"5"_qs, RequestType::SurgeryPlan},
        {u"4"_qs, RequestType::Restoration},
        {u"3"_qs, RequestType::Template},
        {u"2"_qs, RequestType::TempShell},
        {u"1"_qs, RequestType::LabDesign},
        {u"0"_qs, RequestType::DentalScan},
        {u"0b"_qs, RequestType::DentalScan},
        {u"?"_qs, static_cast<RequestType>(8)}});
    auto const asks = [](char const* id) { return AsksFor(QList<QString>{QString::fromLatin1(id)}); };
    auto const restoration = testkit::ready(groupOf<RestorationRequestDetail>(u"r"_qs));
    testing::InSequence const inSequence;
    EXPECT_CALL(connection_, getDentalScanRequestDetails(u"I"_qs, AsksFor(QList<QString>{u"0"_qs, u"0b"_qs})))
        .WillOnce(Return(testkit::ready(groupOf<SessionDetails>(u"s"_qs))));
    EXPECT_CALL(connection_, getLabDesignRequestDetails(u"I"_qs, asks("1")))
        .WillOnce(Return(testkit::ready(groupOf<SessionDetails>(u"l"_qs))));
    EXPECT_CALL(connection_, getTempShellRequestDetails(u"I"_qs, asks("2")))
        .WillOnce(Return(testkit::ready(groupOf<SessionDetails>(u"h"_qs))));
    EXPECT_CALL(connection_, getRestorationRequestDetails(u"I"_qs, asks("4"))).WillOnce(Return(restoration));
    auto templates = groupOf<TemplateRequestDetail>(u"t"_qs);
    templates.front().collaborationRequestDetailInfos.front().orderId = u"order"_qs;
    EXPECT_CALL(connection_, getTemplateRequestDetails(u"I"_qs, asks("3"))).WillOnce(Return(testkit::ready(templates)));
    auto plans = groupOf<UploadFilesRequestDetail>(u"p"_qs);
    plans.front().collaborationRequestDetailInfos.front().surgeryPlanURL = u"plan"_qs;
    plans.front().collaborationRequestDetailInfos.front().requesterPatientReference = u"patient"_qs;
    EXPECT_CALL(connection_, getSurgeryPlanRequestDetails(u"I"_qs, asks("5"))).WillOnce(Return(testkit::ready(plans)));
    EXPECT_CALL(connection_, getCentralizedRestorationRequestDetails(u"I"_qs, asks("6"))).WillOnce(Return(restoration));
    EXPECT_CALL(connection_, getReferralRequestDetails(u"I"_qs, asks("7")))
        .WillOnce(Return(testkit::ready(groupOf<UploadFilesRequestDetail>(u"f"_qs))));

    retriever_->execute();
    EXPECT_EQ(finished_, 0) << "ready replies are handled by the event loop";
    runEvents();
    EXPECT_EQ(finished_, 1);
    EXPECT_TRUE(retriever_->isSuccess());
    auto const results = retriever_->getAllRequestDetails();
    std::vector<int> types;
    types.reserve(results.size());
    for (auto const& details : results)
    {
        types.push_back(static_cast<int>(details.requestType));
    }
    EXPECT_THAT(types, ElementsAre(0, 1, 2, 4, 3, 5, 6)) << "the referral without a partner's file is left out";
    EXPECT_EQ(results[0].partnershipId + results[0].partnerId + results[0].partnerName, u"PSPN");
    EXPECT_EQ(results[4].orderId, u"order");
    EXPECT_EQ(results[5].url, u"plan");
    EXPECT_EQ(results[5].requesterPatientReference, u"patient");
    EXPECT_FALSE(results[5].isZelkoPatient.has_value());
}

TEST_F(RequestDetailsRetrieverTest, FinishesOnceThoughCallsFail)
{
    expectThreeKinds();
    retriever_->execute();
    scan_.succeed(groupOf<SessionDetails>(u"s"_qs));
    rest::RestReply<std::vector<TemplateRequestDetail>> refused = serviceError();
    refused.value = groupOf<TemplateRequestDetail>(u"t"_qs);
    template_.finish(refused);
    runEvents();
    EXPECT_EQ(finished_, 0);
    EXPECT_EQ(retriever_->lastStatus().code, refused.status.code);
    restoration_.cancel();
    runEvents();
    EXPECT_EQ(finished_, 1);
    EXPECT_FALSE(retriever_->isSuccess());
    EXPECT_THAT(retriever_->failedTypes(), ElementsAre(RequestType::Template, RequestType::Restoration));
    EXPECT_EQ(kelo::errorMessage(retriever_->lastStatus()), u"(0) The call was cancelled.");
    EXPECT_EQ(idsOf(*retriever_), QStringList{u"s"_qs});
}

TEST_F(RequestDetailsRetrieverTest, SweepWithoutIdsIsSilentThoughItTakesAnOlderOnesPlace)
{
    expectThreeKinds();
    retriever_->execute();
    scan_.succeed(groupOf<SessionDetails>(u"s"_qs));
    runEvents();
    retriever_->setRequestIds(std::vector<RequestInfo>());
    retriever_->execute();
    template_.cancel();
    restoration_.cancel();
    runEvents();
    EXPECT_EQ(finished_, 0);
    EXPECT_THAT(failures_, IsEmpty());
    EXPECT_THAT(idsOf(*retriever_), IsEmpty());
    EXPECT_TRUE(retriever_->isSuccess());
}

TEST_F(RequestDetailsRetrieverTest, RepliesOfAnOlderSweepAreIgnored)
{
    expectThreeKinds();
    retriever_->execute();
    scan_.succeed(groupOf<SessionDetails>(u"old"_qs));
    runEvents();
    EXPECT_EQ(idsOf(*retriever_), QStringList{u"old"_qs});
    PendingReply<std::vector<SessionDetails>> newer;
    EXPECT_CALL(connection_, getTempShellRequestDetails(_, _)).WillOnce(Return(newer.future()));
    retriever_->setRequestIds(std::vector<RequestInfo>{{u"n"_qs, {}, RequestType::TempShell}});
    std::thread network(
        [this]
        {
            template_.cancel();
            restoration_.succeed(groupOf<RestorationRequestDetail>(u"old"_qs));
        });
    retriever_->execute();
    network.join();
    runEvents();
    EXPECT_EQ(finished_, 0);
    newer.succeed(groupOf<SessionDetails>(u"n"_qs));
    runEvents();
    EXPECT_EQ(finished_, 1);
    EXPECT_TRUE(retriever_->isSuccess());
    EXPECT_EQ(idsOf(*retriever_), QStringList{u"n"_qs});
}

TEST_F(RequestDetailsRetrieverTest, ReceiverMayStartTheNextSweepAndDeleteTheRetriever)
{
    expectThreeKinds();
    PendingReply<std::vector<SessionDetails>> next;
    EXPECT_CALL(connection_, getLabDesignRequestDetails(_, _)).WillOnce(Return(next.future()));
    QObject::connect(
        retriever_.get(), &RequestDetailsRetriever::finished,
        [this]
        {
            if (finished_ == 1)
            {
                EXPECT_THAT(retriever_->getAllRequestDetails(), SizeIs(1));
                retriever_->setRequestIds(std::vector<RequestInfo>{{u"l"_qs, {}, RequestType::LabDesign}});
                retriever_->execute();
            }
            else
            {
                retriever_.reset();
            }
        });
    retriever_->execute();
    scan_.succeed(groupOf<SessionDetails>(u"s"_qs));
    template_.cancel();
    restoration_.cancel();
    runEvents();
    EXPECT_EQ(finished_, 1);
    next.succeed(groupOf<SessionDetails>(u"l"_qs));
    runEvents();
    EXPECT_EQ(finished_, 2);
    EXPECT_EQ(retriever_, nullptr);
}

TEST_F(RequestDetailsRetrieverTest, KeepsReferralsWithAFileOfThePartner)
{
    FileInfo foreign;
    foreign.fileType = u"ZelkoPatient"_qs;
    FileInfo own = foreign;
    own.isCreator = true;
    UploadFilesRequestDetail group;
    for (auto const& files :
         {std::vector{own}, std::vector{foreign}, std::vector{own, foreign}, std::vector<FileInfo>{}})
    {
        auto& entry = group.collaborationRequestDetailInfos.emplace_back();
        entry.requestDetails.files = files;
        entry.referralURL = u"referral"_qs;
    }
    EXPECT_CALL(connection_, getReferralRequestDetails(_, _)).WillOnce(Return(testkit::ready(std::vector{group})));
    retriever_->setRequestIds(std::vector<RequestInfo>{{u"f"_qs, {}, RequestType::Referral}});
    retriever_->execute();
    runEvents();
    auto const results = retriever_->getAllRequestDetails();
    ASSERT_THAT(results, SizeIs(2));
    EXPECT_EQ(results[0].isZelkoPatient, true);
    EXPECT_EQ(results[1].isZelkoPatient, false);
    EXPECT_EQ(results[0].url, u"referral");
}

TEST_F(RequestDetailsRetrieverTest, PollFetchesWhatIsNewOrChanged)
{
    PendingReply<std::vector<RequestInfo>> list;
    QList<QString> const fetched{u"new"_qs, u"changed"_qs, u"in two states"_qs, u"in two states too"_qs};
    EXPECT_CALL(connection_, getLabDesignRequestDetails(u"I"_qs, AsksFor(fetched)))
        .WillOnce(Return(testkit::ready(groupOf<SessionDetails>(u"new"_qs))));
    startPoll(
        list, {{u"gone"_qs, u"1"_qs, RequestType::LabDesign},
               {u"same"_qs, u"1"_qs, RequestType::LabDesign},
               {u"same"_qs, u"1"_qs, RequestType::LabDesign},
               {u"changed"_qs, u"1"_qs, RequestType::LabDesign},
               {u"gone too"_qs, u"1"_qs, RequestType::LabDesign},
               {u"in two states"_qs, u"1"_qs, RequestType::LabDesign},
               {u"in two states"_qs, u"2"_qs, RequestType::LabDesign},
               {u"in two states too"_qs, u"2"_qs, RequestType::LabDesign},
               {u"in two states too"_qs, u"1"_qs, RequestType::LabDesign}});
    list.succeed(std::vector<RequestInfo>{
        {u"new"_qs, u"1"_qs, RequestType::LabDesign},
        {u"same"_qs, u"1"_qs, RequestType::LabDesign},
        {u"changed"_qs, u"2"_qs, RequestType::LabDesign},
        {u"in two states"_qs, u"2"_qs, RequestType::LabDesign},
        {u"in two states too"_qs, u"2"_qs, RequestType::LabDesign}});
    runEvents();
    EXPECT_EQ(finished_, 1);
    EXPECT_EQ(retriever_->getRemovedRequestIds(), (QList<QString>{u"gone"_qs, u"gone too"_qs}));
    EXPECT_EQ(idsOf(*retriever_), QStringList{u"new"_qs});
}

TEST_F(RequestDetailsRetrieverTest, PollWithNothingToFetchFinishesAtOnceAndSparesARunningSweep)
{
    expectThreeKinds();
    retriever_->execute();
    scan_.succeed(groupOf<SessionDetails>(u"s"_qs));
    template_.cancel();
    auto const poll = [this](RequestInfo const& received)
    {
        PendingReply<std::vector<RequestInfo>> list;
        finished_ = 0;
        startPoll(list, {{u"same"_qs, u"1"_qs, RequestType::LabDesign}});
        list.succeed(std::vector{received});
        runEvents();
        EXPECT_EQ(finished_, 1) << qPrintable(received.requestId);
    };
    RequestInfo const unchanged{u"same"_qs, u"1"_qs, RequestType::LabDesign};
    for (RequestInfo const& received : {unchanged, {u"other"_qs, u"1"_qs, RequestType::Unset}})
    {
        poll(received);
        EXPECT_EQ(idsOf(*retriever_), QStringList{u"s"_qs});
        EXPECT_FALSE(retriever_->isSuccess());
    }
    restoration_.succeed(groupOf<RestorationRequestDetail>(u"r"_qs));
    runEvents();
    EXPECT_EQ(finished_, 2) << "one for the last poll, one for the sweep";
    EXPECT_EQ(idsOf(*retriever_), (QStringList{u"s"_qs, u"r"_qs}));
    EXPECT_FALSE(retriever_->isSuccess());
    EXPECT_EQ(retriever_->lastStatus().kind, 1U);
    poll(unchanged);
    EXPECT_EQ(idsOf(*retriever_), QStringList());
    EXPECT_TRUE(retriever_->isSuccess());
    EXPECT_THAT(retriever_->failedTypes(), IsEmpty());
    EXPECT_EQ(retriever_->lastStatus().kind, 0U);
}

TEST_F(RequestDetailsRetrieverTest, PollAsksForAllRequestsAndTellsItsFailure)
{
    GetRequestsInfo asked;
    EXPECT_CALL(connection_, getRequests(u"I"_qs, A<GetRequestsInfo>()))
        .WillOnce(testing::DoAll(testing::SaveArg<1>(&asked), Return(serviceError())))
        .WillOnce(Return(threading::Future<rest::RestReply<std::vector<RequestInfo>>>()));
    std::vector<RequestInfo> known;
    retriever_->getUpdates({RequestType::TempShell}, known);
    retriever_->getUpdates({}, known);
    runEvents();
    EXPECT_FALSE(asked.getOnlyActiveRequests());
    EXPECT_THAT(asked.getSelectedTypes(), ElementsAre(RequestType::TempShell));
    EXPECT_EQ(asked.getVersionNumber(), QVersionNumber(3, 1));
    QString const message = u"Failed to get request transaction ids "_qs;
    EXPECT_EQ(failures_, (QStringList{message + u'2', message + u'1'})) << "refused, then cancelled";
    EXPECT_EQ(finished_, 0);
}

TEST_F(RequestDetailsRetrieverTest, WarnsOnceForEachSweepAndPollIfTheHostNamesNoInstallation)
{
    core::setHostEnvironment({});
    test::LogCapture const log;
    EXPECT_CALL(connection_, getLabDesignRequestDetails(QString(), _)).Times(2);
    EXPECT_CALL(connection_, getRequests(QString(), A<GetRequestsInfo>()))
        .WillOnce(Return(testkit::ready(std::vector<RequestInfo>{{u"new"_qs, {}, RequestType::LabDesign}})));
    std::vector<RequestInfo> known;
    retriever_->execute();
    retriever_->getUpdates({}, known);
    runEvents();
    retriever_->execute();
    std::string const sentence = "The host environment names no installation.";
    EXPECT_THAT(
        log.warnings(),
        ElementsAre("RequestDetailsRetriever::getUpdates " + sentence, "RequestDetailsRetriever::execute " + sentence));
}

TEST_F(RequestDetailsRetrieverTest, EveryPollEndsAndOnlyANewerGoodListMakesAnOlderOneVoid)
{
    rest::RestReply<std::vector<RequestInfo>> const good;
    rest::RestReply<std::vector<RequestInfo>> const bad = serviceError();
    struct
    {
        rest::RestReply<std::vector<RequestInfo>> newer;
        rest::RestReply<std::vector<RequestInfo>> older;
        int finished = 0;
        char const* removed = "";
    } const rows[] = {{good, good, 2, "by the newer"}, {bad, good, 1, "by the older"}, {good, bad, 1, "by the newer"}};
    for (auto const& row : rows)
    {
        finished_ = 0;
        failures_.clear();
        PendingReply<std::vector<RequestInfo>> older;
        PendingReply<std::vector<RequestInfo>> newer;
        startPoll(older, {{u"by the older"_qs, {}, RequestType::LabDesign}});
        startPoll(newer, {{u"by the newer"_qs, {}, RequestType::LabDesign}});
        newer.finish(row.newer);
        runEvents();
        older.finish(row.older);
        runEvents();
        EXPECT_EQ(finished_, row.finished);
        EXPECT_EQ(failures_.size(), 2 - row.finished);
        EXPECT_EQ(retriever_->lastStatus().kind, row.older.status.kind) << "the later signal counts";
        EXPECT_EQ(retriever_->getRemovedRequestIds(), QList<QString>{QString::fromLatin1(row.removed)});
    }
}

} // namespace
