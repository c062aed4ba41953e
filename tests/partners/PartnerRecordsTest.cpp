#include <gmock/gmock.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <KeloCommunicationLib/json/JsonSerializer.h>
#include <KeloCommunicationLib/partners/MiraShareRecords.h>
#include <KeloCommunicationLib/partners/PartnerRecords.h>

namespace
{

using mirashare::MiraShareItemData;
using Case = PartnerCaseInfo;

QJsonObject object(char const* json)
{
    return QJsonDocument::fromJson(json).object();
}

template <class T>
QByteArray wireText(T const& record)
{
    QJsonValue const json = jsonSerializer::toJson(record);
    return (json.isArray() ? QJsonDocument(json.toArray()) : QJsonDocument(json.toObject()))
        .toJson(QJsonDocument::Compact);
}

TEST(PartnerRecords, PartnerIsReadWithoutALogo)
{
    auto const partner = jsonSerializer::fromJson<PartnerInfo>(object(
        R"({"PartnerId":"P","PartnerName":"N","ShouldCreatePartnerConnection":true,
            "ShouldAnonymizeCaseData":"yes","CreatePartnerConnectionUrl":"u","logo":"x"})"));
    EXPECT_EQ(partner.getId(), u"P");
    EXPECT_EQ(partner.getName(), u"N");
    EXPECT_TRUE(partner.getShouldCreatePartnerConnection());
    EXPECT_FALSE(partner.isAnonymizeRequired()) << "a text is no truth value";
    EXPECT_EQ(partner.getCreatePartnerConnectionUrl(), u"u");
    EXPECT_FALSE(partner.getLogo());
}

TEST(PartnerRecords, AccountIsShownByItsGivenNameIfItHasOne)
{
    auto account = jsonSerializer::fromJson<PartnerAccountInfo>(
        object(R"({"UserName":"user","PartnerConnectionId":"C","PartnerId":"P","IsConnected":true})"));
    EXPECT_EQ(&account.getDisplayName(), &account.getUserName());
    EXPECT_EQ(account.getId(), u"C");
    EXPECT_EQ(account.getPartnerId(), u"P");
    EXPECT_TRUE(account.getConnectedStatus());
    account.setGivenName(QStringLiteral("given"));
    EXPECT_EQ(&account.getDisplayName(), &account.getGivenName());
}

TEST(PartnerRecords, StatesHaveDifferentFallbacksForTextsAndValues)
{
    struct
    {
        char const* json;
        Case::Status status;
        char const* shown;
    } const rows[] = {
        {R"({"CaseStatus":"Created"})", Case::Status::Created, "Created"},
        {R"({"CaseStatus":"Draft"})", Case::Status::Draft, "Draft"},
        {R"({"CaseStatus":"Accepted"})", Case::Status::Accepted, "Accepted"},
        {R"({"CaseStatus":"Finished"})", Case::Status::Finished, "Finished"},
        {R"({"CaseStatus":"Updating Status"})", Case::Status::UpdatingStatus, "Updating Status"},
        {R"({"CaseStatus":"Rejected"})", Case::Status::Draft, "Draft"},
        {R"({"CaseStatus":"created"})", Case::Status::Draft, "Draft"},
        {R"({"CaseStatus":0})", Case::Status::Draft, "Draft"},
        {R"({"CaseStatus":null})", Case::Status::Draft, "Draft"},
        {R"({})", Case::Status::Draft, "Draft"},
    };
    for (auto const& row : rows)
    {
        auto const status = jsonSerializer::fromJson<Case>(object(row.json)).getStatus();
        EXPECT_EQ(status, row.status) << row.json;
        EXPECT_EQ(Case::stringFromStatus(status), QLatin1String(row.shown)) << row.json;
    }
    EXPECT_EQ(Case::stringFromStatus(static_cast<Case::Status>(7)), u"Updating Status");
    EXPECT_EQ(Case::stringFromStatus(static_cast<Case::Status>(-1)), u"Updating Status");
    EXPECT_EQ(Case().getStatus(), Case::Status::Draft);

    char const* const texts[] = {"Created",  "Open",           "UnderReview", "InProgress",
                                 "Finished", "NeedsMoreInput", "Rejected",    "Closed"};
    for (int value = 0; value < 8; ++value)
    {
        QJsonObject const json{{QStringLiteral("Status"), QLatin1String(texts[value])}};
        EXPECT_EQ(static_cast<int>(jsonSerializer::fromJson<MiraShareItemData>(json).getStatus()), value);
    }
    for (char const* const json : {R"({"Status":"Archived"})", R"({"Status":"closed"})", R"({"Status":3})", "{}"})
    {
        EXPECT_EQ(
            jsonSerializer::fromJson<MiraShareItemData>(object(json)).getStatus(), MiraShareItemData::Status::Open);
    }
}

TEST(PartnerRecords, TimesAndListsOfCases)
{
    auto const sent = jsonSerializer::fromJson<Case>(object(
        R"({"CaseId":"1","CreatedAt":"2024-02-29T10:20:30Z","PartnerConnectionId":"C","PartnerConnectionUserName":"U",
            "AllowCaseUpdates":true,"PartnerPlatformCaseId":"X"})"));
    EXPECT_EQ(sent.getCreationTime(), QDateTime(QDate(2024, 2, 29), QTime(10, 20, 30), Qt::UTC));
    EXPECT_EQ(sent.getConnectionId(), u"C");
    EXPECT_EQ(sent.getConnectionUserName(), u"U");
    EXPECT_TRUE(sent.areCaseUpdatesAllowed());
    EXPECT_EQ(sent.getPlatformCaseId(), u"X");
    EXPECT_FALSE(jsonSerializer::fromJson<Case>(object(R"({"CreatedAt":"yesterday"})")).getCreationTime().isValid());

    auto const item = jsonSerializer::fromJson<MiraShareItemData>(object(
        R"({"Name":"N","CreatedBy":"B","CaseUrl":"https://portal.example/c/1","IsCreator":true,
            "CreationTimestamp":"2024-01-31","SharedWithSites":[{"Name":"one","Id":1},5,{"Id":2},{"Name":"four"}]})"));
    EXPECT_EQ(item.getMiraLink().host(), u"portal.example");
    EXPECT_EQ(item.getCreationDate().date(), QDate(2024, 1, 31));
    EXPECT_TRUE(item.isCreatedByThisUser());
    EXPECT_EQ(item.getSharedWith(), (QStringList{QStringLiteral("one"), QString(), QString(), QStringLiteral("four")}));
    EXPECT_TRUE(jsonSerializer::fromJson<MiraShareItemData>(object(R"({"SharedWithSites":{"Name":"x"}})"))
                    .getSharedWith()
                    .isEmpty());
}

TEST(PartnerRecords, NewCaseOnTheWire)
{
    mirashare::CreateCaseRequest request;
    request.patientGender = PatientGender::Female;
    request.patientDateOfBirth = QStringLiteral("31.1.2000");
    request.caseFiles = {
        {QStringLiteral("scan.stl"), 2000000000, 1048576, QStringLiteral("T"), QStringLiteral("S"), QStringLiteral("A"),
         -1}};
    QDateTime const acquired(QDate(2024, 1, 31), QTime(1, 2, 3, 4), Qt::UTC);
    request.prescriptionTemplates = {
        {QFileInfo(QStringLiteral("/data/dir/p.xml")), acquired}, {QFileInfo(), QDateTime()}};
    EXPECT_EQ(
        wireText(request),
        R"({"CaseFiles":[{"ArchType":"A","ChunkSize":"1048576","Name":"scan.stl","PaddingBytesAdded":"-1",)"
        R"("Size":"2000000000","SubType":"S","Type":"T"}],"InstallationReference":"","LocatorInfoNote":"",)"
        R"("PatientDateOfBirth":"31.1.2000","PatientFirstName":"","PatientGender":"Female","PatientId":"",)"
        R"("PatientLastName":"","PatientReference":"","PrescriptionTemplates":[)"
        R"({"AcquisitionTimestamp":"2024-01-31T01:02:03.004Z","Name":"p.xml","Type":"Full"},)"
        R"({"AcquisitionTimestamp":null,"Name":"","Type":"Full"}],"UserReference":""})");

    request.patientGender = PatientGender::NotSet;
    EXPECT_EQ(jsonSerializer::toJson(request)[u"PatientGender"], QJsonValue(QString()));
}

TEST(PartnerRecords, OddBodies)
{
    EXPECT_EQ(wireText(mirashare::Cases{}), "[]");
    EXPECT_EQ(wireText(mirashare::Cases{{QStringLiteral("a"), QStringLiteral("b")}}), R"(["a","b"])");
    EXPECT_EQ(
        wireText(mirashare::SharePartnerCaseRequest{QStringLiteral("u"), QStringLiteral("c"), QStringLiteral("p")}),
        R"({"caseId":"c","partnerConnectionId":"p","userReference":"u"})");
    mirashare::AddDataRequest addition;
    addition.caseId = QStringLiteral("C1");
    EXPECT_EQ(wireText(addition), R"({"CaseFiles":[],"InstallationReference":"","UserReference":""})");
}

} // namespace
