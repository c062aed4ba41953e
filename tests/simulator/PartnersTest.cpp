#include "tests/simulator/SimulatorFixture.h"

namespace
{

using PartnersTest = SimulatorFixture;

QJsonObject const scanFile = {
    {"Name", "upper.stl"}, {"Size", "18734112"},  {"ChunkSize", "1048576"},   {"Type", "Scan"},
    {"SubType", "Jaw"},    {"ArchType", "Upper"}, {"PaddingBytesAdded", "0"},
};
QJsonObject const prescription = {
    {"Name", "prescription.xml"}, {"AcquisitionTimestamp", QJsonValue::Null}, {"Type", "Full"}};
QJsonObject const newCase = {
    {"InstallationReference", "INST-1001"},
    {"UserReference", "Dr. Rao"},
    {"PatientFirstName", "Eva"},
    {"PatientLastName", "Klein"},
    {"PatientId", "P-7"},
    {"PatientReference", "R-7"},
    {"PatientDateOfBirth", "1971-02-03"},
    {"PatientGender", ""},
    {"LocatorInfoNote", ""},
    {"CaseFiles", QJsonArray{scanFile}},
    {"PrescriptionTemplates",
     QJsonArray{prescription, merged(prescription, {{"AcquisitionTimestamp", "2025-03-03T08:15:00.250"}})}}};
QJsonObject const moreFiles = {
    {"InstallationReference", "INST-1001"}, {"UserReference", "Dr. Rao"}, {"CaseFiles", QJsonArray{scanFile}}};

QJsonObject shared(QString const& caseId, QString const& accountId)
{
    return {{"userReference", "Dr. Rao"}, {"caseId", caseId}, {"partnerConnectionId", accountId}};
}

QByteArray json(QJsonObject const& object)
{
    return QJsonDocument(object).toJson();
}

TEST_F(PartnersTest, aCaseGoesFromThePortalToAPartnerAndIsFinishedThere)
{
    auto const created = post("/Cases", newCase);
    auto const id = created["CaseId"].toString();
    auto const added = post("/Cases/" + id + "/files?api-version=1.0", moreFiles).array();
    EXPECT_EQ(added[0]["Name"], "upper.stl");
    EXPECT_NE(added[0]["Id"], created["CaseFiles"][0]["Id"]);
    auto const stored = get("/_control/cases").array().last();
    EXPECT_EQ(stored["Files"].toArray().size(), 2);
    EXPECT_EQ(stored["Files"][1], QJsonValue(merged(scanFile, {{"Id", added[0]["Id"]}})));

    auto const portalPath = QStringLiteral("/Patients/P-7/cases?InstallationReference=%1&api-version=0.0");
    EXPECT_EQ(get(portalPath.arg("INST-1001"))["Cases"][0]["SharedWithSites"], QJsonArray());
    send("POST", "/Cases/share", json(shared(id, "PAC-301")), 204);
    send("POST", "/Cases/share", json(shared(id, "PAC-301")), 204);
    auto const onPortal = get(portalPath.arg("INST-1001"))["Cases"][0];
    EXPECT_EQ(onPortal["SharedWithSites"], (QJsonArray{QJsonObject{{"Name", "Brightline Aligners"}}}));
    EXPECT_EQ(onPortal["CaseUrl"], created["CaseUrl"]);
    EXPECT_TRUE(onPortal["IsCreator"].toBool());
    EXPECT_EQ(get(portalPath.arg("INST-2002"))["Cases"], QJsonArray());

    auto const partnerPath = QStringLiteral("/Installations/INST-1001/PartnerCases/patients/P-7");
    auto const atPartner = get(partnerPath).array();
    ASSERT_EQ(atPartner.size(), 1) << "sharing again updates the case";
    EXPECT_EQ(atPartner[0]["CaseId"], id);
    EXPECT_EQ(atPartner[0]["PartnerConnectionUserName"], "office@harbour-street.example");
    auto const refresh = QStringLiteral("/Installations/INST-1001/partnercases/refresh-status");
    auto const ids = QJsonDocument(QJsonArray{id, "PORTAL-none"}).toJson();
    QStringList seen = {atPartner[0]["CaseStatus"].toString()};
    for (int count = 0; count < 5; ++count)
    {
        auto const statuses = send("POST", refresh, ids, 200).array();
        ASSERT_EQ(statuses.size(), 1);
        seen << statuses[0]["Status"].toString();
    }
    EXPECT_EQ(seen, (QStringList{"Created", "Draft", "Accepted", "Updating Status", "Finished", "Finished"}));
    EXPECT_EQ(get(partnerPath)[0]["CaseStatus"], "Finished");
    EXPECT_EQ(send("POST", refresh, "[]", 200).array(), QJsonArray());
    EXPECT_EQ(send("POST", refresh, R"(["PORTAL-000008"])", 200)[0]["Status"], "Rejected");

    post("/_control/reset", {}, 204);
    EXPECT_EQ(get(partnerPath).array(), QJsonArray());
}

TEST_F(PartnersTest, casesOfOtherSitesAreSeenWhenTheyAreShared)
{
    auto const path = QStringLiteral("/Patients/PAT-000020/cases?InstallationReference=%1&api-version=0.0");
    auto const reader = get(path.arg("INST-1001"))["Cases"].toArray();
    ASSERT_EQ(reader.size(), 1);
    EXPECT_FALSE(reader[0]["IsCreator"].toBool(true));
    EXPECT_TRUE(get(path.arg("INST-2002"))["Cases"][0]["IsCreator"].toBool());
    post("/Cases/PORTAL-000010/files?api-version=1.0", moreFiles);
    auto const foreign = merged(moreFiles, {{"InstallationReference", "INST-2002"}});
    send("POST", "/Cases/PORTAL-000001/files?api-version=1.0", json(foreign), 404);
}

} // namespace
