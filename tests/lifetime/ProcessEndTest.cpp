// The end of a process with calls pending.
#include <gmock/gmock.h>

#include <QProcess>

#include <testkit/RawServer.h>

namespace test
{

using namespace testkit;

namespace
{

// A guard against a hang; the process itself finds out whether its end takes too long.
constexpr int longestMilliseconds = 60'000;

class ProcessEnd : public testing::TestWithParam<char const*>
{
};

TEST_P(ProcessEnd, finishesWhatIsPending)
{
    RawServer const server(
        [](RawRequest const& request)
        {
            return request.target == "/now"               ? reply(200)
                   : request.target.endsWith("/partners") ? reply(200, R"([{"PartnerId":"A"}])")
                                                          : stall();
        });
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedChannels);
    process.start(QStringLiteral(KELO_PROCESS_END_PROGRAM), {server.url().toString(), QString::fromLatin1(GetParam())});
    bool const ended = process.waitForFinished(longestMilliseconds);
    process.kill();
    process.waitForFinished();
    ASSERT_TRUE(ended);
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(process.exitCode(), 0);
}

INSTANTIATE_TEST_SUITE_P(
    Lifetime, ProcessEnd,
    testing::Values(
        "return", "exitOnIoThread", "waitOnIoThread", "exitOnWorker", "waitOnWorker", "lateRequest", "blockedThread",
        "poll", "logos"),
    [](auto const& row) { return std::string(row.param); });

} // namespace

} // namespace test
