// The screen over doubles: no service, no network, every outcome at will.
#include <gmock/gmock.h>

#include <testkit/MockConnection.h>
#include <testkit/Replies.h>
#include <testkit/StubConnection.h>
#include <testkit/Waiting.h>

#include "PartnersScreen.h"

namespace
{

using State = PartnersScreen::State;
using Partners = std::vector<PartnerInfo>;
using namespace std::chrono_literals;

QString const installation = QStringLiteral("INST-1001");
Partners const two = {
    {"PLT-1", "Brightline Aligners", true, false, {}}, {"PLT-2", "Cerapoint Milling", true, false, {}}};

void load(PartnersScreen& screen)
{
    screen.load();
    EXPECT_TRUE(testkit::comesTrue([&screen] { return screen.state() != State::Loading; }));
}

TEST(PartnersScreen, ShowsNames)
{
    testkit::StubConnection connection;
    connection.answers.getPartners = testkit::ready(two);
    PartnersScreen screen(connection, installation);
    load(screen);
    EXPECT_EQ(screen.state(), State::Shown);
    EXPECT_EQ(screen.names(), (QStringList{"Brightline Aligners", "Cerapoint Milling"}));
}

TEST(PartnersScreen, TellsWhyThereIsNothingToShow)
{
    struct
    {
        threading::Future<rest::RestReply<Partners>> answer;
        State state = State::Failed;
        char const* error = "";
    } const rows[] = {
        {testkit::ready(Partners()), State::Empty},
        {testkit::noConnection(), State::Failed, "KELO cannot be reached. Is this computer online?"},
        {testkit::httpError(503, 30s), State::Failed, "KELO is busy. Try again in 30 seconds."},
        {testkit::refused(4010, "Licence expired"), State::Failed, "KELO refused: (4010) Licence expired"},
        {{}, State::Failed, "The connection was closed."},
    };
    for (auto const& row : rows)
    {
        testkit::StubConnection connection;
        connection.answers.getPartners = row.answer;
        PartnersScreen screen(connection, installation);
        load(screen);
        EXPECT_EQ(screen.state(), row.state) << row.error;
        EXPECT_EQ(screen.error(), QString(row.error));
    }
}

TEST(PartnersScreen, CanBeTriedAgain)
{
    testkit::StubConnection connection;
    connection.answers.getPartners = testkit::noConnection();
    PartnersScreen screen(connection, installation);
    load(screen);
    ASSERT_EQ(screen.state(), State::Failed);
    connection.answers.getPartners = testkit::ready(two);
    load(screen);
    EXPECT_EQ(screen.state(), State::Shown);
    EXPECT_EQ(screen.error(), QString());
}

TEST(PartnersScreen, AsksOnceThoughTheUserIsImpatient)
{
    testkit::PendingReply<Partners> pending;
    testing::StrictMock<testkit::MockConnection> connection;
    EXPECT_CALL(connection, getPartners(installation, false)).WillOnce(testing::Return(pending.future()));
    PartnersScreen screen(connection, installation);
    screen.load();
    screen.load();
    EXPECT_EQ(screen.state(), State::Loading);
    pending.succeed(two);
    load(screen);
    EXPECT_EQ(screen.state(), State::Shown);
}

TEST(PartnersScreen, ClosingGivesTheCallUp)
{
    testkit::PendingReply<Partners> pending;
    testkit::StubConnection connection;
    connection.answers.getPartners = pending.future();
    {
        PartnersScreen screen(connection, installation);
        screen.load();
        EXPECT_FALSE(pending.future().isCanceled());
    }
    EXPECT_TRUE(pending.future().isCanceled());
}

} // namespace
