#include "CliFixture.h"

#include <QCryptographicHash>

class Cli : public CliFixture
{
};

TEST_F(Cli, ListsWhatTheServiceHas)
{
    EXPECT_EQ(keloJson({"connections", "list"}).array(), get("/Installations/INST-1001/connections").array());

    auto const listed = keloJson({"requests", "list", "--all", "--type", "referral,LabDesign"}).array();
    auto const expected = requestsOfTypes({7, 1});
    ASSERT_EQ(idsIn(listed), idsIn(expected));
    ASSERT_FALSE(listed.isEmpty());
    EXPECT_EQ(listed.at(0)["RequestType"], 1);
    EXPECT_EQ(listed.at(0)["TransactionId"], expected.at(0)["TransactionId"]);
    auto const active = keloJson({"requests", "list"}).array();
    EXPECT_LT(active.size(), keloJson({"requests", "list", "--all"}).array().size());
    EXPECT_TRUE(keloJson({"--installation", "INST-2002", "requests", "list"}).array() != active);
}

TEST_F(Cli, RefreshShowsNewChangedAndRemovedRequests)
{
    QStringList const refresh{"requests", "refresh", "--known", folder.filePath("known.json")};
    auto const own = requestsOfTypes({7}).last()["RequestId"].toString();
    auto const first = keloJson(refresh);
    auto const seen = idsIn(first["New"], "Id");
    EXPECT_EQ(first["Changed"].toArray().size() + first["Removed"].toArray().size(), 0);
    // Only a referral that holds nothing of a partner stays out.
    EXPECT_EQ(seen.size(), requestsOfTypes({}).size() - 1);
    EXPECT_TRUE(first["New"][0]["PartnerName"].isString());
    auto const details = journalled("getReferralRequestDetails");
    auto const second = keloJson(refresh);
    EXPECT_EQ(journalled("getReferralRequestDetails"), details); // one's own are not fetched again and again
    EXPECT_EQ(idsIn(second["New"]) + idsIn(second["Changed"]) + idsIn(second["Removed"]), QStringList());

    auto const replied = partnerAction({{"Action", "reply"}, {"RequestId", firstOfType(1)}, {"Text", "See proposal."}});
    auto const closed = partnerAction({{"Action", "status"}, {"RequestId", firstOfType(4)}, {"Status", 3}});
    auto const withdrawn = partnerAction({{"Action", "withdraw"}, {"RequestId", firstOfType(0)}});
    auto const created = partnerAction({{"Action", "create"}, {"Type", 7}});

    // One of the calls fails: nothing may be forgotten.
    auto const known = contentOf(refresh.last());
    fault({{"Operation", "getReferralRequestDetails"}, {"Kind", "status"}, {"Status", 503}});
    auto const failed = kelo(refresh);
    EXPECT_EQ(failed.exitCode, 1) << failed;
    EXPECT_EQ(failed.errors, "kelo: (5030) The service was told to fail here\n");
    EXPECT_EQ(contentOf(refresh.last()), known);

    // Other types than those asked for are neither shown nor taken for removed.
    auto const referrals = keloJson(refresh + QStringList{"--type", "Referral"});
    EXPECT_EQ(idsIn(referrals["New"], "Id"), QStringList{created});
    EXPECT_EQ(idsIn(referrals["Changed"]) + idsIn(referrals["Removed"]), QStringList());

    auto const third = keloJson(refresh);
    EXPECT_EQ(idsIn(third["New"]), QStringList());
    EXPECT_EQ(idsIn(third["Changed"], "Id"), (QStringList{replied, closed}));
    EXPECT_EQ(idsIn(third["Removed"]), QStringList{withdrawn});
    EXPECT_EQ(third["Changed"][0]["NoteInfos"].toArray().last()["Text"], "See proposal.");
    EXPECT_EQ(kelo(refresh).output, "0 new, 0 changed, 0 removed\n");

    EXPECT_FALSE(seen.contains(own));
    partnerAction({{"Action", "reply"}, {"RequestId", own}});
    EXPECT_EQ(idsIn(keloJson(refresh)["New"], "Id"), QStringList{own});
    partnerAction({{"Action", "withdraw"}, {"RequestId", own}});
    EXPECT_EQ(idsIn(keloJson(refresh)["Removed"]), QStringList{own});
}

TEST_F(Cli, CreatesRequestsOfEveryKindWithTheirFiles)
{
    QByteArray const content(3'000, 'x');
    auto const path = file("jaw \xC3\xB6.stl", content);
    for (auto const* type :
         {"DentalScan", "LabDesign", "TempShell", "Template", "Restoration", "SurgeryPlan", "CentralizedRestoration",
          "Referral"})
    {
        SCOPED_TRACE(type);
        auto const created = keloJson({"requests",     "create", "--connection", "CON-101",      "--type",
                                       type,           "--note", "Crown 21",     "--due",        "2026-12-31",
                                       "--first-name", "Elif",   "--gender",     "female",       "--birth-date",
                                       "1980-02-29",   "--file", path,           "--chunk-size", "1024"});
        auto const id = created["CollaborationRequestId"].toString();
        auto const request = keloJson({"requests", "show", id});
        EXPECT_EQ(request["Key"], created["CollaborationRequestKey"]);
        EXPECT_EQ(request["PartnerName"], "Alpine Dental Laboratory");
        EXPECT_EQ(request["DueDate"], "2026-12-31");
        EXPECT_EQ(request["PatientDateOfBirth"], "1980-02-29");
        EXPECT_EQ(request["PatientGender"], "Female");
        EXPECT_EQ(request["Files"][0]["Id"], created["Files"][0]["Id"]);
        EXPECT_EQ(request["Files"][0]["Name"].toString(), QString::fromUtf8("jaw \xC3\xB6.stl"));
        EXPECT_EQ(request["Files"][0]["Size"], 3'000);
        EXPECT_EQ(request["Files"][0]["NumberOfChunks"], 3);
        EXPECT_EQ(keloJson({"requests", "notes", id})[0]["Text"], "Crown 21");
        EXPECT_TRUE(idsIn(keloJson({"requests", "list", "--type", type}).array()).contains(id));
    }
    auto const sum = QCryptographicHash::hash(content, QCryptographicHash::Md5).toHex();
    EXPECT_EQ(
        get("/_control/journal").toJson().count(sum), 8); // a checksum stands in the body of each of the eight calls
    auto const crown =
        keloJson({"requests", "create", "--type", "4", "--implant", "IC-9:21"})["CollaborationRequestId"].toString();
    EXPECT_EQ(keloJson({"requests", "show", crown})["Restorations"][0]["ToothNumberStart"], 21);
}

TEST_F(Cli, ChangesRequestsAndConnections)
{
    auto const request = firstOfType(3);
    auto const before = keloJson({"requests", "show", request});
    EXPECT_EQ(keloJson({"requests", "find", "--key", before["Key"].toString()})["RequestId"], request);
    EXPECT_EQ(keloJson({"requests", "find", "--order", before["OrderReference"].toString()})["RequestId"], request);
    EXPECT_EQ(keloJson({"requests", "lock-state", request})["Unlocked"], false);
    EXPECT_EQ(kelo({"requests", "unlock", request}).exitCode, 0);
    EXPECT_EQ(keloJson({"requests", "lock-state", request})["Unlocked"], true);
    EXPECT_EQ(kelo({"requests", "status", request, "2"}).exitCode, 0);
    auto const partnerFile = before["Files"][1]["Id"].toString();
    EXPECT_EQ(kelo({"requests", "seen", partnerFile}).exitCode, 0);
    auto const after = keloJson({"requests", "show", request});
    EXPECT_EQ(after["Status"], 2);
    EXPECT_EQ(before["Files"][1]["IsMarkedAsSeen"], false);
    EXPECT_EQ(after["Files"][1]["IsMarkedAsSeen"], true);
    auto const restoration = firstOfType(4);
    EXPECT_EQ(keloJson({"requests", "url", restoration})["Url"], keloJson({"requests", "show", restoration})["Url"]);
    // A referral with nothing of the partner's stays out of a refresh, but can be looked at.
    auto const referrals = keloJson({"requests", "refresh", "--type", "7"})["New"].toArray();
    EXPECT_EQ(referrals.size() + 1, requestsOfTypes({7}).size());
    EXPECT_TRUE(referrals[0]["IsZelkoPatient"].isBool());
    EXPECT_EQ(keloJson({"requests", "show", referrals[0]["Id"].toString()}).object(), referrals[0].toObject());
    EXPECT_EQ(kelo({"requests", "show", requestsOfTypes({7}).last()["RequestId"].toString()}).exitCode, 0);

    auto const connection = keloJson({"connections", "start", "--token", "7F3K"})["ConnectionId"].toString();
    EXPECT_EQ(kelo({"connections", "set-status", connection, "stopped"}).exitCode, 0);
    EXPECT_EQ(keloJson({"connections", "list"}).array().last()["Status"], "Stopped");
    EXPECT_EQ(kelo({"sessions", "create"}).output.left(19), "Opened the session ");
    EXPECT_EQ(kelo({"sessions", "create", "--partner", connection}).exitCode, 0);
}

TEST_F(Cli, WhatTheServiceSendsCannotSteerTheTerminal)
{
    QString const evil = QString::fromUtf8("red\x1b[31m \xC2\x9B 31m\nnext \xE2\x80\xAE");
    QString const wide = QString::fromUtf8("\xE5\xB1\xB1\xE7\x94\xB0");
    auto const id = partnerAction({{"Action", "create"}, {"Type", 1}, {"Text", evil}, {"PatientLastName", wide}});
    auto const text = kelo({"requests", "show", id});
    for (auto const& run : {text, kelo({"requests", "show", id, "--json"})})
    {
        auto const output = QString::fromUtf8(run.output);
        EXPECT_EQ(run.exitCode, 0) << run;
        EXPECT_FALSE(output.contains(QChar(0x1b)) || output.contains(QChar(0x9b)) || output.contains(QChar(0x202e)));
    }
    EXPECT_TRUE(text.output.contains("red\\u001b[31m \\u009b 31m\\nnext \\u202e\n")) << text;
    EXPECT_EQ(keloJson({"requests", "notes", id})[0]["Text"], evil);

    // Columns stay aligned though those characters take two places each.
    auto const lines = QString::fromUtf8(kelo({"requests", "refresh", "--type", "1"}).output).split('\n');
    auto const row = lines.filter(wide).value(0);
    EXPECT_EQ(lines[0].indexOf("FILES"), row.lastIndexOf("1", row.size() - 2) + wide.size()) << row.toStdString();
}

TEST_F(Cli, TablesFitTheTerminalAndKeepTheIds)
{
    QString const wide(100, QChar(0x5c71));
    partnerAction({{"Action", "create"}, {"Type", 6}, {"PatientLastName", wide}});
    struct Row
    {
        QString command;
        QStringList ids;
    };
    Row const rows[] = {
        {"requests refresh", idsIn(keloJson({"requests", "refresh"})["New"], "Id")},
        {"requests list --all", idsIn(requestsOfTypes({}), "TransactionId")},
        {"partners accounts", idsIn(keloJson({"partners", "accounts"}).array(), "PartnerConnectionId")},
        {"orders status ORD-000001", {"ORD-000001"}}};
    for (auto const& [command, ids] : rows)
    {
        auto const full = QString::fromUtf8(kelo(command.split(' ')).output);
        EXPECT_FALSE(full.contains(QChar(0x2026)));
        for (int const width : {200, 80, 60})
        {
            SCOPED_TRACE(command.toStdString() + ' ' + std::to_string(width));
            auto const command80 = QString("stty cols %1; kelo %2").arg(width).arg(command);
            auto const shown = QString::fromUtf8(run("script", {"-qec", command80, "/dev/null"}).output).remove('\r');
            for (auto const& line : shown.split('\n'))
            {
                EXPECT_LE(line.size() + line.count(wide[0]), width) << line.toStdString();
            }
            for (auto const& id : ids)
            {
                EXPECT_TRUE(shown.contains(id)) << shown.toStdString();
            }
            EXPECT_EQ(shown.count('\n'), full.count('\n'));
        }
        // The long name costs its own line only.
        EXPECT_LE(full.section('\n', 0, 0).size(), 200);
    }
}

TEST_F(Cli, WhatTakesLongIsSeenToGoOn)
{
    fault({{"Operation", "getRequests"}, {"Kind", "delay"}, {"Milliseconds", 1300}});
    fault({{"Operation", "getLabDesignRequestDetails"}, {"Kind", "delay"}, {"Milliseconds", 1300}});
    auto const refresh = run("script", {"-qec", "kelo requests refresh --type 1", "/dev/null"});
    auto const last = refresh.output.indexOf("\r\x1b[KCHANGE");
    EXPECT_GT(refresh.output.indexOf("requests are new or have changed, the details of 0 are here, "), 0) << refresh;
    EXPECT_TRUE(refresh.output.startsWith("Asking for the list of requests, ") && last > 0) << refresh;
}
