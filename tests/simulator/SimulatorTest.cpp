#include "tests/simulator/SimulatorFixture.h"

#include <QDir>

#include <future>

namespace
{

using simulator::Simulator;
using simulator::SimulatorOptions;

class SimulatorTest : public SimulatorFixture
{
protected:
    QJsonArray list(bool onlyActive, QJsonArray const& types = {})
    {
        return post(
                   "/Installations/INST-1001/requests",
                   {{"GetOnlyActiveRequests", onlyActive}, {"VersionNumber", "1.0"}, {"SelectedTypes", types}})
            .array();
    }
    /// The entry of the request in the list; empty when it is not there.
    QJsonObject listed(QString const& id, bool onlyActive = false)
    {
        for (auto const& entry : list(onlyActive))
        {
            if (entry.toObject()["RequestId"] == id)
            {
                return entry.toObject();
            }
        }
        return {};
    }
    /// All request entries of a details answer, each with the keys of its partner added.
    QList<QJsonObject> details(QString const& kindPath, QJsonArray const& ids, bool onlyActive = false)
    {
        QList<QJsonObject> found;
        auto const groups = post(
                                "/Installations/INST-1001/requests/" + kindPath + "details",
                                {{"GetOnlyActiveRequests", onlyActive}, {"VersionNumber", ""}, {"RequestIds", ids}})
                                .array();
        for (QJsonValue const group : groups)
        {
            for (QJsonValue const entry : group["CollaborationRequestDetailInfos"].toArray())
            {
                auto const partner =
                    QJsonObject{{"PartnershipId", group["PartnershipId"]}, {"PartnerName", group["PartnerName"]}};
                found << merged(entry.toObject(), partner);
            }
        }
        return found;
    }
};

QJsonObject const from1001 = {{"InstallationReference", "INST-1001"}};
QJsonObject const newScan = {
    {"Name", "scan.stl"},
    {"Size", qint64(5'368'709'120)},
    {"ChunkSize", 1'048'576},
    {"CheckSum", "00ff"},
    {"FileType", "stl"}};
QJsonObject const surgeryPlan = {
    {"InstallationReference", "INST-1001"},
    {"UserReference", "Dr. Rao"},
    {"VersionNumber", "1.2"},
    {"Note", "Two implants"},
    {"DueDate", "2025-04-30"},
    {"NewFiles", QJsonArray{newScan}},
    {"ExistingFiles", QJsonArray()},
    {"Metadata", "m1"},
    {"TreatingClinician", "Dr. Rao"},
    {"PatientId", "P-7"},
    {"PatientFirstName", "Eva"},
    {"PatientLastName", "Klein"},
    {"PatientGender", "Female"},
    {"PatientDateOfBirth", "1971-02-03"},
    {"RequesterPatientReference", "R-7"}};

TEST_F(SimulatorTest, aRequestLivesFromCreationToWithdrawal)
{
    auto const session = post("/Connections/CON-101/sessions", merged(from1001, {{"UserReference", "Dr. Rao"}}));
    auto const sessionPath = "/Sessions/" + session["SessionId"].toString();
    auto const created = post(sessionPath + "/request/surgeryplan", surgeryPlan);
    auto const id = created["CollaborationRequestId"].toString();
    auto const fileId = created["Files"][0]["Id"].toString();
    EXPECT_EQ(created["Files"][0]["Name"], "scan.stl");
    EXPECT_EQ(listed(id, true)["RequestType"], 5);

    auto const before = details("surgeryplan/", {id}).at(0);
    EXPECT_EQ(before["PartnerName"], "Alpine Dental Laboratory");
    EXPECT_EQ(before["Key"], created["CollaborationRequestKey"]);
    EXPECT_EQ(before["DueDate"], "2025-04-30");
    EXPECT_EQ(before["RequesterPatientReference"], "R-7");
    EXPECT_EQ(before["Files"][0]["NumberOfChunks"], 5120);
    EXPECT_EQ(before["Files"][0]["IsMarkedAsSeen"], false);

    // Every change gives a new transaction id.
    QJsonValue lastTransaction = before["TransactionId"];
    auto const expectChange = [&](char const* what)
    {
        QJsonValue const now = listed(id)["TransactionId"];
        EXPECT_NE(now, lastTransaction) << what;
        lastTransaction = now;
    };
    auto const files = QJsonObject{{"UserReference", "U"}, {"NewFiles", QJsonArray()}, {"ExistingFiles", QJsonArray()}};
    post("/Requests/surgeryplan/" + id, merged(merged(from1001, files), {{"Note", "More"}}));
    expectChange("surgery plan update");
    auto const updated = post(
        "/Requests/" + id + "/request",
        merged(
            merged(from1001, files),
            {{"Note", ""}, {"DueDate", ""}, {"Metadata", "m2"}, {"NewFiles", QJsonArray{newScan}}}));
    EXPECT_EQ(updated[0]["Name"], "scan.stl");
    expectChange("update");
    post("/CollaborationFiles/" + fileId, from1001, 204);
    expectChange("seen");
    auto const reply = post("/_control/partner-action", {{"Action", "reply"}, {"RequestId", id}, {"Text", "Fine."}});
    expectChange("reply");
    EXPECT_EQ(reply["TransactionId"], lastTransaction);
    post("/Requests/" + id + "/status", merged(from1001, {{"Status", 3}}), 204);
    expectChange("status");

    auto const after = details("surgeryplan/", {id}).at(0);
    EXPECT_EQ(after["Status"], 3);
    EXPECT_EQ(after["Metadata"], "m2");
    EXPECT_EQ(after["DueDate"], "2025-04-30");
    EXPECT_EQ(after["Files"][0]["IsMarkedAsSeen"], true);
    EXPECT_EQ(after["Files"].toArray().size(), 3);
    EXPECT_EQ(after["Files"][2]["IsCreator"], false);
    EXPECT_EQ(after["NoteInfos"].toArray().size(), 3);
    EXPECT_EQ(after["NoteInfos"][2]["Text"], "Fine.");
    EXPECT_TRUE(listed(id, true).isEmpty()) << "a completed request is no longer active";

    auto const search = QStringLiteral("/Installations/INST-1001/requests?api-version=0.0&Search.");
    EXPECT_EQ(get(search + "Key=" + after["Key"].toString())["RequestId"], id);
    EXPECT_EQ(get(search + "SalesOrderNumber=" + after["OrderReference"].toString())["RequestId"], id);
    post("/_control/partner-action", {{"Action", "withdraw"}, {"RequestId", id}});
    EXPECT_TRUE(listed(id).isEmpty());
    post("/_control/reset", {}, 204);
    EXPECT_EQ(details("", {"REQ-000001"}).size(), 1);
}

TEST_F(SimulatorTest, everyKindIsSeededAndTheFiltersHold)
{
    char const* const kinds[] = {
        "dentalscan", "labdesign", "tempshell", "template", "restoration", "surgeryplan", "centralizedrestoration",
        "referral"};
    for (int type = 0; type < 8; ++type)
    {
        auto const path = QString::fromLatin1(kinds[type]) + '/';
        auto const all = details(path, {});
        auto const active = details(path, {}, true);
        EXPECT_GE(all.size(), 2) << kinds[type];
        EXPECT_GE(active.size(), 1) << kinds[type];
        EXPECT_LT(active.size(), all.size()) << kinds[type];
        EXPECT_EQ(list(false, {type}).size(), all.size()) << kinds[type];
        EXPECT_EQ(list(true, {type}).size(), active.size()) << kinds[type];
        EXPECT_EQ(details("", {all[0]["Id"]}), details(path, {all[0]["Id"]})) << kinds[type];
        EXPECT_TRUE(details(path, {"REQ-none"}).isEmpty()) << kinds[type];
    }
    EXPECT_EQ(list(false, {0, 7}).size(), list(false, {0}).size() + list(false, {7}).size());
    auto const referrals = details("referral/", {});
    EXPECT_TRUE(std::any_of(
        referrals.begin(), referrals.end(),
        [](QJsonObject const& referral)
        { return referral["Files"].toArray().size() == 1 && referral["Files"][0]["FileType"] == "ZelkoPatient"; }));

    auto const restorations = details("restoration/", {});
    EXPECT_TRUE(restorations[0]["Restorations"][0]["ImplantConnections"][0]["Size"].isString());
    auto const urls = post(
        "/Installations/INST-1001/requests/restoration/details",
        {{"GetOnlyActiveRequests", false}, {"RequestIds", QJsonArray{restorations[0]["Id"]}}});
    auto const entry = urls["CollaborationSessionDetailInfos"][0]["CollaborationRequestDetailInfos"][0];
    EXPECT_EQ(entry["Id"], restorations[0]["Id"]);
    EXPECT_EQ(entry["RestorationURL"], restorations[0]["RestorationURL"]);
}

TEST_F(SimulatorTest, connectionsSessionsAndLocksKeepTheirState)
{
    auto const started = post(
        "/Installations/INST-1001/connections",
        merged(from1001, {{"UserReference", "U"}, {"Note", ""}, {"ConnectionToken", "T-9"}}));
    auto const id = started["ConnectionId"].toString();
    post("/Connections/" + id, merged(from1001, {{"Status", 4}}), 204);
    auto const connections = get("/Installations/INST-1001/connections").array();
    EXPECT_EQ(connections.last()["ConnectionId"], id);
    EXPECT_EQ(connections.last()["Status"], "Rejected");
    EXPECT_EQ(get("/Installations/INST-2002/connections").array().size(), 1);

    post("/Installations/INST-1001/sessions", {});
    auto const session = post("/installations/INST-1001/sessions", {{"UserReference", "U"}});
    auto const order =
        post("/Sessions/" + session["SessionId"].toString() + "/request", merged(surgeryPlan, {{"Type", 3}}));
    auto const lockPath = "/Requests/" + order["CollaborationRequestId"].toString();
    EXPECT_EQ(post(lockPath + "/unlocked-status", from1001)["Unlocked"], false);
    send("PUT", lockPath + "/unlock-file", QJsonDocument(from1001).toJson(), 204);
    EXPECT_EQ(post(lockPath + "/unlocked-status", from1001)["Unlocked"], true);

    auto restoration = surgeryPlan;
    restoration.remove("Metadata");
    restoration.remove("RequesterPatientReference");
    restoration["Connections"] = QJsonArray{QJsonObject{{"ImplantConnectionId", "IC-1"}, {"ToothNumber", 36}}};
    auto const made = post("/Sessions/" + session["SessionId"].toString() + "/request/restoration", restoration);
    auto const stored = details("restoration/", {made["CollaborationRequestId"]}).at(0);
    EXPECT_EQ(stored["PartnerName"], "Central Production");
    EXPECT_EQ(stored["Restorations"][0]["ImplantConnections"][0]["ImplantConnectionId"], "IC-1");
}

TEST_F(SimulatorTest, faultsSpoilTheCallsTheyAreMeantFor)
{
    auto const path = "/Installations/INST-1001/connections";
    fault({{"Operation", "getConnectionsForLicense"}, {"Kind", "drop"}});
    EXPECT_EQ(client.Get(path).error(), httplib::Error::Read);
    fault({{"Operation", "getConnectionsForLicense"}, {"Kind", "status"}, {"Times", 2}, {"Status", 418}});
    EXPECT_FALSE(list(false).isEmpty()) << "another operation is spared";
    EXPECT_EQ(get(path, 418)[0]["Code"], "4180");
    get(path, 418);
    EXPECT_TRUE(get(path).isArray());
    fault({{"Kind", "delay"}, {"Milliseconds", 1}});
    auto const rules = get("/_control/faults").array();
    EXPECT_EQ(rules[0]["Fired"], 1);
    EXPECT_EQ(rules[1]["Fired"], 2);
    EXPECT_EQ(rules[1]["Status"], 418);
    EXPECT_EQ(rules[1]["IsUsedUp"], true);
    EXPECT_EQ(rules[2]["Operation"], "*") << "what is left out, is shown with its usual value";
    send("DELETE", "/_control/faults/2", {}, 204);
    EXPECT_EQ(get("/_control/faults").array(), QJsonArray({rules[0], rules[2]}));
    send("DELETE", "/_control/faults", {}, 204);
    EXPECT_TRUE(get("/_control/faults").array().isEmpty());
}

TEST_F(SimulatorTest, itsStateCanBeTakenChangedAndPutBack)
{
    auto const fresh = get("/_control/state");
    post("/_control/partner-action", {{"Action", "reply"}, {"RequestId", "REQ-000001"}});
    post("/stats", {{"SelectedType", "binary"}, {"Data", QString(QByteArray("\xff\0", 2).toBase64())}}, 204);
    auto const taken = get("/_control/state");
    auto const answered = details("", {});
    post("/_control/reset", {{"Seed", 9}}, 204);
    EXPECT_NE(get("/_control/state"), fresh);
    send("PUT", "/_control/state", taken.toJson(), 204);
    EXPECT_EQ(get("/_control/state"), taken);
    EXPECT_EQ(details("", {}), answered);

    std::pair<QStringList, char const*> const tables[] = {
        {{"Users", "Users", "0", "LastName"}, "users"},
        {{"Users", "Studies", "0", "Name"}, "Studies"},
        {{"Users", "Keys", "0", "Key"}, "3rdpartyauthenticationkeys"},
        {{"Documents", "Documents", "0", "FileName"}, "ifu"},
        {{"Documents", "Releases", "0", "Version"}, "softwareupdate?api-version=1.0"},
        {{"Catalogs", "0", "FileId"}, "catalog/4.2"},
        {{"Accounts", "Accounts", "0", "AccountName"}, "accountInfo?api-version=1.0"},
        {{"Accounts", "Addresses", "HelpUrl"}, "settings?api-version=1.0"},
    };
    for (auto const& [place, resource] : tables)
    {
        send("PUT", "/_control/state", QJsonDocument(changed(taken.object(), place, "7.7").toObject()).toJson(), 204);
        auto const answer = get(QStringLiteral("/Installations/INST-1001/") + resource).toJson();
        EXPECT_TRUE(answer.contains("7.7")) << resource << answer.toStdString();
    }

    auto const own = changed(taken.object(), {"Collaboration", "Requests", "0", "Id"}, "REQ-000400").toObject();
    SimulatorOptions options;
    options.state = QJsonDocument(own).toJson();
    Simulator other(options);
    EXPECT_EQ(other.partnerAction({{"Action", "create"}})["RequestId"], "REQ-000401") << "no id is given out twice";
    other.reset();
    EXPECT_EQ(other.control("GET", "state")["Collaboration"], own["Collaboration"]);
    options.state = R"({"Now": 1})";
    EXPECT_THROW(Simulator{options}, std::invalid_argument);
}

TEST_F(SimulatorTest, theJournalKeepsWhatArrived)
{
    get("/Installations/INST%2D1001/connections");
    fault({{"Kind", "status"}});
    get("/Installations/INST%2D1001/connections?x=%20y", 503);
    post("/Requests/none/unlocked-status", from1001, 404);
    auto const journal = get("/_control/journal");
    EXPECT_EQ(journal["Counts"]["GET /Installations/INST%2D1001/connections"], 2);
    auto const spoilt = journal["Requests"][1];
    EXPECT_EQ(spoilt["Target"], "/Installations/INST%2D1001/connections?x=%20y");
    EXPECT_EQ(spoilt["Fault"], (QJsonObject{{"Id", 1}, {"Kind", "status"}}));
    EXPECT_TRUE(spoilt["Answer"].toString().contains("told to fail"));
    EXPECT_TRUE(QDateTime::fromString(spoilt["Time"].toString(), Qt::ISODateWithMs).isValid());
    EXPECT_TRUE(spoilt["Milliseconds"].isDouble());
    EXPECT_EQ(spoilt["Headers"]["Authorization"], "(redacted)");
    EXPECT_EQ(spoilt["Headers"]["Accept"], "*/*");
    auto const last = journal["Requests"][2];
    EXPECT_EQ(last["Status"], 404);
    EXPECT_EQ(last["Operation"], "getUnlockedStateForRequest");
    auto const body = last["Body"].toString();
    EXPECT_EQ(QJsonDocument::fromJson(body.toUtf8()).object(), from1001);
    EXPECT_EQ(last["Size"], body.size());

    std::pair<char const*, std::vector<int>> const filters[] = {
        {"operation=getConnectionsForLicense", {1, 2}},
        {"method=POST", {3}},
        {"status=503", {2}},
        {"since=1", {2, 3}},
        {"limit=1", {3}},
        {"status=200&since=1", {}}};
    for (auto const& [query, numbers] : filters)
    {
        std::vector<int> found;
        for (QJsonValue const entry : get(QStringLiteral("/_control/journal?") + query)["Requests"].toArray())
        {
            found.push_back(entry["Number"].toInt());
        }
        EXPECT_EQ(found, numbers) << query;
    }
    send("DELETE", "/_control/journal", {}, 204);
    EXPECT_TRUE(get("/_control/journal")["Requests"].toArray().isEmpty());
    for (int count = 0; count < 70; ++count)
    {
        exchange("POST", "/stats", std::string(1 << 20, 'x'), 400);
    }
    EXPECT_GT(get("/_control/journal?limit=0")["Dropped"].toInt(), 5);
    post("/_control/verify", {}, 409);
}

TEST_F(SimulatorTest, theJournalIsHeldAgainstWhatIsExpected)
{
    get("/Installations/INST-1001/connections");
    list(true);
    get("/Installations/INST-1001/connections");
    std::pair<char const*, char const*> const rows[] = {
        {R"({"Requests": [{"Operation": "getConnectionsForLicense", "Exactly": 2, "Status": 200}]})", ""},
        {R"({"Requests": [{"Operation": "getRequests"}, {"Operation": "createOrder", "Exactly": 0}]})", ""},
        {R"({"Requests": [{"Operation": "getRequests", "Body": {"GetOnlyActiveRequests": true}}]})", ""},
        {R"({"InOrder": ["getConnectionsForLicense", "getRequests", "getConnectionsForLicense"]})", ""},
        {R"({"Requests": [{"Operation": "getConnectionsForLicense", "Exactly": 1}, {"Operation": "createOrder"}]})",
         "getConnectionsForLicense: 1 wanted, found 2 (1, 3); createOrder: at least 1 wanted, found none"},
        {R"({"Requests": [{"Operation": "getConnectionsForLicense", "AtMost": 1}]})", "at most 1 wanted, found 2"},
        {R"({"Requests": [{"Operation": "getRequests", "Body": {"VersionNumber": "2"}}]})", "getRequests: at least 1"},
        {R"({"Requests": [{"Operation": "getConnectionsForLicense", "AtLeast": 2}], "Since": 1})", "found 1 (3)"},
        {R"({"InOrder": ["getRequests", "getRequests"]})", "in order: no getRequests after getRequests (2)"},
    };
    for (auto const& [expected, difference] : rows)
    {
        auto const isVerified = *difference == '\0';
        auto const answer = send("POST", "/_control/verify", expected, isVerified ? 200 : 409);
        EXPECT_EQ(answer["Verified"].toBool(), isVerified);
        EXPECT_TRUE(answer[0]["Message"].toString().contains(difference)) << answer.toJson().toStdString();
    }
}

TEST_F(SimulatorTest, theControlResourcesListThemselvesToThisMachinesProgramsOnly)
{
    client.set_basic_auth("", "");
    auto const index = get("/_control");
    EXPECT_EQ(index["Installations"][0]["Id"], "INST-1001");
    EXPECT_GT(index["Operations"].toArray().size(), 60);
    auto const status = index["Faults"][11];
    EXPECT_EQ(status["Kind"], "status");
    EXPECT_EQ(status["Parameters"][0]["Default"], 503);
    exchange("HEAD", "/_control/", {}, 200);
    EXPECT_EQ(client.Get("/_control", {{"Range", "bytes=0-1"}})->status, 206);

    auto const local = "127.0.0.1:" + std::to_string(port);
    std::pair<httplib::Headers, int> const rows[] = {
        {{{"Host", "localhost:1"}}, 200},
        {{{"Host", "[::1]"}}, 200},
        {{{"Host", local}, {"Origin", "http://" + local}}, 200},
        {{{"Host", local}, {"Origin", "http://evil.example"}}, 403},
        {{{"Host", local}, {"Origin", "null"}}, 403},
        {{{"Host", "evil.example"}}, 403},
        {{{"Host", "127.evil.example"}}, 403},
        {{{"Host", "192.0.2.1"}}, 403},
    };
    for (auto const& [headers, wanted] : rows)
    {
        EXPECT_EQ(client.Get("/_control", headers)->status, wanted) << headers.begin()->second;
    }
    EXPECT_EQ(client.Post("/stats", {{"Content-Length", "-5"}}, "", "")->status, 400);
}

TEST_F(SimulatorTest, manyClientsStayConnectedAndAStopEndsThemAll)
{
    std::vector<std::unique_ptr<httplib::Client>> clients;
    for (int count = 0; count < 80; ++count)
    {
        clients.push_back(std::make_unique<httplib::Client>("127.0.0.1", port));
        clients.back()->set_basic_auth("kelo", "kelo");
        clients.back()->set_keep_alive(true);
        EXPECT_TRUE(clients.back()->Get("/Installations/INST-1001/connections")) << count;
    }
    fault({{"Kind", "delay"}, {"Operation", "getConnectionsForLicense"}, {"Milliseconds", 3'600'000}});
    auto waiting = std::async(std::launch::async, [&] { clients[0]->Get("/Installations/INST-1001/connections"); });
    auto const deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (get("/_control/faults")[0]["Fired"] != 1 && std::chrono::steady_clock::now() < deadline)
    {
        std::this_thread::yield();
    }
    service.stop();
    waiting.get();
    EXPECT_FALSE(clients[1]->Get("/Installations/INST-1001/connections"));
}

TEST(SimulatorWithFaultProxy, toxicsAreControlledPastThem)
{
    SimulatorOptions options;
    options.faultSeed = 3;
    options.basePath = "/api/v1";
    options.listenAddress = "0.0.0.0";
    Simulator service(options);
    auto const url = QUrl(service.start());
    EXPECT_EQ(url.path(), "/api/v1");
    httplib::Client through("127.0.0.1", url.port());
    httplib::Client past("127.0.0.1", QUrl(service.directUrl()).port());
    auto const add = [&past](char const* toxic) { return past.Post("/_control/toxic", toxic, "")->status; };
    through.set_basic_auth("kelo", "kelo");
    EXPECT_EQ(through.Get("/api/v1/Settings")->status, 200);
    EXPECT_EQ(through.Get("/Settings")->status, 404);
    EXPECT_EQ(through.Get("/_control", {{"Host", "192.0.2.1"}})->status, 200);
    EXPECT_EQ(through.Get("/_control", {{"Host", "evil.example"}})->status, 403);
    EXPECT_EQ(add(R"({"Type":"latency","Attributes":{"latency":1}})"), 200);
    EXPECT_EQ(add(R"({"Type":"reset_peer","Stream":"upstream","Toxicity":1,"Attributes":{"timeout":1}})"), 200);
    EXPECT_FALSE(through.Get("/_control/faults"));
    auto const toxics = parsed(past.Get("/_control/toxics")->body);
    EXPECT_EQ(toxics[1]["Fired"], 1);
    EXPECT_EQ(toxics[1]["Attributes"]["timeout"], 1);
    EXPECT_EQ(past.Delete("/_control/toxics/2")->status, 204);
    EXPECT_TRUE(through.Get("/_control/faults"));
    EXPECT_EQ(parsed(past.Get("/_control/toxics")->body)[0]["Type"], "latency") << "the other goes on";
    EXPECT_EQ(past.Delete("/_control/toxics")->status, 204);
    EXPECT_EQ(add(R"({"Type":"latency","Attributes":{"latency":"long"}})"), 400);
}

TEST(SimulatorTls, itsCertificateCanBeTrusted)
{
    // One that a simulator has left behind that was killed.
    QFile abandoned(QDir::temp().filePath("kelo-simulator-abandoned.pem"));
    EXPECT_TRUE(abandoned.open(QIODevice::WriteOnly));
    EXPECT_TRUE(abandoned.setFileTime(QDateTime::currentDateTime().addSecs(-3600), QFile::FileModificationTime));
    abandoned.close();
    SimulatorOptions options;
    options.tls = true;
    options.username.clear();
    Simulator service(options);
    EXPECT_FALSE(abandoned.exists());
    auto const url = QUrl(service.start());
    EXPECT_EQ(url.scheme(), "https");
    httplib::SSLClient client("127.0.0.1", url.port());
    client.set_ca_cert_path(service.certificateFile().toStdString());
    auto const result = client.Get("/Installations/INST-1001/connections");
    ASSERT_TRUE(result) << to_string(result.error());
    EXPECT_EQ(result->status, 200);

    httplib::SSLClient stranger("127.0.0.1", url.port());
    EXPECT_FALSE(stranger.Get("/Installations/INST-1001/connections"));
    options.port = url.port();
    EXPECT_TRUE(Simulator(options).start().isEmpty()) << "a port in use cannot be had";
}

} // namespace
