#include "CliFixture.h"

#include <QDir>
#include <QRegularExpression>

class ReplayCli : public CliFixture
{
protected:
    ReplayCli()
    {
        file("crown.stl", "solid crown\nendsolid crown\n");
        auto const order = file("order.json", R"({"AddressIdentifier": "ADR-501", "OrderItems": [{"ArticleNumber":
            "ART-10010", "Quantity": 1, "ToothNumberStart": 36, "ToothNumberEnd": 36, "Files": ["crown.stl"]}]})");
        auto const shell = get("/Orders/ORD-000003/files/tempshell")[0]["Id"].toString();
        commands = {
            {"requests", "list"},
            {"requests", "show", firstOfType(4)},
            {"orders", "create", order, "--files", folder.path(), "--again"},
            {"users", "--with-secrets"},
            {"shells", "download", "ORD-000003", "--into", folder.path(), "--overwrite"},
            {"call", "getTempShellFile", shell},
            {"requests", "show", "REQ-none"},
            {"connections", "list"},
            {"connections", "list"},
        };
        fault({{"Operation", "getConnectionsForLicense"}, {"Kind", "truncatedBody"}});
        fault({{"Operation", "getConnectionsForLicense"}, {"Kind", "drop"}});
    }

    /// What all commands said, each with its trace.
    QList<QPair<QByteArray, QByteArray>> session()
    {
        QList<QPair<QByteArray, QByteArray>> all;
        for (auto const& command : commands)
        {
            auto const trace = folder.filePath(QStringLiteral("%1.har").arg(all.size()));
            auto const done = kelo(command + QStringList{"--trace", trace});
            all.append({QByteArray::number(done.exitCode) + done.output + done.errors, contentOf(trace)});
        }
        return all;
    }

    static std::string withoutTimes(QByteArray const& har)
    {
        QJsonArray entries;
        for (auto const& value : QJsonDocument::fromJson(har)["log"]["entries"].toArray())
        {
            auto entry = value.toObject();
            for (auto const* key : {"startedDateTime", "time", "timings"})
            {
                EXPECT_FALSE(entry.take(QLatin1String(key)).isNull());
            }
            entries.append(entry);
        }
        auto text = QString::fromUtf8(QJsonDocument(entries).toJson());
        return text.replace(QRegularExpression("\\w+, [\\w :]+ GMT"), "now").toStdString();
    }

    std::vector<QStringList> commands;
};

TEST_F(ReplayCli, ASessionIsReplayedAsItWas)
{
    auto const recorded = session();
    service.stop();
    QStringList told;
    simulator::SimulatorOptions options;
    options.port = port;
    options.password = "other";
    options.unmatched = [&told](QString const& line) { told << line; };
    for (auto const& [output, har] : recorded)
    {
        options.recordings.push_back({QStringLiteral("%1.har").arg(options.recordings.size()), har});
    }
    simulator::Simulator replaying(options);
    ASSERT_EQ(QUrl(replaying.start()).port(), port);

    auto const replayed = session();
    EXPECT_EQ(told, QStringList());
    ASSERT_EQ(replayed.size(), recorded.size());
    for (qsizetype at = 0; at < recorded.size(); ++at)
    {
        SCOPED_TRACE(commands[static_cast<std::size_t>(at)].join(' ').toStdString());
        EXPECT_EQ(replayed[at].first, recorded[at].first);
        EXPECT_EQ(withoutTimes(replayed[at].second), withoutTimes(recorded[at].second));
    }
    EXPECT_EQ(replaying.control("GET", "replay")["NeverAsked"], QJsonArray());
    replaying.verify({{"Requests", QJsonArray{QJsonObject{{"Operation", "createOrder"}, {"Exactly", 1}}}}});

    auto const other = kelo({"call", "getStudiesForLicense"});
    EXPECT_EQ(other.exitCode, 1) << other;
    EXPECT_TRUE(other.errors.contains("(5010) Not in the recording: GET /Installations/INST-1001/Studies; nearest is "))
        << other;
    ASSERT_EQ(told.size(), 1);
    EXPECT_TRUE(told[0].startsWith("GET /Installations/INST-1001/Studies; nearest is ")) << told[0].toStdString();
    EXPECT_EQ(replaying.control("GET", "replay")["Unmatched"][0]["Request"], told[0]);
    EXPECT_EQ(replaying.journal()["Requests"].toArray().last()["Unmatched"], told[0]);
    replaying.addFault("status:operation=getUsersForLicense,status=418");
    EXPECT_TRUE(kelo({"users"}).errors.contains("(4180)"));
}
