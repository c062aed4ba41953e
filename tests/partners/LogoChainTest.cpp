#include <gmock/gmock.h>

#include <chrono>
#include <map>

#include <QBuffer>
#include <QImage>

#include <KeloCommunicationLib/connection/TessalyConnection.h>
#include <testkit/RawServer.h>
#include <tests/support/LogCapture.h>

using namespace std::chrono_literals;

namespace
{

constexpr auto deadline = 20s;
constexpr auto bobsLogoFailed = "Failed to download logo for Partner: \"Bob\" \"B\"";

QByteArray encoded(QImage const& image, char const* format = "png")
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format);
    return bytes;
}

QByteArray square(int side, QRgb color, char const* format = "png")
{
    QImage image(side, side, QImage::Format_RGB32);
    image.fill(color);
    return encoded(image, format);
}

/// Many pixels in few bytes: one bit each.
QByteArray largePng(int side)
{
    QImage image(side, side, QImage::Format_Mono);
    image.fill(0);
    return encoded(image);
}

testkit::Action logoReply(QByteArray const& image)
{
    return testkit::reply(200, image.toBase64(), {{"Content-Type", "text/plain"}});
}

/// A service with partners A, B and C, each with a logo of its own colour unless `logos` says otherwise.
struct Service
{
    explicit Service(std::map<QByteArray, testkit::Action> logos = {}, testkit::Action list = partners())
        : server(
            [logos = std::move(logos), list = std::move(list)](testkit::RawRequest const& request)
            {
                QList<QByteArray> const parts = request.target.split('/');
                if (parts.last() != "logo")
                {
                    return list;
                }
                QByteArray const& id = parts[parts.size() - 2];
                auto const logo = logos.find(id);
                return logo != logos.end() ? logo->second : logoReply(square(2, color(id)));
            }),
          connection(TessalyConnection::makeConnection(server.url(), QString(), QString()))
    {
    }

    static testkit::Action partners()
    {
        return testkit::reply(
            200, R"([{"PartnerId":"A","PartnerName":"Ada"},{"PartnerId":"B","PartnerName":"Bob"},)"
                 R"({"PartnerId":"C","PartnerName":"Cyd"}])");
    }

    static QRgb color(QByteArray const& id) { return qRgb(10 * (id[0] - '@'), 0, 0); }

    auto getPartners() const { return connection->getPartners(QStringLiteral("I"), true); }

    /// Qt makes its image formats when it first needs one, in a way that only it can see is free of races: here, then,
    /// before the server's threads need them.
    QByteArray anyLogo = square(1, 0);
    testkit::RawServer server;
    std::unique_ptr<TessalyConnection> connection;
};

template <class Record>
bool hasLogo(Record const& record, QByteArray const& id)
{
    return record.getLogo() && record.getLogo()->pixel(0, 0) == Service::color(id);
}

TEST(LogoChain, EveryPartnerGetsItsOwnLogo)
{
    Service const service;
    auto const plain = service.connection->getPartners(QStringLiteral("I"), false);
    ASSERT_TRUE(plain.waitFor(deadline));
    EXPECT_EQ(plain.get().value.size(), 3U);
    EXPECT_EQ(service.server.requestCount(), 1);

    auto const future = service.getPartners();
    ASSERT_TRUE(future.waitFor(deadline));
    auto const reply = future.get();
    ASSERT_EQ(reply.value.size(), 3U);
    EXPECT_TRUE(hasLogo(reply.value[0], "A") && hasLogo(reply.value[1], "B") && hasLogo(reply.value[2], "C"));
    EXPECT_EQ(service.server.requestCount(), 1 + 4);
    EXPECT_EQ(service.server.requests()[1].target, "/Installations/I/partners");
}

TEST(LogoChain, CasesGetTheLogoOfTheirPartner)
{
    Service const service(
        {{"B", logoReply("no image")}},
        testkit::reply(
            200,
            R"([{"CaseId":"1","PartnerId":"C","PartnerName":"Cyd"},{"CaseId":"2","PartnerId":"B","PartnerName":"Bob"},)"
            R"({"CaseId":"3","PartnerId":"C"}])"));
    test::LogCapture const log;
    auto const future = service.connection->getPartnerCases(QStringLiteral("I"), QStringLiteral("P"));
    ASSERT_TRUE(future.waitFor(deadline));
    auto const cases = future.get().value;
    ASSERT_EQ(cases.size(), 3U);
    EXPECT_TRUE(hasLogo(cases[0], "C") && !cases[1].getLogo() && hasLogo(cases[2], "C"));
    EXPECT_THAT(log.warnings(), testing::ElementsAre(bobsLogoFailed));
}

TEST(LogoChain, NothingIsFetchedForAnEmptyOrFailedList)
{
    struct
    {
        testkit::Action list;
        quint32 kind = 0;
    } const rows[] = {
        {testkit::reply(200, "[]"), 0},
        {testkit::reply(500, R"([{"Code":"17","Message":"x"}])"), 2},
        {testkit::closeNow(), 1},
    };
    for (auto const& row : rows)
    {
        Service const service({}, row.list);
        auto const future = service.getPartners();
        ASSERT_TRUE(future.waitFor(deadline));
        EXPECT_FALSE(future.isCanceled());
        EXPECT_EQ(future.get().status.kind, row.kind);
        EXPECT_EQ(future.get().status.code, row.kind == 2 ? 17 : 0);
        for (auto const& request : service.server.requests())
        {
            EXPECT_EQ(request.target, "/Installations/I/partners");
        }
    }
}

TEST(LogoChain, OneBadLogoIsWarnedOfOrNotAndSparesTheOthers)
{
    QByteArray const png = square(64, Service::color("B"));
    QByteArray const jpeg = square(64, Service::color("B"), "jpg");
    struct
    {
        char const* name = "";
        testkit::Action logo;
        bool isLogo = false;
        bool isWarned = false;
    } const rows[] = {
        {"not Base64", testkit::reply(200, "{}"), false, true},
        {"no image", logoReply("GIF89a?"), false, true},
        {"cut short", logoReply(png.left(png.size() / 2)), false, true},
        {"cut short, but its decoder takes it", logoReply(jpeg.left(jpeg.size() - 2)), true, false},
        {"more pixels than memory", logoReply("P6 30000 30000 255\n"), false, true},
        {"a negative size", logoReply("P6 -1 -1 255\n"), false, true},
        {"too large, though it could be decoded", logoReply(largePng(5000)), false, true},
        {"large enough for anybody", logoReply(largePng(4096)), true, false},
        {"of a size that shows only when it is decoded", logoReply("SQUARE -1 4096"), true, false},
        {"too large, as shows when it is decoded", logoReply("SQUARE -1 4097"), false, true},
        {"too large to be decoded, as it says itself", logoReply("SQUARE 4097 16"), false, true},
        {"empty", testkit::reply(200, ""), false, false},
        {"missing", testkit::reply(404, png.toBase64()), false, false},
        {"broken off", logoReply(png).truncatedBy(5), false, false},
    };
    for (auto const& row : rows)
    {
        SCOPED_TRACE(row.name);
        Service const service({{"B", row.logo}});
        test::LogCapture const log;
        auto const future = service.getPartners();
        ASSERT_TRUE(future.waitFor(deadline));
        auto const reply = future.get();
        ASSERT_EQ(reply.value.size(), 3U);
        EXPECT_EQ(reply.status.kind, 0U);
        EXPECT_TRUE(hasLogo(reply.value[0], "A") && hasLogo(reply.value[2], "C"));
        EXPECT_EQ(reply.value[1].getLogo().has_value(), row.isLogo);
        EXPECT_EQ(log.warnings(), std::vector<std::string>(row.isWarned ? 1 : 0, bobsLogoFailed));
    }
}

TEST(LogoChain, LogosAreRequestedAtOnceAndTheLastOneEndsTheCall)
{
    auto const held = logoReply(square(2, Service::color("A"))).afterRelease();
    Service service({{"A", held}, {"B", held}, {"C", held}});
    auto const future = service.getPartners();
    std::atomic<int> ends = 0;
    future.then([&ends](decltype(future) const&) { ++ends; });
    ASSERT_TRUE(service.server.waitForRequests(4)) << "none of them is answered yet";
    EXPECT_FALSE(future.isFinished());
    service.server.release();
    ASSERT_TRUE(future.waitFor(deadline));
    EXPECT_TRUE(future.get().value[2].getLogo());
    service.connection.reset();
    EXPECT_EQ(ends, 1);
}

TEST(LogoChain, CancellingReachesTheListAndTheLogos)
{
    Service const stalledList({}, testkit::stall());
    auto const early = stalledList.getPartners();
    ASSERT_TRUE(stalledList.server.waitForRequests(1));
    early.cancel();
    EXPECT_TRUE(stalledList.server.waitForClosedByClient(1));

    Service const stalledLogos({{"A", testkit::stall()}, {"B", testkit::stall()}, {"C", testkit::stall()}});
    test::LogCapture const log;
    auto const late = stalledLogos.getPartners();
    ASSERT_TRUE(stalledLogos.server.waitForRequests(4));
    late.cancel();
    EXPECT_TRUE(stalledLogos.server.waitForClosedByClient(3));
    EXPECT_TRUE(late.isCanceled());
    EXPECT_THAT(log.warnings(), testing::IsEmpty());
}

TEST(LogoChain, DestroyedConnectionEndsTheCallBeforeItIsGone)
{
    Service pendingList({}, testkit::stall());
    auto const canceled = pendingList.getPartners();
    ASSERT_TRUE(pendingList.server.waitForRequests(1));
    pendingList.connection.reset();
    EXPECT_TRUE(canceled.isCanceled());

    Service pendingLogo({{"B", testkit::stall()}});
    auto const finished = pendingLogo.getPartners();
    ASSERT_TRUE(pendingLogo.server.waitForRequests(4));
    pendingLogo.connection.reset();
    ASSERT_TRUE(finished.isFinished());
    ASSERT_EQ(finished.get().value.size(), 3U);
    EXPECT_FALSE(finished.get().value[1].getLogo());
}

} // namespace
