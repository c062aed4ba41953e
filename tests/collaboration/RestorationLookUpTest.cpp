#include "RetrieverFixture.h"

#include <thread>

namespace
{

using collaboration::RequestInfo;
using collaboration::RequestType;
using collaboration::RestorationRequestDetail;
using Reply = rest::RestReply<std::vector<RestorationRequestDetail>>;
using testing::_;
using testing::Return;

class RestorationLookUp : public test::RetrieverFixture
{
protected:
    std::vector<RestorationRequestDetail> twoGroups()
    {
        auto groups = groupOf<RestorationRequestDetail>(u"other"_qs);
        groups.push_back(groupOf<RestorationRequestDetail>(u"wanted"_qs).front());
        groups.back().collaborationRequestDetailInfos.front().restorationURL = u"url"_qs;
        return groups;
    }

    RequestDetailsRetriever retriever_{connection_};
    RequestInfo wanted_{u"wanted"_qs, {}, RequestType::Restoration};
};

TEST_F(RestorationLookUp, GivesTheRequestOrNothing)
{
    EXPECT_CALL(connection_, getRestorationRequestDetails(u"I"_qs, _))
        .WillOnce(Return(testkit::ready(twoGroups())))
        .WillOnce(Return(testkit::ready(groupOf<RestorationRequestDetail>(u"other"_qs))))
        .WillOnce(Return(serviceError()))
        .WillOnce(Return(threading::Future<Reply>()));
    auto const found = retriever_.getRestorationRequestDetails(wanted_);
    ASSERT_TRUE(found.has_value());
    EXPECT_EQ(found->requestDetails.id, u"wanted");
    EXPECT_EQ(found->url, u"url");
    EXPECT_EQ(found->requestType, RequestType::Restoration);
    for (char const* const reason : {"not in the reply", "refused", "cancelled"})
    {
        EXPECT_FALSE(retriever_.getRestorationRequestDetails(wanted_).has_value()) << reason;
    }
}

TEST_F(RestorationLookUp, ProcessesEventsUntilAnotherThreadBringsTheReply)
{
    testkit::PendingReply<std::vector<RestorationRequestDetail>> pending;
    std::thread network;
    EXPECT_CALL(connection_, getCentralizedRestorationRequestDetails(u"I"_qs, _)).WillOnce(Return(pending.future()));
    // The reply is only sent by an event of the waiting thread.
    QMetaObject::invokeMethod(
        &retriever_, [&] { network = std::thread([&] { pending.succeed(twoGroups()); }); }, Qt::QueuedConnection);
    auto const found = retriever_.getCentralizedRestorationRequestDetails(wanted_);
    network.join();
    ASSERT_TRUE(found.has_value());
    EXPECT_EQ(found->requestType, RequestType::CentralizedRestoration);
}

} // namespace
