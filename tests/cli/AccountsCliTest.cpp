#include "CliFixture.h"

#include <QDir>

class AccountsCli : public CliFixture
{
protected:
    /// What `--trace -` writes behind the command's own output.
    static QByteArray traceIn(ProgramRun const& run) { return run.output.mid(run.output.lastIndexOf("\"log\": {")); }

    AccountsCli() { environment.insert("KELO_STATS_URL", QString("http://127.0.0.1:%1/stats").arg(port)); }
};

TEST_F(AccountsCli, PartnersAndTheirLogos)
{
    EXPECT_EQ(
        idsIn(keloJson({"partners"}).array(), "PartnerId"), QStringList({"PLT-11", "PLT-12", "PLT-13", "PLT-14"}));
    auto const logos = folder.filePath("new/logos");
    EXPECT_EQ(keloJson({"partners", "--logos", logos}).array().size(), 4);
    EXPECT_EQ(QDir(logos).entryList(QDir::Files), QStringList({"PLT-11.png", "PLT-12.png"}));
    EXPECT_TRUE(contentOf(logos + "/PLT-11.png").startsWith("\x89PNG"));
    file("new/logos/PLT-11.png", "my own");
    QFile::remove(logos + "/PLT-12.png");
    auto const kept = kelo({"partners", "--logos", logos});
    EXPECT_EQ(kept.exitCode, 4) << kept;
    EXPECT_TRUE(kept.errors.startsWith("kelo: 1 of 2 logos were not written: ")) << kept;
    EXPECT_EQ(contentOf(logos + "/PLT-11.png"), "my own");
    EXPECT_TRUE(QFile::exists(logos + "/PLT-12.png"));
    EXPECT_EQ(keloJson({"partners", "accounts"}).array().size(), 3);
    EXPECT_TRUE(keloJson({"partners", "test", "PAC-301"})["IsConnected"].toBool());
    EXPECT_FALSE(keloJson({"partners", "test", "PAC-303"})["IsConnected"].toBool(true));
}

TEST_F(AccountsCli, ACaseIsCreatedExtendedSharedAndFollowed)
{
    auto const scan = file("upper.stl", "solid upper");
    auto const created = keloJson(
        {"cases", "create", "--patient", "PAT-77", "--gender", "female", "--file", scan, "--prescription", scan});
    auto const id = created["CaseId"].toString();
    EXPECT_EQ(created["CaseFiles"][0]["Name"], "upper.stl");
    EXPECT_EQ(keloJson({"cases", "add", id, "--file", scan, "--type", "Scan"}).array().size(), 1);
    keloJson({"cases", "share", id, "--connection", "PAC-301"});

    auto const stored = get("/_control/cases").array().last();
    EXPECT_EQ(stored["Files"][0]["Size"], "11");
    EXPECT_EQ(stored["Files"][1]["Type"], "Scan");
    auto const portal = keloJson({"cases", "portal", "--patient", "PAT-77"});
    EXPECT_EQ(portal[0]["SharedWithSites"][0]["Name"], "Brightline Aligners");
    EXPECT_EQ(idsIn(keloJson({"cases", "list", "--patient", "PAT-77"}).array(), "CaseId"), QStringList{id});
    EXPECT_EQ(keloJson({"cases", "refresh", id})[0]["CaseId"], id);
}

TEST_F(AccountsCli, AccountDocumentsSoftwareAndStudies)
{
    auto const account = keloJson({"account"});
    EXPECT_FALSE(account["AccountSettings"]["SiteId"].toString().isEmpty());
    EXPECT_EQ(account["UpdateReferences"].toObject().size(), 2);
    auto const documents = keloJson({"documents"}).array();
    EXPECT_EQ(documents[1]["FileId"], account["UpdateReferences"]["KeloIFUFileReference"]);
    auto const language = documents.last()["LanguageCode"].toString();
    auto const help = keloJson({"documents", "--language", language}).array();
    ASSERT_EQ(help.size(), 4);
    EXPECT_EQ(help[3]["FileId"], documents.last()["FileId"]);
    EXPECT_FALSE(keloJson({"software"})["Version"].toString().isEmpty());
    EXPECT_EQ(keloJson({"studies"}).array().size(), 3);

    fault({{"Operation", "getSettingsLicenseInfo"}, {"Kind", "status"}, {"Status", 500}});
    auto const failed = kelo({"account"});
    EXPECT_EQ(failed.exitCode, 1);
    EXPECT_TRUE(failed.errors.contains("Failed to get settings info: ")) << failed;
}

TEST_F(AccountsCli, SecretsAreShownOnlyWhenAskedFor)
{
    for (auto const& arguments : {QStringList{"users"}, QStringList{"call", "getUsersForLicense"}})
    {
        for (auto const& form : {QStringList{}, QStringList{"--json"}})
        {
            auto const traced = arguments + form + QStringList{"--trace", "-"};
            auto const hidden = kelo(traced);
            EXPECT_TRUE(hidden.output.contains("anita.rao") && traceIn(hidden).contains("anita.rao")) << hidden;
            EXPECT_FALSE(hidden.output.contains("pbkdf2") || hidden.output.contains("AQIDBHh2")) << hidden;
            auto const shown = kelo(traced + QStringList{"--with-secrets"});
            for (auto const* secret : {"pbkdf2", "AQIDBHh2"})
            {
                EXPECT_GT(shown.output.count(secret), traceIn(shown).count(secret)) << shown;
                EXPECT_GT(traceIn(shown).count(secret), 0) << shown;
            }
        }
    }
    fault({{"Operation", "getUsersForLicense"}, {"Kind", "truncatedBody"}});
    auto const cut = kelo({"users", "--trace", "-"});
    EXPECT_TRUE(cut.output.contains("\"[redacted]\"") && !cut.output.contains("pbkdf2")) << cut;
    EXPECT_TRUE(kelo({"keys", "--with-secrets"}).output.contains("3p-7c1f40a2d95e"));
    EXPECT_EQ(keloJson({"call", "getThirdPartyAuthenticationKeys", "--with-secrets"}).array().size(), 2);
}

TEST_F(AccountsCli, StatisticsArrive)
{
    QByteArray const content("\0\xff binary", 9);
    auto const path = file("usage.bin", content);
    EXPECT_EQ(keloJson({"stats", "upload", path, "--id", "Daily"})["Size"], 9);
    auto const stored = get("/_control/stats")[0];
    EXPECT_EQ(stored["SelectedType"], "Daily");
    EXPECT_EQ(QByteArray::fromBase64(stored["Data"].toString().toLatin1()), content);
    fault({{"Operation", "uploadVantorStats"}, {"Kind", "status"}, {"Status", 500}});
    EXPECT_EQ(kelo({"stats", "upload", path, "--id", "Daily"}).exitCode, 1);
    EXPECT_EQ(kelo({"stats", "upload", path, "--id", "Daily", "--stats-url", "http://127.0.0.1:1/"}).exitCode, 3);
}

TEST_F(AccountsCli, EveryOperationCanBeCalled)
{
    auto const operations = keloJson({"call", "--list"}).array();
    EXPECT_GE(operations.size(), 69);
    EXPECT_EQ(idsIn(operations, "Operation").removeDuplicates(), 0);
    EXPECT_EQ(keloJson({"call", "getAccountLicenseInfo"})["Site"].isObject(), true);
    EXPECT_EQ(keloJson({"call", "getPartners", "true"}).array().size(), 4);
    EXPECT_EQ(keloJson({"call", "getMiraShareCases", "PAT-000001"}).array().size(), 3);
    EXPECT_FALSE(keloJson({"call", "getSoftwarePageUrl"})["Url"].toString().isEmpty());
    EXPECT_EQ(keloJson({"call", "getPartnerLogo", "PLT-11"})["Base64"].toString().isEmpty(), false);

    auto const session = keloJson({"call", "createCollaborationSession:connection", R"({"ConnectionId": "CON-101"})"});
    auto const body = file(
        "request.json", QJsonDocument(QJsonObject{
                                          {"SessionId", session["SessionId"]},
                                          {"Type", "LabDesign"},
                                          {"DueDate", "2026-12-31"},
                                          {"NewFiles", QJsonArray{QJsonObject{{"Name", "jaw.stl"}, {"Size", 12}}}}})
                            .toJson());
    auto const id = keloJson({"call", "createRequest", '@' + body})["CollaborationRequestId"].toString();
    auto const details =
        keloJson({"call", "getLabDesignRequestDetails", QString(R"({"RequestIds": ["%1"], "Type": 1})").arg(id)});
    EXPECT_TRUE(details.toJson().contains("jaw.stl")) << details.toJson().toStdString();
    for (auto const* word : {"-", "@-", "@/dev/stdin"})
    {
        auto const piped = R"(echo '{"RequestIds": ["%1"], "Type": 1}' | kelo call getLabDesignRequestDetails %2)";
        EXPECT_EQ(run("sh", {"-c", QString(piped).arg(id, word)}).json(), details) << word;
    }
    auto const status =
        keloJson({"call", "updateCollaborationRequestStatus", QString(R"({"RequestId": "%1", "Status": 1})").arg(id)});
    EXPECT_EQ(status["HttpStatus"].toInt() / 100, 2);
}

TEST_F(AccountsCli, BadInputIsNamedAndSendsNothing)
{
    auto const missing = folder.filePath("missing.bin");
    expectBadInput(
        {{{"partners", "test", "../PAC"}, "\"../PAC\""},
         {{"partners", "--logos", file("plain", "x")}, "plain"},
         {{"cases", "create", "--patient", "P", "--file", missing}, "missing.bin"},
         {{"cases", "create", "--patient", "P", "--prescription", missing}, "missing.bin"},
         {{"cases", "create", "--patient", "P", "--birthday", "1.2.1990"}, "\"1.2.1990\""},
         {{"cases", "add", "PORTAL-1"}, "--file"},
         {{"cases", "refresh"}, "at least one"},
         {{"documents", "--language", "d/e"}, "\"d/e\""},
         {{"keys"}, "--with-secrets"},
         {{"stats", "upload", missing, "--id", "x"}, "missing.bin"},
         {{"stats", "upload", missing, "--id", "x", "--stats-url", "ftp://127.0.0.1"}, "http:// or https://"},
         {{"call"}, "--list"},
         {{"call", "getNothing"}, "\"getNothing\""},
         {{"call", "getUsersForLicense", "more"}, "no arguments"},
         {{"call", "getThirdPartyAuthenticationKeys"}, "--with-secrets"},
         {{"call", "getPartners", "maybe"}, "\"maybe\""},
         {{"call", "getCatalogUpdateInfo", "new"}, "\"new\""},
         {{"call", "uploadOrderFile", "UPLOAD-1", missing}, "missing.bin"},
         {{"call", "createOrder", "[1"}, "ORDER"},
         {{"call", "createOrder", "{\n \"Items\": []}"}, "ORDER: line 2, column 2: Items: there is no such member"},
         {{"call", "createOrder", R"({"OrderItems": [{"Quantity": "2"}]})"},
          "30: OrderItems[0].Quantity: this must be"},
         {{"call", "createOrder", R"({"OrderItems": [{"Quantity": 4294967298}]})"}, "a whole number"},
         {{"call", "createOrder", R"({"OrderItems": [{"Quantity": 2, "Qu\u0061ntity": 7}]})"}, "this is given twice"},
         {{"call", "createOrder", R"({"OrderItems": 1, "OrderItems": []})"}, "OrderItems: this must be a list"},
         {{"call", "updateConnectionStatus", R"({"ConnectionId": "C", "Status": "Gone"})"}, "Connected"},
         {{"call", "updateRequest", R"({"RequestId": "../1"})"}, "RequestId: The id \"../1\""},
         {{"call", "updateRequest", R"({"Note": "x"})"}, "RequestId: this is missing"}});
}
