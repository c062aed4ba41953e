// The screen over the real client: a line that fails, and a service that does.
#include <gmock/gmock.h>

#include <QJsonArray>

#include <simulator/Simulator.h>
#include <simulator/faults/FaultProxy.h>
#include <testkit/RawServer.h>
#include <testkit/Waiting.h>

#include "PartnersScreen.h"

namespace
{

using State = PartnersScreen::State;
using namespace std::chrono_literals;

std::unique_ptr<TessalyConnection> connectTo(QUrl const& url)
{
    return TessalyConnection::makeConnection(url, QStringLiteral("kelo"), QStringLiteral("kelo"));
}

State loaded(PartnersScreen& screen)
{
    screen.load();
    EXPECT_TRUE(testkit::comesTrue([&screen] { return screen.state() != State::Loading; }));
    return screen.state();
}

// Byte for byte what a test wants to see on the wire: the first answer breaks off before its end.
TEST(PartnersScreenOverTheWire, SurvivesALineThatDrops)
{
    auto const answer = testkit::reply(200, R"([{"Id": "PLT-1", "Name": "Brightline Aligners"}])");
    testkit::RawServer const server([&answer](testkit::RawRequest const& request)
                                    { return request.number == 1 ? answer.truncatedBy(1) : answer; });
    auto const connection = connectTo(server.url());
    PartnersScreen screen(*connection, QStringLiteral("INST-1001"));
    EXPECT_EQ(loaded(screen), State::Failed);
    EXPECT_EQ(loaded(screen), State::Shown);
    EXPECT_EQ(server.requests().back().target, "/Installations/INST-1001/partners");
}

// A whole service with data; the next call of one operation fails.
TEST(PartnersScreenOverTheWire, IsAnsweredByAServiceThatIsBusyAtFirst)
{
    simulator::Simulator service;
    auto const connection = connectTo(service.start());
    PartnersScreen screen(*connection, QStringLiteral("INST-1001"));
    service.addFault(QStringLiteral("tooManyRequests:operation=getPartners,seconds=5"));
    EXPECT_EQ(loaded(screen), State::Failed);
    EXPECT_EQ(screen.error(), QStringLiteral("KELO is busy. Try again in 5 seconds."));
    EXPECT_EQ(loaded(screen), State::Shown);
    EXPECT_TRUE(screen.names().contains(QStringLiteral("Cerapoint Milling")));
    EXPECT_EQ(service.journal()["Requests"].toArray().size(), 2);
}

// A proxy that spoils the line to any server: nothing comes through until the fault is taken away.
TEST(PartnersScreenOverTheWire, SurvivesALineThatGoesSilent)
{
    simulator::Simulator service;
    simulator::faults::FaultProxy line(QUrl(service.start()).port());
    auto const connection = connectTo(QStringLiteral("http://127.0.0.1:%1").arg(line.port()));
    connection->setDefaultTimeout(200ms);
    PartnersScreen screen(*connection, QStringLiteral("INST-1001"));
    line.add(QStringLiteral("timeout"));
    EXPECT_EQ(loaded(screen), State::Failed);
    line.clear();
    connection->setDefaultTimeout(10s);
    EXPECT_EQ(loaded(screen), State::Shown);
}

} // namespace
