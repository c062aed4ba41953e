#include <atomic>
#include <tuple>

#include <gmock/gmock.h>

#include <KeloCommunicationLib/connection/KeloErrors.h>
#include <KeloCommunicationLib/connection/TessalyConnection.h>
#include <platform/core/HostEnvironment.h>
#include <testkit/RawServer.h>
#include <testkit/Replies.h>

namespace
{

using namespace Qt::Literals::StringLiterals;

std::unique_ptr<TessalyConnection> connectTo(testkit::RawServer const& server)
{
    return TessalyConnection::makeConnection(server.url(), QString(), QString());
}

rest::RestReply<OrderShippingAddressList> addressesFrom(testkit::Action const& answer)
{
    testkit::RawServer const server([&answer](testkit::RawRequest const&) { return answer; });
    return connectTo(server)->getShippingAddresses(u"I"_s).get();
}

auto membersOf(rest::RestReplyStatus const& status)
{
    return std::tuple(
        status.kind, status.code, status.httpStatus, status.message, status.serverResponseStatus, status.retryAfter);
}

testkit::Action page(int status)
{
    return testkit::reply(status, R"(<html>[{"Code":"17"}]</html>)", {{"Content-Type", "text/html"}});
}

TEST(ErrorModel, CodeAndMessageOfAnErrorBody)
{
    struct
    {
        testkit::Action answer;
        testkit::FailedReply expected;
    } const rows[] = {
        {testkit::reply(500, R"([{"Code":"17","Message":"x"},{"Code":"18","Message":"y"}])"),
         testkit::refused(17, u"x"_s, 500)},
        {testkit::reply(404, R"([{"Code":"-3","Message":5}])"), testkit::refused(-3, {}, 404)},
        {testkit::reply(400, R"([{"Code":17,"Message":"x"}])"), testkit::refused(1000, u"x"_s)},
        {testkit::reply(400, R"([{"Code":"99999999999"}])"), testkit::httpError(400)},
        {testkit::reply(400, R"([{"Code":"0x11"}])"), testkit::httpError(400)},
        {testkit::reply(400, R"({"Code":"17","Message":"x"})"), testkit::httpError(400)},
        {testkit::reply(400, R"([["Code"]])"), testkit::httpError(400)},
        {testkit::reply(400, "[]"), testkit::httpError(400)},
        {testkit::reply(401, ""), testkit::httpError(401)},
        {testkit::reply(302, "", {{"Location", "http://192.0.2.1/"}}), testkit::httpError(302)},
        {testkit::reply(503, "", {{"Retry-After", "7"}}), testkit::httpError(503, std::chrono::seconds(7))},
        {page(502), testkit::httpError(502)},
    };
    for (auto const& row : rows)
    {
        SCOPED_TRACE(row.answer.bytes.toStdString());
        auto const status = addressesFrom(row.answer).status;
        auto const& expected = row.expected.status;
        EXPECT_EQ(membersOf(status), membersOf(expected));
        EXPECT_EQ(kelo::errorCode(status), KeloErrorCode(expected.code));
        EXPECT_EQ(kelo::errorMessage(status), u"(%1) %2"_s.arg(expected.code).arg(expected.message));
    }
}

TEST(ErrorModel, AnErrorsBodyIsNoValue)
{
    auto const reply = addressesFrom(testkit::reply(500, R"({"Addresses":[{}]})"));
    EXPECT_EQ(reply.status.kind, 2U);
    EXPECT_TRUE(reply.value.addresses.isEmpty());
}

TEST(ErrorModel, NoAnswerIsNoConnection)
{
    // Between this library's limit and libcurl's own.
    testkit::HeaderList const manyHeaders(270, {"X-More", QByteArray(1000, 'x')});
    for (testkit::Action const& answer :
         {testkit::closeNow(), testkit::reply(200).truncatedBy(1), testkit::rawReply("nonsense\r\n\r\n"),
          testkit::reply(200, "{}", manyHeaders)})
    {
        auto const reply = addressesFrom(answer);
        EXPECT_EQ(membersOf(reply.status), membersOf(testkit::noConnection(reply.status.message).status))
            << answer.bytes.left(100).toStdString();
        EXPECT_FALSE(reply.status.message.isEmpty());
        EXPECT_EQ(kelo::errorCode(reply.status), KeloErrorCode::NoConnection);
    }
}

TEST(ErrorModel, OnlyWhatChangesSomethingMayHaveBeenProcessed)
{
    testkit::RawServer const server([](testkit::RawRequest const&) { return testkit::closeNow(); });
    auto const connection = connectTo(server);
    auto const endsSo = [](auto const& future) { return future.get().status.message.endsWith(kelo::maybeProcessed); };
    EXPECT_TRUE(endsSo(connection->createOrder({})));
    EXPECT_TRUE(endsSo(connection->updatePartnerCasesStatus(u"I"_s, {})));
    EXPECT_TRUE(endsSo(connection->unlockTemplateRequest(u"I"_s, u"R"_s)));
    EXPECT_FALSE(endsSo(connection->getOrderStatus({})));
    EXPECT_FALSE(endsSo(connection->getRequests(u"I"_s, true)));
    EXPECT_FALSE(endsSo(connection->getUnlockedStateForRequest(u"I"_s, u"R"_s)));
    EXPECT_FALSE(endsSo(connection->getUsersForLicense(u"I"_s)));
}

TEST(ErrorModel, ASuccessWithoutTheExpectedObjectIsADefaultValue)
{
    struct
    {
        testkit::Action answer;
        int addresses = 0;
    } const rows[] = {
        {testkit::reply(200, R"({"Addresses":[{"Name":"n"}]})"), 1},
        {testkit::reply(201, R"({"Addresses":[{"Name":"n"}]})"), 1},
        {testkit::reply(200, R"([{"Addresses":[{"Name":"n"}]}])"), 0},
        {testkit::reply(200, ""), 0},
        {testkit::reply(200, "{"), 0},
        {testkit::reply(200, "5"), 0},
        {testkit::rawReply("HTTP/1.1 204 No Content\r\n\r\n"), 0},
        {page(200), 0},
    };
    for (auto const& row : rows)
    {
        auto const reply = addressesFrom(row.answer);
        EXPECT_EQ(reply.status.kind, 0U) << row.answer.bytes.toStdString();
        EXPECT_EQ(reply.value.addresses.size(), row.addresses) << row.answer.bytes.toStdString();
        EXPECT_EQ(kelo::errorCode(reply.status), KeloErrorCode::Success);
    }
}

TEST(ErrorModel, CodeAndMessageOfAStatus)
{
    rest::RestReplyStatus status{0, 17, 200, u"Bad input"_s, {}};
    EXPECT_EQ(kelo::errorCode(status), KeloErrorCode::Success);
    EXPECT_EQ(kelo::errorMessage(status), u"(17) Bad input");
    status.kind = 1;
    EXPECT_EQ(kelo::errorCode(status), KeloErrorCode::NoConnection);
    EXPECT_EQ(kelo::errorMessage(status), u"(17) Bad input");
    status = {3, -4, 0, u"%1 %2"_s, {}};
    EXPECT_EQ(kelo::errorCode(status), KeloErrorCode(-4));
    EXPECT_EQ(kelo::errorMessage(status), u"(-4) %1 %2");
}

TEST(ErrorModel, ADownloadThatFailedIsEmpty)
{
    struct
    {
        testkit::Action answer;
        QByteArray bytes;
    } const rows[] = {
        {testkit::reply(200, QByteArray("\0[\xff", 3)), QByteArray("\0[\xff", 3)},
        {testkit::reply(404, "bytes"), {}},
        {testkit::reply(500, "bytes"), {}},
        {testkit::reply(203, "bytes"), {}},
        {testkit::reply(200, "bytes").truncatedBy(1), {}},
        {testkit::closeNow(), {}},
    };
    for (auto const& row : rows)
    {
        testkit::RawServer const server([&row](testkit::RawRequest const&) { return row.answer; });
        EXPECT_EQ(connectTo(server)->getTempShellFile(u"F"_s).get(), row.bytes) << row.answer.bytes.toStdString();
    }
}

TEST(ErrorModel, ALookUpThatIsGivenUpReachesTheWireAndHasNoUrl)
{
    testkit::RawServer const server([](testkit::RawRequest const&) { return testkit::stall(); });
    auto connection = connectTo(server);
    auto const canceled = connection->getRestorationURL({}, u"R"_s);
    ASSERT_TRUE(server.waitForRequests(1));
    canceled.cancel();
    EXPECT_TRUE(server.waitForClosedByClient(1));
    auto const pending = connection->getRestorationURL({}, u"R"_s);
    connection.reset();
    EXPECT_TRUE(pending.isCanceled());
    EXPECT_EQ(pending.get(), std::pair(QString(), KeloErrorCode::NoConnection));
}

TEST(ErrorModel, TheDefaultConnectionIsTheHosts)
{
    testkit::RawServer const server;
    core::HostEnvironment host;
    host.apiUrl = server.url(u"/api/v1"_s);
    host.username = u"user"_s;
    host.password = u"secret"_s;
    core::setHostEnvironment(host);
    auto const connection = TessalyConnection::makeDefaultConnection();
    host.username = u"other"_s;
    core::setHostEnvironment(host);
    connection->getShippingAddresses(u"I"_s).wait();
    ASSERT_EQ(server.requestCount(), 1);
    EXPECT_EQ(server.requests()[0].target, "/api/v1/Installations/I/addresses/shipto");
    EXPECT_EQ(server.requests()[0].header("Authorization"), "Basic " + QByteArray("user:secret").toBase64());
}

TEST(ErrorModel, TheTraceHookIsInstalledByInitialize)
{
    testkit::RawServer const server;
    std::atomic<int> traced = 0;
    TessalyConnectionBase base;
    auto const before = connectTo(server);
    TessalyConnectionBase::m_callback = [&traced](rest::TraceData const&) { ++traced; };
    auto const after = connectTo(server);
    base.initialize(server.url(), QString(), QString(), QString());
    TessalyConnectionBase::m_callback = {};
    before->getShippingAddresses(u"I"_s).wait();
    EXPECT_EQ(traced, 0);
    after->getShippingAddresses(u"I"_s).wait();
    EXPECT_EQ(traced, 1);
    base.request(rest::RequestDataCreator::makeRequest(rest::HttpMethod::Get, QUrl(u"x"_s))).wait();
    EXPECT_EQ(traced, 2);
}

} // namespace
