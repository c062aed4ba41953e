#include "CliFixture.h"

#include <QDir>

class CliFiles : public CliFixture
{
protected:
    QStringList names() const { return QDir(folder.path()).entryList(QDir::Files | QDir::Hidden | QDir::System); }
};

TEST_F(CliFiles, EveryFileIsWrittenAsAWholeOrNotAtAll)
{
    struct Row
    {
        QStringList arguments;
        QString path;
        QByteArray former;
        bool isPrivate;
    };
    auto const at = [this](char const* name) { return folder.filePath(name); };
    auto const order = file(
        "order.json",
        R"({"AddressIdentifier": "ADR-501", "OrderItems": [{"ArticleNumber": "ART-30010", "Quantity": 1}]})");
    std::vector<Row> const rows = {
        {{"users", "--trace", at("trace.har")}, at("trace.har"), "precious", true},
        {{"requests", "refresh", "--known", at("known")},
         at("known"),
         R"({"Installation": "INST-1001", "Requests": []})",
         true},
        {{"partners", "--overwrite", "--logos", folder.path()}, at("PLT-11.png"), "precious", false},
        {{"shells", "download", "ORD-000003", "--overwrite", "--into", folder.path()},
         at("tempshell-14-24.stl"),
         "precious",
         false},
        {{"orders", "create", order, "--again", "--state", at("state")},
         at("state"),
         R"({"OrderReference": "ORD-1", "Files": [], "IsFinished": true})",
         true}};
    for (auto const& row : rows)
    {
        SCOPED_TRACE(row.path.toStdString());
        file(QFileInfo(row.path).fileName(), row.former);
        auto const before = names();
        auto const full = finished(*started(KELO_PROGRAM, row.arguments, 100));
        EXPECT_EQ(full.exitCode, 4) << full;
        EXPECT_TRUE(full.errors.contains(row.path.toUtf8()) && full.errors.contains("File too large")) << full;
        EXPECT_EQ(full.errors.count('\n'), 1) << full;
        EXPECT_EQ(contentOf(row.path), row.former);
        EXPECT_EQ(names(), before);

        auto const good = kelo(row.arguments);
        EXPECT_EQ(good.exitCode, 0) << good;
        EXPECT_GT(contentOf(row.path).size(), 100);
        EXPECT_FALSE(row.isPrivate && (QFile::permissions(row.path) & (QFile::ReadGroup | QFile::ReadOther)));
    }
    EXPECT_FALSE(names().join(' ').contains(".kelo-"));
}

TEST_F(CliFiles, DevicesAndPipesAreWrittenToAsTheyAre)
{
    auto const fifo = folder.filePath("fifo");
    auto const piped =
        run("sh", {"-c", "mkfifo " + fifo + "; cat " + fifo + "& kelo users --trace " + fifo + " >&2; wait; test -p "
                             + fifo});
    EXPECT_EQ(piped.exitCode, 0) << piped;
    EXPECT_EQ(piped.json()["log"]["entries"].toArray().size(), 1) << piped;

    struct Row
    {
        char const* command = "";
        int exitCode = 0;
        char const* told = "";
    };
    constexpr Row rows[] = {
        {"users >/dev/full", 4},
        {"requests create --type LabDesign >/dev/full", 4, " - But this is done: Created the request REQ-"},
        {"sessions create --json >/dev/full", 4, "But this is done: { \\\"SessionId\\\": "},
        {"call getRequests:active true >/dev/full", 4},
        {"--help >/dev/full", 2},
        {"--version >/dev/full", 2},
        {"users --trace /dev/full", 4},
        {"orders status ORD-000001 --json --trace - >/dev/full", 4},
        {"describe >/dev/full", 2}}; // asks nobody
    for (auto const& row : rows)
    {
        auto const full = run("sh", {"-c", QString("kelo ") + row.command});
        EXPECT_EQ(full.exitCode, row.exitCode) << full;
        EXPECT_TRUE(full.errors.contains("No space left on device") && full.errors.contains(row.told)) << full;
        EXPECT_EQ(full.errors.contains("is done"), row.told[0] != '\0') << full;
    }
    EXPECT_FALSE(QFileInfo("/dev/full").isFile());
}
