#include <gmock/gmock.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <KeloCommunicationLib/collaboration/CollaborationRecords.h>
#include <KeloCommunicationLib/collaboration/ConnectionRecords.h>
#include <KeloCommunicationLib/collaboration/QueryRecords.h>
#include <KeloCommunicationLib/json/JsonSerializer.h>

namespace
{

using collaboration::RequestType;
using jsonSerializer::fromJson;

QJsonObject object(char const* json)
{
    QJsonObject const parsed = QJsonDocument::fromJson(json).object();
    EXPECT_FALSE(parsed.isEmpty()) << json;
    return parsed;
}

template <class T>
QByteArray wireText(T const& record)
{
    return QJsonDocument(jsonSerializer::toJson(record).toObject()).toJson(QJsonDocument::Compact);
}

TEST(CollaborationRecords, MissingNullAndWrongTypesDiffer)
{
    struct Row
    {
        char const* json;
        int state;
        int status;
        int requestType;
    };
    for (Row const& row : {
             Row{R"({"x":0})", -1, -1, 0},
             Row{R"({"State":null,"Status":null,"RequestType":null})", -1, -1, 0},
             Row{R"({"State":"3","Status":"3","RequestType":"3"})", 0, 0, 0},
             Row{R"({"State":3,"Status":99,"RequestType":7})", 3, 99, 7},
         })
    {
        SCOPED_TRACE(row.json);
        QJsonObject const json = object(row.json);
        EXPECT_EQ(fromJson<collaboration::FileInfo>(json).state, row.state);
        EXPECT_EQ(static_cast<int>(fromJson<collaboration::RequestDetails>(json).status), row.status);
        EXPECT_EQ(static_cast<int>(fromJson<collaboration::RequestInfo>(json).requestType), row.requestType);
    }
    EXPECT_EQ(static_cast<int>(fromJson<collaboration::RequestStatus>(QJsonValue())), 0);
}

TEST(CollaborationRecords, FlatRecordsShareTheOuterObject)
{
    auto const group = fromJson<collaboration::RestorationRequestDetail>(object(
        R"({"PartnershipId":"PS","Id":"P","PartnerName":"N","CollaborationRequestDetailInfos":[
            {"Id":"R","PatientId":"17","PatientDateOfBirth":"1970-02-30","DueDate":"2024-01-31","RestorationURL":"u",
             "patient":{"PatientId":"nested"},
             "Files":[{"Size":5000000000,"ChunkSize":1024.9}],"NoteInfos":{},
             "Restorations":[{"ToothNumberStart":11,"ImplantConnections":[{"Size":"4.1"}]},5]}]})"));
    EXPECT_EQ(group.partner.id, u"P");
    EXPECT_EQ(group.partner.partnershipId, u"PS");
    ASSERT_EQ(group.collaborationRequestDetailInfos.size(), 1U);
    auto const& entry = group.collaborationRequestDetailInfos.front();
    EXPECT_EQ(entry.requestDetails.id, u"R");
    EXPECT_EQ(entry.requestDetails.patient.patientId, u"17");
    EXPECT_FALSE(entry.requestDetails.patient.patientDateOfBirth.isValid());
    EXPECT_EQ(entry.requestDetails.dueDate, QDate(2024, 1, 31));
    EXPECT_EQ(entry.restorationURL, u"u");
    ASSERT_EQ(entry.requestDetails.files.size(), 1U);
    EXPECT_EQ(entry.requestDetails.files.front().size, 5000000000U);
    EXPECT_EQ(entry.requestDetails.files.front().chunkSize, 1024);
    EXPECT_TRUE(entry.requestDetails.noteInfos.empty());
    ASSERT_EQ(entry.restorations.size(), 2U) << "an element that is no object gives an empty entry";
    EXPECT_EQ(entry.restorations.front().implantConnections.front().size, u"4.1");
}

TEST(CollaborationRecords, ConnectionStatusIsReadAsTextAndWrittenAsNumber)
{
    int number = 0;
    for (char const* const text :
         {"Created", "InvitationSent", "Accepted", "Connected", "Rejected", "RejectionNotified", "Stopped"})
    {
        auto const info = fromJson<ConnectionInfo>(QJsonObject{{QStringLiteral("Status"), QString::fromLatin1(text)}});
        EXPECT_EQ(static_cast<int>(info.getState()), number) << text;
        UpdateConnectionStatusRequest request;
        request.setConnectionId(QStringLiteral("path"));
        request.setInstallationReference(QStringLiteral("I"));
        request.setStatus(info.getState());
        EXPECT_EQ(
            wireText(request),
            QByteArray(R"({"InstallationReference":"I","Status":)" + QByteArray::number(number) + "}"));
        ++number;
    }
    for (char const* const other : {R"({"Status":"connected"})", R"({"Status":3})", R"({"Status":null})"})
    {
        EXPECT_EQ(fromJson<ConnectionInfo>(object(other)).getState(), ConnectionStatus::Unknown) << other;
    }
    for (char const* const any : {R"({"ConnectionStatus":3})", R"({"ConnectionStatus":{"a":1}})", R"({"x":0})"})
    {
        EXPECT_EQ(fromJson<StartConnectionResponse>(object(any)).getConnectionStatus(), ConnectionStatus::Created);
    }
}

TEST(CollaborationRecords, OnlyWhatIsSetIsWritten)
{
    collaboration::UpdateSurgeryRequestRequest update;
    update.requestId = QStringLiteral("path");
    update.note = QString();
    EXPECT_EQ(
        wireText(update),
        R"({"ExistingFiles":[],"InstallationReference":"","NewFiles":[],"Note":"","UserReference":""})");

    GetRequestDetailsInfo details(true, QVersionNumber(1, 2), {QStringLiteral("a")}, RequestType::Unset);
    EXPECT_EQ(wireText(details), R"({"GetOnlyActiveRequests":true,"RequestIds":["a"],"VersionNumber":"1.2"})");
    details.setType(RequestType::DentalScan);
    EXPECT_TRUE(wireText(details).contains(R"("Type":0)"));

    GetRequestsInfo list;
    list.setSelectedTypes({RequestType::Referral, RequestType::DentalScan});
    EXPECT_EQ(wireText(list), R"({"GetOnlyActiveRequests":true,"SelectedTypes":[7,0],"VersionNumber":""})");

    collaboration::CreateRequestRequest create;
    create.sessionId = QStringLiteral("path");
    create.newFiles = {{QStringLiteral("f"), 5000000000U, 1U << 31U, QString(), QString()}};
    QByteArray const text = wireText(create);
    EXPECT_FALSE(text.contains("\"Type\"") || text.contains("path")) << text.constData();
    EXPECT_TRUE(text.contains(R"("ChunkSize":2147483648)") && text.contains(R"("Size":5000000000)"))
        << text.constData();
    EXPECT_TRUE(text.contains(R"("DueDate":"")") && text.contains(R"("VersionNumber":"")")) << text.constData();
}

TEST(CollaborationRecords, RestorationRequestCarriesGenderAndConnections)
{
    CreateRestorationRequestInfo request;
    request.setSessionId(QStringLiteral("path"));
    request.setPatientGender(PatientGender::Female);
    request.setPatientBirthdayString(QStringLiteral("some day"));
    request.setImplantConnections({{QStringLiteral("C"), 21}});
    QJsonObject const json = jsonSerializer::toJson(request).toObject();
    EXPECT_EQ(json.size(), 14);
    EXPECT_EQ(json[u"PatientGender"], conversions::toString(PatientGender::Female));
    EXPECT_EQ(json[u"PatientDateOfBirth"], QStringLiteral("some day"));
    EXPECT_EQ(
        QJsonDocument(json[u"Connections"].toArray()).toJson(QJsonDocument::Compact),
        R"([{"ImplantConnectionId":"C","ToothNumber":21}])");
}

TEST(CollaborationRecords, RestorationUrlIsFoundInEverySession)
{
    auto const details = fromJson<RestorationDetailsInfo>(object(
        R"({"CollaborationSessionDetailInfos":[{"CollaborationRequestDetailInfos":[{"Id":"a","RestorationURL":"1"}]},
            {"CollaborationRequestDetailInfos":[{"Id":"b","RestorationURL":"2"}]}]})"));
    EXPECT_EQ(details.getRestorationURL(QStringLiteral("b")), u"2");
    EXPECT_EQ(details.getRestorationURL(QStringLiteral("B")), QString());
}

} // namespace
