#include <algorithm>
#include <chrono>
#include <concepts>
#include <functional>
#include <span>

#include <QJsonDocument>

#include <gmock/gmock.h>

#include <KeloCommunicationLib/KeloCommunicationLib.h>
#include <platform/core/HostEnvironment.h>
#include <testkit/OperationList.h>
#include <testkit/RawServer.h>
#include <tests/connection/ServiceDocument.h>

namespace
{

using namespace Qt::Literals::StringLiterals;
using Client = TessalyConnection&;

std::unique_ptr<TessalyConnection> connectToApi(testkit::RawServer const& server)
{
    return TessalyConnection::makeConnection(server.url(u"/api/v1"_s), u"user"_s, u"secret"_s);
}

/// The value of a successful reply.
template <class T>
T got(threading::Future<rest::RestReply<T>> const& future)
{
    EXPECT_EQ(future.get().status.kind, 0U) << future.get().status.message.toStdString();
    return future.get().value;
}

bool succeeds(threading::Future<rest::RestReply<void>> const& future)
{
    return !future.isCanceled() && future.get().status.kind == 0;
}

std::string text(QString const& value)
{
    return value.toStdString();
}

std::string text(QByteArray const& value)
{
    return value.toStdString();
}

template <class T>
    requires std::integral<T> || std::floating_point<T> || std::is_enum_v<T> std::string text(T value)
    {
        return QByteArray::number(static_cast<double>(value)).toStdString();
    }

/// JSON in one spelling; anything else as it is.
QByteArray normalized(QByteArray const& body)
{
    QJsonDocument const document = QJsonDocument::fromJson(body);
    return document.isNull() ? body : document.toJson(QJsonDocument::Compact);
}

/// A call that gives a part of the decoded reply as text.
struct Call
{
    template <class Function>
    Call(Function function) : run([function](Client client) { return text(function(client)); })
    {
    }

    std::function<std::string(Client)> run;
};

/// One operation and what it is on the wire. The target is relative to the base URL.
struct Row
{
    QByteArray method;
    QByteArray target;
    QByteArray body;
    QByteArray reply;
    Call call;
    std::string decoded;
};

void expectOnTheWire(Row const& row)
{
    SCOPED_TRACE((row.method + ' ' + row.target).toStdString());
    static test::ServiceDocument const document(KELO_SERVICE_DOCUMENT);
    EXPECT_EQ(document.refused(row.method, row.target, row.body, row.reply), "");
    // A logo that a list asks for afterwards is not there.
    testkit::RawServer const server(
        [&row](testkit::RawRequest const& request)
        { return request.number == 1 ? testkit::reply(200, row.reply) : testkit::reply(404, ""); });
    EXPECT_EQ(row.call.run(*connectToApi(server)), row.decoded);
    ASSERT_EQ(server.requestCount(), row.target.contains("/PartnerCases/") ? 2 : 1);
    testkit::RawRequest const request = server.requests().front();
    EXPECT_EQ(request.method, row.method);
    EXPECT_EQ(request.target.toStdString(), ("/api/v1" + row.target).toStdString());
    EXPECT_EQ(normalized(request.body).toStdString(), normalized(row.body).toStdString());
}

QByteArray const none;

GetRequestDetailsInfo detailsFilter()
{
    return {true, QVersionNumber(1, 2), {u"R"_s}, collaboration::RequestType::Template};
}

QByteArray const detailsBody = R"({"GetOnlyActiveRequests":true,"VersionNumber":"1.2","RequestIds":["R"],"Type":3})";
QByteArray const detailsReply = R"([{"PartnerName":"N","CollaborationRequestDetailInfos":[
    {"Id":"D","RestorationURL":"u","OrderId":"O","ReferralURL":"f","SurgeryPlanURL":"s"}]}])";

template <class T>
auto firstDetail(TessalyConnectionInterface::Reply<std::vector<T>> const& future)
{
    return got(future).at(0).collaborationRequestDetailInfos.at(0);
}

collaboration::CreateRequestRequest newRequest()
{
    collaboration::CreateRequestRequest request;
    request.sessionId = u"S"_s;
    request.type = collaboration::RequestType::Referral;
    request.note = u"ä \"#"_s;
    request.dueDate = QDate(2024, 1, 31);
    return request;
}

QByteArray const newRequestBody =
    R"({"Type":7,"InstallationReference":"","UserReference":"","VersionNumber":"","Note":"ä \"#","DueDate":"2024-01-31",
        "NewFiles":[],"ExistingFiles":[],"Metadata":"","TreatingClinician":"","PatientId":"","PatientFirstName":"",
        "PatientLastName":"","PatientGender":"","PatientDateOfBirth":"","RequesterPatientReference":""})";
QByteArray const newRequestReply =
    R"({"CollaborationRequestId":"R","CollaborationRequestKey":"K","Files":[{"Id":"F","Name":"n"}]})";

OrderRequest order()
{
    OrderFileInfo file;
    file.setSize(1048576);
    OrderItemInfo item;
    item.setCadStatus(OrderItemInfo::CadStatus(3));
    item.setFiles({file});
    OrderRequest request;
    request.setOrderItems({item});
    return request;
}

QByteArray const orderBody =
    R"({"InstallationReference":"","CreationFrontendVersion":"","FrontendVersion":"","AddressIdentifier":"","ProductionNote":"",
        "OriginalOrderNumber":"","InvoiceReference":"","StudyId":"","StudyParticipantId":"","ClinicianZipCode":"","ClinicianName":"",
        "OrderItems":[{"ArticleNumber":"","Quantity":0,"ToothNumberStart":0,"ToothNumberEnd":0,"RemakeCode":"","VoucherCode":"",
                       "CadStatus":"3","Files":[{"Name":"","Size":"1048576","ChunkSize":"0","CheckSum":""}]}]})";

ServiceOrderRequest serviceOrder()
{
    return {
        .installationReference = u"abc"_s,
        .creationFrontendVersion = {},
        .frontendVersion = QVersionNumber(3, 1),
        .productionNote = {},
        .orderItems = {}};
}

CreateIPSOrderInfo ipsOrder()
{
    return {u"I"_s, QVersionNumber(3), QVersionNumber(3, 1), u"P"_s, {{u"A"_s, u"M"_s, 2}}};
}

// In the order in which the interface declares the operations.
Row const operationsOfAccounts[] = {
    {"GET", "/Installations/I/users", none, R"([{"UserName":"u"}])",
     [](Client c) { return got(c.getUsersForLicense(u"I"_s)).at(0).getUserName(); }, "u"},
    {"GET", "/Installations/I/Studies", none, R"({"StudyInfos":[{"Name":"s"}]})",
     [](Client c) { return got(c.getStudiesForLicense(u"I"_s)).getStudyInfos().at(0).getName(); }, "s"},
    {"GET", "/Installations/I/settings?api-version=1.0", none, R"({"FindAccountPageUrl":"p"})",
     [](Client c) { return got(c.getSettingsLicenseInfo(u"I"_s)).getZelkoMiraConnectionPageUrl(); }, "p"},
    {"GET", "/Installations/I/accountInfo?api-version=1.0", none, R"({"Site":{"Token":"t"}})",
     [](Client c) { return got(c.getAccountLicenseInfo(u"I"_s)).getToken(); }, "t"},
    {"GET", "/Installations/I/about/status", none, R"({"FileId":"a"})",
     [](Client c) { return got(c.getAboutFileReference(u"I"_s)).getFileId(); }, "a"},
    {"GET", "/Installations/I/ifu/status", none, R"({"FileId":"i"})",
     [](Client c) { return got(c.getIfuFileReference(u"I"_s)).getFileId(); }, "i"},
    {"GET", "/Installations/I/uitranslation/status", none, R"({"FileId":"t"})",
     [](Client c) { return got(c.getUITranslationFileReference(u"I"_s)).getFileId(); }, "t"},
    {"GET", "/Installations/I/about", none, R"({"FileId":"a"})",
     [](Client c) { return got(c.getAboutFileInfo(u"I"_s)).getFileReference(); }, "a"},
    {"GET", "/Installations/I/ifu", none, R"({"FileName":"n"})",
     [](Client c) { return got(c.getIfuFileInfo(u"I"_s)).getFileName(); }, "n"},
    {"GET", "/Installations/I/uitranslation", none, R"({"FileSize":7})",
     [](Client c) { return got(c.getUITranslationFileInfo(u"I"_s)).getFileSize(); }, "7"},
    {"GET", "/Installations/I/help/de", none, R"({"FileId":"h"})",
     [](Client c) { return got(c.getHelpFileInfo(u"I"_s, u"de"_s)).getFileReference(); }, "h"},
    {"GET", "/Installations/I/help/status", none, R"([{"Id":"h"}])",
     [](Client c) { return got(c.getHelpFilesInfo(u"I"_s)).at(0).getFileRef(); }, "h"},
    {"GET", "/Installations/I/softwareupdate?api-version=1.0", none, R"({"Version":"2.3"})",
     [](Client c) { return got(c.getSoftwareUpdateInfo(u"I"_s)).getUpdateVersion().toString(); }, "2.3"},
    {"GET", "/Installations/I/connections", none, R"([{"Status":"Stopped"}])",
     [](Client c) { return got(c.getConnectionsForLicense(u"I"_s)).at(0).getState(); }, "6"},
    {"POST", "/Installations/I/connections",
     R"({"UserReference":"U","InstallationReference":"I","Note":"","ConnectionToken":""})",
     R"({"ConnectionId":"C","ConnectionStatus":3})",
     [](Client c)
     {
         StartConnectionRequest request;
         request.setInstallationReference(u"I"_s);
         request.setUserReference(u"U"_s);
         return got(c.startConnection(request)).getConnectionId();
     },
     "C"},
    {"POST", "/Connections/C", R"({"InstallationReference":"","Status":4})", none,
     [](Client c)
     {
         UpdateConnectionStatusRequest request;
         request.setConnectionId(u"C"_s);
         request.setStatus(ConnectionStatus::Rejected);
         return succeeds(c.updateConnectionStatus(request));
     },
     "1"},
    {"GET", "/Installations/I/catalog/2.3", none, R"({"FileId":"f"})",
     [](Client c) { return got(c.getCatalogUpdateInfo(u"I"_s, QVersionNumber(2, 3))).getFileReference(); }, "f"},
    {"GET", "/Installations/I/catalog/2.3/status", none, R"({"Status":"Mandatory","More":1})",
     [](Client c) { return c.getCatalogUpdateState(u"I"_s, QVersionNumber(2, 3)); }, "2"},
    {"GET", "/Installations/I/articles", none, R"({"ArticleNumbers":["a"]})",
     [](Client c) { return got(c.getAvailableArticles(u"I"_s)).articleNumbers.value(0); }, "a"},
};

Row const operationsOfRequests[] = {
    {"POST", "/Installations/I/sessions", "{}", R"({"SessionId":"S"})",
     [](Client c) { return got(c.createCollaborationSession(u"I"_s)).getSessionId(); }, "S"},
    {"POST", "/Connections/C/sessions", R"({"InstallationReference":"I","UserReference":"U"})", R"({"SessionId":"S"})",
     [](Client c)
     {
         CreateCollaborationSessionInfo const info(u"C"_s, u"I"_s, u"U"_s);
         return got(c.createCollaborationSession(info)).getSessionId();
     },
     "S"},
    {"POST", "/Sessions/S/request/restoration",
     R"({"InstallationReference":"","UserReference":"","VersionNumber":"","Note":"","DueDate":"","NewFiles":[],
             "ExistingFiles":[],"TreatingClinician":"","PatientId":"","PatientFirstName":"","PatientLastName":"",
             "PatientGender":"Female","PatientDateOfBirth":"","Connections":[{"ImplantConnectionId":"X","ToothNumber":11}]})",
     newRequestReply,
     [](Client c)
     {
         CreateRestorationRequestInfo request;
         request.setSessionId(u"S"_s);
         request.setPatientGender(PatientGender::Female);
         request.setImplantConnections({{u"X"_s, 11}});
         return got(c.createRestorationCollaboration(request)).getFiles().at(0).name;
     },
     "n"},
    {"POST", "/Requests/R/status", R"({"InstallationReference":"I","Status":5})", none,
     [](Client c) {
         return succeeds(c.updateCollaborationRequestStatus({u"I"_s, u"R"_s, collaboration::RequestStatus(5)}));
     },
     "1"},
    {"POST", "/Installations/I/requests/restoration/details", R"({"GetOnlyActiveRequests":true,"RequestIds":["R"]})",
     R"({"CollaborationSessionDetailInfos":[{"CollaborationRequestDetailInfos":[{"Id":"R","RestorationURL":"u"}]}]})",
     [](Client c)
     {
         RequestRestorationDetailsInfo info;
         info.setInstallationReference(u"I"_s);
         info.setOnlyActiveRequests(true);
         info.setRequestIds({u"R"_s});
         auto const [url, code] = c.getRestorationURL(info, u"R"_s).get();
         EXPECT_EQ(code, KeloErrorCode::Success);
         return url;
     },
     "u"},
    {"POST", "/installations/I/sessions", R"({"UserReference":"U"})", R"({"SessionId":"S"})",
     [](Client c) {
         return got(c.createCollaborationSessionWithoutConnectionId({u"I"_s, u"U"_s})).getSessionId();
     },
     "S"},
    {"POST", "/Sessions/S/request/surgeryplan", newRequestBody, newRequestReply,
     [](Client c) { return got(c.createSurgeryPlanRequest(newRequest())).collaborationRequestKey; }, "K"},
    {"POST", "/Requests/surgeryplan/R",
     R"({"InstallationReference":"","UserReference":"","NewFiles":[],"ExistingFiles":[{"Id":"E"}],"Note":"n"})",
     newRequestReply,
     [](Client c)
     {
         collaboration::UpdateSurgeryRequestRequest request;
         request.requestId = u"R"_s;
         request.existingFiles = {{u"E"_s}};
         request.note = u"n"_s;
         return got(c.updateSurgeryPlanRequest(request)).files.at(0).id;
     },
     "F"},
    {"POST", "/Sessions/S/request/referral", newRequestBody, newRequestReply,
     [](Client c) { return got(c.createReferralRequest(newRequest())).files.at(0).id; }, "F"},
    {"GET", "/Installations/I/requests?Search.SalesOrderNumber=7&api-version=0.0", none, R"({"RequestId":"R"})",
     [](Client c) { return got(c.getRequestId(u"I"_s, collaboration::SalesOrderNumberRequest{u"7"_s})).requestId; },
     "R"},
    {"GET", "/Installations/I/requests?Search.Key=K&api-version=0.0", none, R"({"RequestId":"R"})",
     [](Client c) { return got(c.getRequestId(u"I"_s, collaboration::RequestKeyRequest{u"K"_s})).requestId; }, "R"},
    {"POST", "/Requests/R/unlocked-status", R"({"InstallationReference":"I"})", R"({"Unlocked":true})",
     [](Client c) { return got(c.getUnlockedStateForRequest(u"I"_s, u"R"_s)).isUnlocked(); }, "1"},
    {"PUT", "/Requests/R/unlock-file", R"({"InstallationReference":"I"})", none,
     [](Client c) { return succeeds(c.unlockTemplateRequest(u"I"_s, u"R"_s)); }, "1"},
    {"POST", "/Requests/R/request",
     R"({"InstallationReference":"","UserReference":"","Note":"","DueDate":"","ExistingFiles":[],"Metadata":"",
             "NewFiles":[{"Name":"n","Size":5000000000,"ChunkSize":1024,"CheckSum":"","FileType":""}]})",
     R"([{"Id":"F"}])",
     [](Client c)
     {
         collaboration::UpdateRequestRequest request;
         request.requestId = u"R"_s;
         request.newFiles = {{u"n"_s, 5000000000U, 1024, {}, {}}};
         return got(c.updateRequest(request)).at(0).id;
     },
     "F"},
    {"POST", "/Sessions/S/request", newRequestBody, newRequestReply,
     [](Client c) { return got(c.createRequest(newRequest())).getCollaborationRequestId(); }, "R"},
    {"POST", "/Orders/ipscasedesigner",
     R"({"InstallationReference":"I","CreationFrontendVersion":"3","FrontendVersion":"3.1","PatientId":"P",
             "OrderItems":[{"ArticleNumber":"A","ManufacturerReference":"M","Quantity":2}]})",
     none, [](Client c) { return succeeds(c.createIPSOrder(ipsOrder())); }, "1"},
    {"POST", "/Installations/I/requests", R"({"GetOnlyActiveRequests":true,"VersionNumber":"","SelectedTypes":[3]})",
     R"([{"RequestType":7}])",
     [](Client c)
     {
         GetRequestsInfo info;
         info.setSelectedTypes({collaboration::RequestType::Template});
         return got(c.getRequests(u"I"_s, info)).at(0).requestType;
     },
     "7"},
    {"POST", "/Installations/I/requests", R"({"GetOnlyActiveRequests":false,"VersionNumber":"4.5","SelectedTypes":[]})",
     R"([{"RequestId":"R"}])", [](Client c) { return got(c.getRequests(u"I"_s, false)).at(0).requestId; }, "R"},
};

Row const operationsOfDetails[] = {
    {"POST", "/Installations/I/requests/details", detailsBody, detailsReply,
     [](Client c) { return firstDetail(c.getCollaborationSessionRequestDetails(u"I"_s, detailsFilter())).id; }, "D"},
    {"POST", "/Installations/I/requests/dentalscan/details", detailsBody, detailsReply,
     [](Client c) { return firstDetail(c.getDentalScanRequestDetails(u"I"_s, detailsFilter())).id; }, "D"},
    {"POST", "/Installations/I/requests/labdesign/details", detailsBody, detailsReply,
     [](Client c) { return firstDetail(c.getLabDesignRequestDetails(u"I"_s, detailsFilter())).id; }, "D"},
    {"POST", "/Installations/I/requests/tempshell/details", detailsBody, detailsReply,
     [](Client c) { return got(c.getTempShellRequestDetails(u"I"_s, detailsFilter())).at(0).partner.partnerName; },
     "N"},
    {"POST", "/Installations/I/requests/restoration/details", detailsBody, detailsReply,
     [](Client c) { return firstDetail(c.getRestorationRequestDetails(u"I"_s, detailsFilter())).restorationURL; }, "u"},
    {"POST", "/Installations/I/requests/centralizedrestoration/details", detailsBody, detailsReply,
     [](Client c)
     { return firstDetail(c.getCentralizedRestorationRequestDetails(u"I"_s, detailsFilter())).requestDetails.id; },
     "D"},
    {"POST", "/Installations/I/requests/template/details", detailsBody, detailsReply,
     [](Client c) { return firstDetail(c.getTemplateRequestDetails(u"I"_s, detailsFilter())).orderId; }, "O"},
    {"POST", "/Installations/I/requests/surgeryplan/details", detailsBody, detailsReply,
     [](Client c) { return firstDetail(c.getSurgeryPlanRequestDetails(u"I"_s, detailsFilter())).surgeryPlanURL; }, "s"},
    {"POST", "/Installations/I/requests/referral/details", detailsBody, detailsReply,
     [](Client c) { return firstDetail(c.getReferralRequestDetails(u"I"_s, detailsFilter())).referralURL; }, "f"},
};

Row const operationsOfPartners[] = {
    {"GET", "/Orders/file/tempshell/F", none, "no \xff JSON", [](Client c) { return c.getTempShellFile(u"F"_s).get(); },
     "no \xff JSON"},
    {"GET", "/Patients/P/cases?InstallationReference=I&api-version=0.0", none,
     R"({"Cases":[{"Status":"Closed"}],"More":[]})",
     [](Client c) { return got(c.getMiraShareCases(u"P"_s, u"I"_s)).at(0).getStatus(); }, "7"},
    {"GET", "/Installations/I/partners", none, R"([{"PartnerName":"n"}])",
     [](Client c) { return got(c.getPartners(u"I"_s, false)).at(0).getName(); }, "n"},
    {"GET", "/Installations/I/partners/P/logo", none,
     "aGk=", [](Client c) { return c.getPartnerLogo(u"I"_s, u"P"_s).get(); }, "aGk="},
    {"GET", "/Installations/I/PartnerConnections", none, R"([{"UserName":"u"}])",
     [](Client c) { return got(c.getPartnerAccounts(u"I"_s)).at(0).getDisplayName(); }, "u"},
    {"GET", "/Installations/I/test-connection?partnerConnectionId=P", none, R"({"IsConnected":true})",
     [](Client c) { return got(c.testAccountConnection(u"I"_s, u"P"_s)).isConnected; }, "1"},
    {"GET", "/Installations/I/PartnerCases/patients/P", none, R"([{"CaseStatus":"Finished","PartnerId":"X"}])",
     [](Client c) { return got(c.getPartnerCases(u"I"_s, u"P"_s)).at(0).getStatus(); }, "3"},
    {"POST", "/Installations/I/partnercases/refresh-status", R"(["a","b"])", R"([{"Status":"s"}])",
     [](Client c) {
         return got(c.updatePartnerCasesStatus(u"I"_s, {{u"a"_s, u"b"_s}})).at(0).status;
     },
     "s"},
    {"POST", "/CollaborationFiles/F", R"({"InstallationReference":"I"})", none,
     [](Client c) { return succeeds(c.markCollaborationFileAsSeen(u"F"_s, {u"I"_s})); }, "1"},
};

Row const operationsOfOrders[] = {
    {"GET", "/Installations/I/addresses/shipto", none, R"({"Addresses":[{"City":"c"}]})",
     [](Client c) { return got(c.getShippingAddresses(u"I"_s)).addresses.value(0).city; }, "c"},
    {"POST", "/Orders", orderBody, R"({"Reference":"x","Order":{"Reference":"R"}})",
     [](Client c) { return got(c.createOrder(order())).getOrderReference(); }, "R"},
    {"POST", "/Orders/lab/abc",
     R"({"InstallationReference":"abc","CreationFrontendVersion":"","FrontendVersion":"3.1","ProductionNote":"","OrderItems":[]})",
     R"({"OrderItems":[{"ArticleNumber":"a"}]})",
     [](Client c) { return got(c.createServiceOrder(serviceOrder())).orderItems.value(0).getArticleNumber(); }, "a"},
    {"PUT", "/Orders/files/F", QByteArray("{\0\xff", 3), none,
     [](Client c) { return succeeds(c.uploadOrderFile(u"F"_s, QByteArray("{\0\xff", 3))); }, "1"},
    {"POST", "/Orders/simulation",
     R"({"InstallationReference":"I","OrderItems":[{"ArticleNumber":"","Quantity":2,"ToothNumberStart":0,"ToothNumberEnd":0,
             "VoucherCode":"","IsLocalProductionArticle":true}]})",
     R"([{"VoucherMessage":"MSG_VOUCHER_M999","PriceType":2}])",
     [](Client c)
     {
         PriceInfoRequest item;
         item.quantity = 2;
         item.isLocalProductionArticle = true;
         return got(c.getPriceInfo({u"I"_s, {item}})).at(0).voucherMessage;
     },
     "9"},
    {"POST", "/Orders/details", R"({"References":["R"]})", R"([{"State":42}])",
     [](Client c)
     {
         OrderDetailsRequest request;
         request.setOrderReferences({u"R"_s});
         return got(c.getOrderStatus(request)).at(0).getState();
     },
     "42"},
    {"GET", "/Orders/R/files/tempshell", none, R"([{"NumberOfChunks":3}])",
     [](Client c) { return c.getTempShellCalculationData(u"R"_s).getTempShellFile().value(0).getNumberOfChuncks(); },
     "3"},
    {"PUT", "/Orders/R/FinishUpload", none, none, [](Client c) { return succeeds(c.putFinishCadOrder(u"R"_s)); }, "1"},
    {"POST", "/Orders/R/FinishUpload", none, none, [](Client c) { return succeeds(c.postFinishCadOrder(u"R"_s)); },
     "1"},
    {"GET", "/Installations/I/3rdpartyauthenticationkeys", none, R"({"Keys":["k"]})",
     [](Client c) { return c.getThirdPartyAuthenticationKeys(u"I"_s).second.at(0); }, "k"},
    {"POST", "/Cases",
     R"({"InstallationReference":"","UserReference":"","PatientFirstName":"","PatientLastName":"","PatientId":"",
             "PatientReference":"","PatientDateOfBirth":"","PatientGender":"Male","LocatorInfoNote":"","CaseFiles":[],
             "PrescriptionTemplates":[{"Name":"p.pdf","AcquisitionTimestamp":null,"Type":"Full"}]})",
     R"({"CaseFiles":[{"Id":"F"}]})",
     [](Client c)
     {
         mirashare::CreateCaseRequest request;
         request.patientGender = PatientGender::Male;
         request.prescriptionTemplates.emplace_back(QFileInfo(u"dir/p.pdf"_s), QDateTime());
         return got(c.createCaseRequest(request)).caseFiles.at(0).id;
     },
     "F"},
    {"POST", "/Cases/share", R"({"userReference":"U","caseId":"C","partnerConnectionId":"P"})", none,
     [](Client c) {
         return succeeds(c.sharePartnerCaseRequest({u"U"_s, u"C"_s, u"P"_s}));
     },
     "1"},
    {"POST", "/Cases/C/files?api-version=1.0", R"({"InstallationReference":"I","UserReference":"U","CaseFiles":[]})",
     R"([{"Name":"n"}])",
     [](Client c) {
         return got(c.addNewDataRequest({u"C"_s, u"I"_s, u"U"_s, {}})).at(0).name;
     },
     "n"},
    {"GET", "/Settings", none, R"({"SoftwarePageUrl":"u"})", [](Client c) { return c.getSoftwarePageUrl(); }, "u"},
};

TEST(Operations, EachIsOneExchange)
{
    core::HostEnvironment host;
    host.collaborationRequestVersion = QVersionNumber(4, 5);
    core::setHostEnvironment(host);
    std::size_t count = 0;
    for (std::span<Row const> const family :
         {std::span<Row const>(operationsOfAccounts), std::span<Row const>(operationsOfRequests),
          std::span<Row const>(operationsOfDetails), std::span<Row const>(operationsOfPartners),
          std::span<Row const>(operationsOfOrders)})
    {
        std::for_each(family.begin(), family.end(), &expectOnTheWire);
        count += family.size();
    }
    // The doubles' list has them all: their classes would not compile otherwise.
#define KELO_COUNT(...) +1
    EXPECT_EQ(count, 0U KELO_TESTKIT_OPERATIONS(KELO_COUNT) KELO_TESTKIT_OVERLOADS(KELO_COUNT));
#undef KELO_COUNT
}

Call idOf(QString const& installation, QString const& key)
{
    return [=](Client c) { return got(c.getRequestId(installation, collaboration::RequestKeyRequest{key})).requestId; };
}

Call helpIn(QString const& language)
{
    return [=](Client c) { return got(c.getHelpFileInfo(u"I"_s, language)).getFileReference(); };
}

Row const oddValues[] = {
    {"GET", "/Installations/%252/requests?Search.Key=a%20b%C3%A4&api-version=0.0", none, R"({"RequestId":"R"})",
     idOf(u"%2"_s, u"a bä"_s), "R"},
    {"GET", "/Installations/a%20b%C3%A4/requests?Search.Key=%252&api-version=0.0", none, R"({"RequestId":"R"})",
     idOf(u"a bä"_s, u"%2"_s), "R"},
    {"GET", "/Installations/I/requests?Search.Key=K%231&api-version=0.0", none, R"({"RequestId":"R"})",
     idOf(u"I"_s, u"K#1"_s), "R"},
    {"GET", "/Installations/I/help/", none, R"({"FileId":"h"})", helpIn(QString()), "h"},
    {"GET", "/Installations/I/help/I", none, R"({"FileId":"h"})", helpIn(u"%1"_s), "h"},
    {"POST", "/Orders/lab/",
     R"({"InstallationReference":"","CreationFrontendVersion":"","FrontendVersion":"","ProductionNote":"","OrderItems":[]})",
     R"({"OrderItems":[{},{}]})", [](Client c) { return got(c.createServiceOrder({})).orderItems.size(); }, "2"},
    {"POST", "/Installations/I/partnercases/refresh-status", "[]", "[]",
     [](Client c) { return got(c.updatePartnerCasesStatus(u"I"_s, {})).size(); }, "0"},
    {"PUT", "/Orders/files/F", none, none, [](Client c) { return succeeds(c.uploadOrderFile(u"F"_s, QByteArray())); },
     "1"},
};

TEST(Operations, ValuesAreFilledInAsTheyStand)
{
    std::for_each(std::begin(oddValues), std::end(oddValues), &expectOnTheWire);
}

TEST(Operations, ACaseDesignerOrderHasATimeOutOfItsOwn)
{
    testkit::RawServer const server([](testkit::RawRequest const&) { return testkit::stall(); });
    auto const connection = connectToApi(server);
    connection->setDefaultTimeout(std::chrono::milliseconds(50));
    auto const caseDesignerOrder = connection->createIPSOrder(ipsOrder());
    ASSERT_TRUE(server.waitForRequests(1));
    EXPECT_EQ(connection->createOrder(order()).get().status.kind, 1U);
    EXPECT_FALSE(caseDesignerOrder.isFinished()) << "though it was sent before";
    caseDesignerOrder.cancel();
}

} // namespace
