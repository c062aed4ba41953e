#include "tests/simulator/SimulatorFixture.h"

namespace
{

class AccountsTest : public SimulatorFixture
{
protected:
    QJsonDocument of1001(QString const& resource, int status = 200)
    {
        return get("/Installations/INST-1001/" + resource, status);
    }
    QJsonDocument of2002(QString const& resource) { return get("/Installations/INST-2002/" + resource); }
};

TEST_F(AccountsTest, anAccountHasItsSiteAndItsAddresses)
{
    auto const info = of1001("accountInfo?api-version=1.0");
    EXPECT_EQ(info["Account"]["AccountName"], "Harbour Street Dental Practice");
    EXPECT_EQ(info["Site"]["TwoFactorEnabled"], true);
    EXPECT_EQ(info["Site"]["TwoFactorRefreshTime"], 30);
    EXPECT_EQ(of2002("accountInfo?api-version=1.0")["Site"]["TwoFactorEnabled"], false);
    EXPECT_NE(of2002("accountInfo?api-version=1.0")["Site"]["Token"], info["Site"]["Token"]);

    auto const settings = of1001("settings?api-version=1.0").object();
    QSet<QString> urls;
    for (QJsonValue const url : settings)
    {
        urls << url.toString();
    }
    EXPECT_EQ(urls.size(), 14) << "no two of them can be mistaken for each other";
    EXPECT_EQ(get("/Settings")["SoftwarePageUrl"], settings["SoftwarePageUrl"]);
}

TEST_F(AccountsTest, theStatusOfADocumentNamesTheFileThatItsInfoDescribes)
{
    for (QString const kind : {"ifu", "uitranslation", "about"})
    {
        auto const info = of1001(kind);
        EXPECT_EQ(of1001(kind + "/status").object(), (QJsonObject{{"FileId", info["FileId"]}}));
        EXPECT_NE(of2002(kind)["FileId"], info["FileId"]);
        EXPECT_GT(info["FileSize"].toInt(), 0);
    }
    auto const help = of1001("help/status").array();
    EXPECT_EQ(help.size(), 5);
    for (QJsonValue const language : help)
    {
        auto const info = of1001("help/" + language["LanguageCode"].toString());
        EXPECT_EQ(info["FileId"], language["Id"]);
        EXPECT_TRUE(info["FileName"].toString().contains(language["LanguageCode"].toString()));
    }
    EXPECT_EQ(of2002("help/status").array(), QJsonArray());
    EXPECT_EQ(help[4]["DisplayName"], QString::fromUtf8("日本語"));
    EXPECT_EQ(of1001("help/xx", 404)[0]["Code"], "4041");
    EXPECT_EQ(of1001("help/ifu", 404)[0]["Code"], "4041");
    EXPECT_EQ(of1001("help/", 404)[0]["Code"], "4040");

    EXPECT_EQ(of1001("softwareupdate?api-version=1.0")["ForcedUpdate"], false);
    EXPECT_EQ(of2002("softwareupdate?api-version=1.0")["ForcedUpdate"], true);
}

TEST_F(AccountsTest, everyResourceNeedsItsQueryAndAKnownInstallation)
{
    char const* const resources[] = {
        "accountInfo?api-version=1.0",
        "settings?api-version=1.0",
        "softwareupdate?api-version=1.0",
        "ifu/status",
        "uitranslation",
        "help/status",
        "help/en",
        "users",
        "Studies",
        "3rdpartyauthenticationkeys",
        "partners",
        "PartnerConnections",
        "PartnerCases/patients/P-7",
        "test-connection?partnerConnectionId=PAC-301"};
    for (QString const resource : resources)
    {
        auto const path = "/Installations/INST-404/" + resource;
        EXPECT_EQ(get(path, 404)[0]["Code"], "4041") << path.toStdString();
        if (resource.contains("api-version"))
        {
            EXPECT_EQ(get(path.section('?', 0, 0), 400)[0]["Code"], "4005") << path.toStdString();
            EXPECT_EQ(of1001(QString(resource).replace("=1.0", "=2.0"), 400)[0]["Code"], "4005");
        }
    }
    EXPECT_EQ(of1001("studies", 404)[0]["Code"], "4040") << "the path is case-sensitive";
}

TEST_F(AccountsTest, statisticsAreKeptAsTheyWereSent)
{
    QByteArray const bytes("\x00\xff\x10stats\n", 9);
    auto const encoded = QString::fromLatin1(bytes.toBase64());
    post("/stats", {{"SelectedType", "usage-7"}, {"Data", encoded}}, 204);
    post("/stats", {{"SelectedType", "empty"}, {"Data", ""}}, 204);
    for (char const* const bad : {"AP8Q=", "AP8Q c3RhdHMK", "AP8Qc3RhdHMK\n", "_-8Qc3RhdHMK", "AA"})
    {
        auto const error = post("/stats", {{"SelectedType", "bad"}, {"Data", bad}}, 400);
        EXPECT_EQ(error[0]["Code"], "4004") << bad;
    }
    post("/stats", {{"SelectedType", "bad"}}, 400);
    auto const stored = get("/_control/stats").array();
    ASSERT_EQ(stored.size(), 2);
    EXPECT_EQ(stored[0]["Data"], encoded);
    EXPECT_EQ(stored[0]["Size"], 9);
    EXPECT_EQ(stored[1]["SelectedType"], "empty");

    fault({{"Operation", "uploadVantorStats"}, {"Kind", "status"}, {"Status", 507}});
    post("/stats", {{"SelectedType", "lost"}, {"Data", ""}}, 507);
    auto const journal = get("/_control/journal");
    EXPECT_EQ(journal["Counts"]["POST /stats"], 9);
    EXPECT_EQ(journal["Requests"].toArray().last()["Operation"], "uploadVantorStats");
    client.set_basic_auth("kelo", "wrong");
    post("/stats", {{"SelectedType", "foreign"}, {"Data", ""}}, 401);
    post("/_control/reset", {}, 204);
    EXPECT_EQ(get("/_control/stats").array(), QJsonArray());
}

} // namespace
