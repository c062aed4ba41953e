#include <gmock/gmock.h>

#include <KeloCommunicationLib/account/VantorStatsConnection.h>
#include <KeloCommunicationLib/connection/TessalyConnection.h>
#include <KeloCommunicationLib/connection/TessalyConnectionProxy.h>
#include <platform/core/HostEnvironment.h>
#include <testkit/RawServer.h>
#include <tests/support/LogCapture.h>

namespace
{

std::unique_ptr<TessalyConnection> connectTo(testkit::RawServer const& server)
{
    return TessalyConnection::makeConnection(server.url(), QString(), QString());
}

TEST(BlockingCalls, AuthenticationKeysOfAnyAnswer)
{
    struct
    {
        testkit::Action answer;
        KeloErrorCode code;
        std::vector<QString> keys;
    } const rows[] = {
        {testkit::reply(200, R"({"Keys":["a",5,"b"],"More":1})"),
         KeloErrorCode::Success,
         {QStringLiteral("a"), QString(), QStringLiteral("b")}},
        {testkit::reply(200, "{}"), KeloErrorCode::Success, {}},
        {testkit::reply(200, R"({"Keys":"a"})"), KeloErrorCode::Success, {}},
        {testkit::reply(200, R"(["a"])"), KeloErrorCode::Success, {}},
        {testkit::reply(401, R"([{"Code":"17","Message":"x"}])"), KeloErrorCode::Success, {}},
        {testkit::reply(500, R"({"Keys":["a"]})"), KeloErrorCode::Success, {QStringLiteral("a")}},
        {testkit::closeNow(), KeloErrorCode::NoConnection, {}},
    };
    for (auto const& row : rows)
    {
        testkit::RawServer const server([&row](testkit::RawRequest const&) { return row.answer; });
        auto const outcome = connectTo(server)->getThirdPartyAuthenticationKeys(QStringLiteral("I"));
        EXPECT_EQ(outcome, std::pair(row.code, row.keys)) << row.answer.bytes.toStdString();
        EXPECT_EQ(server.requests()[0].target, "/Installations/I/3rdpartyauthenticationkeys");
    }
}

TEST(BlockingCalls, ShellsOfAnyAnswer)
{
    struct
    {
        testkit::Action answer;
        QStringList fileIds;
    } const rows[] = {
        {testkit::reply(200, R"([{"Id":"a"},{"Id":"b"}])"), {QStringLiteral("a"), QStringLiteral("b")}},
        {testkit::reply(200, R"({"Shells":[{"Id":"a"}]})"), {}},
        {testkit::reply(404, R"([{"Code":"17","Message":"x"}])"), {QString()}},
        {testkit::reply(404, R"([{"Id":"a"}])"), {QStringLiteral("a")}},
        {testkit::reply(500, ""), {}},
        {testkit::closeNow(), {}},
    };
    for (auto const& row : rows)
    {
        testkit::RawServer const server([&row](testkit::RawRequest const&) { return row.answer; });
        QStringList fileIds;
        for (auto const& shell : connectTo(server)->getTempShellCalculationData(QStringLiteral("R")).getTempShellFile())
        {
            fileIds.append(shell.getFileId());
        }
        EXPECT_EQ(fileIds, row.fileIds) << row.answer.bytes.toStdString();
    }
}

TEST(BlockingCalls, SoftwarePageOfASuccessfulAnswerOnly)
{
    struct
    {
        testkit::Action answer;
        char const* url = "";
    } const rows[] = {
        {testkit::reply(200, R"({"SoftwarePageUrl":"https://x"})"), "https://x"},
        {testkit::reply(200, R"({"SoftwarePageUrl":5})"), ""},
        {testkit::reply(200, "[]"), ""},
        {testkit::reply(404, R"({"SoftwarePageUrl":"https://x"})"), ""},
        {testkit::closeNow(), ""},
    };
    test::LogCapture const log;
    for (auto const& row : rows)
    {
        testkit::RawServer const server([&row](testkit::RawRequest const&) { return row.answer; });
        EXPECT_EQ(connectTo(server)->getSoftwarePageUrl(), QLatin1String(row.url)) << row.answer.bytes.toStdString();
        EXPECT_EQ(server.requests()[0].target, "/Settings");
    }
    EXPECT_THAT(log.warnings(), testing::IsEmpty());
}

TEST(BlockingCalls, ProxyKeepsTheOutcomeOfTheLastCall)
{
    testkit::RawServer const broken([](testkit::RawRequest const&) { return testkit::closeNow(); });
    testkit::RawServer const working([](testkit::RawRequest const&)
                                     { return testkit::reply(200, R"({"Keys":["k"]})"); });
    TessalyConnectionProxy proxy;
    TessalyConnectionProxyInterface& face = proxy;
    EXPECT_TRUE(face.isSuccess());
    EXPECT_EQ(face.getKeloErrorCode(), KeloErrorCode::Success);

    face.initialize(broken.url(), QString(), QString());
    EXPECT_TRUE(face.getThirdPartyAuthenticationKeys(QStringLiteral("I")).empty());
    EXPECT_FALSE(face.isSuccess());
    EXPECT_EQ(face.getKeloErrorCode(), KeloErrorCode::NoConnection);

    face.initialize(working.url(), QStringLiteral("user"), QStringLiteral("secret"));
    int const sentToTheOld = broken.requestCount();
    EXPECT_EQ(face.getThirdPartyAuthenticationKeys(QStringLiteral("I")), std::vector{QStringLiteral("k")});
    EXPECT_TRUE(face.isSuccess());
    EXPECT_EQ(face.getKeloErrorCode(), KeloErrorCode::Success);
    EXPECT_EQ(broken.requestCount(), sentToTheOld);
    EXPECT_EQ(working.requests()[0].header("Authorization"), "Basic " + QByteArray("user:secret").toBase64());
}

TEST(BlockingCalls, StatisticsGoToTheirOwnServiceOnce)
{
    struct
    {
        testkit::Action answer;
        bool succeeded = false;
        int code = 0;
    } const rows[] = {
        {testkit::reply(200, ""), true, 0}, {testkit::reply(500), true, 500}, {testkit::closeNow(), false, 0}};
    for (auto const& row : rows)
    {
        testkit::RawServer const server([&row](testkit::RawRequest const&) { return row.answer; });
        core::HostEnvironment host;
        host.statsUrl = server.url(QStringLiteral("/stats/?kind=1"));
        host.username = QStringLiteral("user");
        host.password = QStringLiteral("secret");
        core::setHostEnvironment(host);
        test::LogCapture const log;
        auto const result = VantorStatsConnection().uploadVantorStats({QStringLiteral("id"), QByteArray("\0\xff", 2)});
        EXPECT_EQ(result.succeeded, row.succeeded);
        if (row.succeeded)
        {
            EXPECT_EQ(result.code, row.code);
            EXPECT_THAT(log.warnings(), testing::IsEmpty());
        }
        else
        {
            EXPECT_NE(result.code, 0);
            auto const warning = "VantorStatsConnection : Upload of Stats file failed: " + std::to_string(result.code);
            EXPECT_THAT(log.warnings(), testing::ElementsAre(testing::StartsWith(warning + " \"")));
        }
        ASSERT_EQ(server.requestCount(), 1);
        auto const request = server.requests()[0];
        EXPECT_EQ(request.method + ' ' + request.target, "POST /stats/?kind=1");
        EXPECT_EQ(request.body, R"({"Data":"AP8=","SelectedType":"id"})");
        EXPECT_EQ(request.header("Authorization"), "Basic " + QByteArray("user:secret").toBase64());
    }
}

TEST(BlockingCalls, PortalCasesStandUnderTheirKeyWhateverStandsBesideIt)
{
    struct
    {
        char const* json;
        std::size_t count;
    } const rows[] = {
        {R"({"Cases":[{"Name":"a"},5]})", 2},
        {R"({"Total":1,"Items":[1,2],"Cases":[{"Name":"a"}]})", 1},
        {R"({"Items":[{"Name":"a"}]})", 0},
        {R"({"Cases":{"Name":"a"}})", 0},
    };
    test::LogCapture const log;
    for (auto const& row : rows)
    {
        testkit::RawServer const server([&row](testkit::RawRequest const&) { return testkit::reply(200, row.json); });
        auto const connection = connectTo(server);
        auto const reply = connection->getMiraShareCases(QStringLiteral("P"), QStringLiteral("I")).get();
        EXPECT_EQ(reply.status.kind, 0U);
        EXPECT_EQ(reply.value.size(), row.count) << row.json;
        EXPECT_EQ(server.requests()[0].target, "/Patients/P/cases?InstallationReference=I&api-version=0.0");
    }
    EXPECT_THAT(log.warnings(), testing::IsEmpty());
}

} // namespace
