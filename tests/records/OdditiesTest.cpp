#include <algorithm>
#include <functional>
#include <limits>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gmock/gmock.h>

#include <KeloCommunicationLib/account/AccountRecords.h>
#include <KeloCommunicationLib/account/DocumentRecords.h>
#include <KeloCommunicationLib/account/UserRecords.h>
#include <KeloCommunicationLib/collaboration/CollaborationRecords.h>
#include <KeloCommunicationLib/collaboration/ConnectionRecords.h>
#include <KeloCommunicationLib/collaboration/QueryRecords.h>
#include <KeloCommunicationLib/json/JsonSerializer.h>
#include <KeloCommunicationLib/orders/CatalogRecords.h>
#include <KeloCommunicationLib/orders/OrderRecords.h>
#include <KeloCommunicationLib/orders/PriceRecords.h>
#include <KeloCommunicationLib/orders/TempShellRecords.h>
#include <KeloCommunicationLib/partners/MiraShareRecords.h>
#include <KeloCommunicationLib/partners/PartnerRecords.h>

// What a record does that its table's rows do not say at a glance.

namespace
{

using namespace Qt::Literals::StringLiterals;

template <class T>
T read(char const* json)
{
    QJsonDocument const document = QJsonDocument::fromJson(json);
    EXPECT_TRUE(document.isObject()) << json;
    return jsonSerializer::fromJson<T>(document.object());
}

/// The member's number in a record that has each of the values under the key, and at last in one without the key.
template <class Record, class Member>
std::vector<int> numbersOf(QString const& key, Member member, char const* values)
{
    std::vector<int> numbers;
    for (QJsonValue const value : QJsonDocument::fromJson(values).array())
    {
        auto const record = jsonSerializer::fromJson<Record>(QJsonObject{{key, value}});
        numbers.push_back(static_cast<int>(std::invoke(member, record)));
    }
    numbers.push_back(static_cast<int>(std::invoke(member, jsonSerializer::fromJson<Record>(QJsonObject()))));
    return numbers;
}

TEST(Oddities, MembersThatAreNamedAfterSomethingElse)
{
    auto const settings = read<SettingsLicenseInfo>(
        R"({"FindAccountPageUrl":"connection","ForgotPasswordPageUrl":"password","RedirectToPartnerUrl":"partner",)"
        R"("StatsUploadUrl":"stats","SharedCasesUrl":"cases","SoftwarePageUrl":"software","IFUUrl":"ifu"})");
    EXPECT_EQ(settings.getZelkoMiraConnectionPageUrl(), u"connection");
    EXPECT_EQ(settings.getZelkoMiraPasswordPageUrl(), u"password");
    EXPECT_EQ(settings.getPartnerUrl(), u"partner");
    EXPECT_EQ(settings.getVantorStatsUrl(), u"stats");
    EXPECT_EQ(settings.getZelkoMiraSharedCasesPageUrl(), u"cases");
    EXPECT_EQ(settings.getZelkoMiraSoftwarePageUrl(), u"software");
    EXPECT_EQ(settings.getIfuUrl(), u"ifu");
    EXPECT_TRUE(settings.getZelkoMiraUrl().isEmpty());
    auto const account = read<PartnerAccountInfo>(R"({"PartnerConnectionId":"C","PartnerId":"P"})");
    EXPECT_EQ(account.getId(), u"C");
    EXPECT_EQ(account.getPartnerId(), u"P");
}

TEST(Oddities, MisplacedEnvelopesLeaveTheMembersUnset)
{
    struct
    {
        char const* json;
        char const* accountId;
        char const* token;
        int refreshTime;
    } const rows[] = {
        {R"({"Account":{"AccountId":"A"},"Site":{"Token":"T","TwoFactorRefreshTime":30}})", "A", "T", 30},
        {R"({"Account":{"AccountId":"A","Token":"T"}})", "A", "", 0},
        {R"({"Site":{"AccountId":"A","Token":"T","TwoFactorRefreshTime":"30"}})", "", "T", 0},
        {R"({"Account":"A","Site":[{"Token":"T"}]})", "", "", 0},
        {R"({"AccountId":"A","Token":"T"})", "", "", 0},
    };
    for (auto const& row : rows)
    {
        auto const account = read<AccountLicenseInfo>(row.json);
        EXPECT_EQ(account.getAccountId(), QLatin1String(row.accountId)) << row.json;
        EXPECT_EQ(account.getToken(), QLatin1String(row.token)) << row.json;
        EXPECT_EQ(account.getTwoFactorRefreshTime(), row.refreshTime) << row.json;
    }
    for (char const* const json : {R"({"Reference":"O1"})", R"({"Reference":"O1","Order":"O1"})"})
    {
        EXPECT_EQ(read<OrderRequestResponse>(json).getOrderReference(), QString()) << json;
    }
}

TEST(Oddities, WhatTheNumbersAndTextsOfStatesReadAs)
{
    using testing::ElementsAre;
    constexpr char const* numbers = R"([4711, -7, "3", 2.5, null])";
    EXPECT_THAT(
        numbersOf<collaboration::FileInfo>(u"State"_s, &collaboration::FileInfo::state, numbers),
        ElementsAre(4711, -7, 0, 0, -1, -1));
    EXPECT_THAT(
        numbersOf<collaboration::FileInfo>(u"ChunkSize"_s, &collaboration::FileInfo::chunkSize, "[1024.9, 1e300]"),
        ElementsAre(1024, std::numeric_limits<int>::max(), 0));
    EXPECT_THAT(
        numbersOf<collaboration::RequestDetails>(u"Status"_s, &collaboration::RequestDetails::status, numbers),
        ElementsAre(4711, -7, 0, 0, -1, -1));
    EXPECT_THAT(
        numbersOf<collaboration::RequestInfo>(u"RequestType"_s, &collaboration::RequestInfo::requestType, numbers),
        ElementsAre(4711, -7, 0, 0, 0, 0));
    EXPECT_THAT(
        numbersOf<OrderItemDetails>(u"State"_s, &OrderItemDetails::getState, numbers),
        ElementsAre(4711, -7, 0, 0, 0, 0));
    EXPECT_THAT(
        numbersOf<StartConnectionResponse>(
            u"ConnectionStatus"_s, &StartConnectionResponse::getConnectionStatus,
            R"([3, "Connected", {"a": 1}, null])"),
        ElementsAre(0, 0, 0, 0, 0));
    EXPECT_THAT(
        numbersOf<PriceInfoResponse>(u"PriceType"_s, &PriceInfoResponse::priceType, R"([2, "2", {"PriceType": 2}])"),
        ElementsAre(0, 0, 0, 0));
    EXPECT_THAT(
        numbersOf<ConnectionInfo>(
            u"Status"_s, &ConnectionInfo::getState,
            R"(["Created", "InvitationSent", "Accepted", "Connected", "Rejected", "RejectionNotified", "Stopped",
                "connected", 3, null])"),
        ElementsAre(0, 1, 2, 3, 4, 5, 6, -1, -1, -1, -1));
    EXPECT_THAT(
        numbersOf<PartnerCaseInfo>(
            u"CaseStatus"_s, &PartnerCaseInfo::getStatus,
            R"(["Created", "Draft", "Accepted", "Finished", "Updating Status", "Rejected", "created", 0, null])"),
        ElementsAre(0, 1, 2, 3, 4, 1, 1, 1, 1, 1));
    EXPECT_THAT(
        numbersOf<mirashare::MiraShareItemData>(
            u"Status"_s, &mirashare::MiraShareItemData::getStatus,
            R"(["Created", "Open", "UnderReview", "InProgress", "Finished", "NeedsMoreInput", "Rejected", "Closed",
                "Archived", "closed", 3])"),
        ElementsAre(0, 1, 2, 3, 4, 5, 6, 7, 1, 1, 1, 1));
    EXPECT_THAT(
        numbersOf<PriceInfoResponse>(
            u"VoucherMessage"_s, &PriceInfoResponse::voucherMessage,
            R"(["MSG_VOUCHER_100", "MSG_VOUCHER_103", "MSG_VOUCHER_107", "MSG_VOUCHER_M999", "msg_voucher_107",
                "MSG_VOUCHER_108", "", null, 8])"),
        ElementsAre(1, 4, 8, 9, 0, 0, 0, 0, 0, 0));
    EXPECT_THAT(
        numbersOf<CatalogUpdateInfo>(
            u"Status"_s, &CatalogUpdateInfo::getUpdateStatus, R"(["Optional", "Mandatory", "mandatory", 2])"),
        ElementsAre(1, 2, 0, 0, 0));
    EXPECT_EQ(static_cast<int>(jsonSerializer::fromJson<collaboration::RequestStatus>(QJsonValue())), 0);
}

TEST(Oddities, StatesThatChangeOnTheirWayOut)
{
    EXPECT_EQ(jsonSerializer::toJson(mirashare::CreateCaseRequest())[u"PatientGender"], QString());
    auto catalog = read<CatalogUpdateInfo>(R"({"Status":"Mandatory"})");
    catalog.setUpdateStatusString(u"Later"_s);
    EXPECT_EQ(catalog.getUpdateStatus(), KeloCommunicationLib::CatalogUpdateState::NoUpdate);
    QStringList shown;
    for (int status = -1; status < 6; ++status)
    {
        shown.append(PartnerCaseInfo::stringFromStatus(static_cast<PartnerCaseInfo::Status>(status)));
    }
    EXPECT_EQ(shown.join(u','), u"Updating Status,Created,Draft,Accepted,Finished,Updating Status,Updating Status");
}

TEST(Oddities, OnlyWhatIsSetIsWritten)
{
    using collaboration::RequestType;
    collaboration::UpdateSurgeryRequestRequest update;
    update.requestId = u"path"_s;
    update.note = QString();
    QJsonObject const json = jsonSerializer::toJson(update).toObject();
    QStringList const always{
        u"ExistingFiles"_s, u"InstallationReference"_s, u"NewFiles"_s, u"Note"_s, u"UserReference"_s};
    EXPECT_EQ(json.keys(), always);
    EXPECT_EQ(json[u"Note"], QString());
    GetRequestDetailsInfo details(true, QVersionNumber(1, 2), {u"a"_s}, RequestType::Unset);
    EXPECT_FALSE(jsonSerializer::toJson(details).toObject().contains(u"Type"));
    details.setType(RequestType::DentalScan);
    EXPECT_EQ(jsonSerializer::toJson(details)[u"Type"], 0);
    EXPECT_FALSE(jsonSerializer::toJson(collaboration::CreateRequestRequest()).toObject().contains(u"Type"));
}

TEST(Oddities, ElementsThatAreNoObjectsGiveEmptyEntries)
{
    QJsonDocument const shells = QJsonDocument::fromJson(R"([{"Id":"T1"},null])");
    auto const files = jsonSerializer::fromJson<TempShellDataResponse>(shells.array()).getTempShellFile();
    ASSERT_EQ(files.size(), 2);
    EXPECT_EQ(files[0].getFileId(), u"T1");
    EXPECT_EQ(files[1].getFileId(), QString());
    auto const item =
        read<mirashare::MiraShareItemData>(R"({"SharedWithSites":[{"Name":"one","Id":1},5,{"Id":2},{"Name":"four"}]})");
    EXPECT_EQ(item.getSharedWith(), (QStringList{u"one"_s, QString(), QString(), u"four"_s}));
    EXPECT_TRUE(read<mirashare::MiraShareItemData>(R"({"SharedWithSites":{"Name":"x"}})").getSharedWith().isEmpty());
}

TEST(Oddities, AccountIsShownByItsGivenNameIfItHasOne)
{
    auto account = read<PartnerAccountInfo>(R"({"UserName":"user"})");
    EXPECT_EQ(&account.getDisplayName(), &account.getUserName());
    account.setGivenName(u"given"_s);
    EXPECT_EQ(&account.getDisplayName(), &account.getGivenName());
    EXPECT_FALSE(read<PartnerInfo>(R"({"logo":"x","Logo":"x"})").getLogo());
}

TEST(Oddities, UsersSortByNameAsTheirCodeUnitsDo)
{
    std::vector<TessalyUser> users(5);
    QStringList names{u"bob"_s, u"alice"_s, u"Alice"_s, u"Bob"_s, QString()};
    for (std::size_t index = 0; index < users.size(); ++index)
    {
        users[index].setUserName(names[static_cast<qsizetype>(index)]);
    }
    EXPECT_FALSE(UserNameComparator()(users[4], TessalyUser()) || UserNameComparator()(TessalyUser(), users[4]));
    std::sort(users.begin(), users.end(), UserNameComparator());
    names.clear();
    for (TessalyUser const& user : users)
    {
        names.append(user.getUserName());
    }
    EXPECT_EQ(names.join(u' '), u" Alice Bob alice bob");
}

TEST(Oddities, TheFirstThatMatchesIsFound)
{
    auto const study =
        read<StudyInfo>(R"({"ClinicalPartners":[{"StudyParticipantId":"a1","Name":"first"},)"
                        R"({"StudyParticipantId":"a1","Name":"second"},{"StudyParticipantId":"A1","Name":"other"}]})");
    EXPECT_EQ(study.getClinicalNameForClinicianID(u"a1"_s), u"first");
    EXPECT_EQ(study.getClinicalNameForClinicianID(u"A1"_s), u"other");
    EXPECT_TRUE(study.getClinicalNameForClinicianID(u"a"_s).isEmpty());
    EXPECT_TRUE(StudyInfo().getClinicalNameForClinicianID(QString()).isEmpty());

    auto const details = read<RestorationDetailsInfo>(
        R"({"CollaborationSessionDetailInfos":[{"CollaborationRequestDetailInfos":[{"Id":"a","RestorationURL":"1"}]},)"
        R"({"CollaborationRequestDetailInfos":[{"Id":"b","RestorationURL":"2"}]}]})");
    EXPECT_EQ(details.getRestorationURL(u"b"_s), u"2");
    EXPECT_EQ(details.getRestorationURL(u"B"_s), QString());
}

TEST(Oddities, CaseDesignerOrdersCompareByAllTheyHold)
{
    CreateIPSOrderInfo const order(
        u"I1"_s, QVersionNumber(1, 2), QVersionNumber(1, 3), u"P1"_s,
        {IPSOrderItemInfo(u"A1"_s, u"M1"_s, 4), IPSOrderItemInfo()});
    EXPECT_TRUE(jsonSerializer::fromJson<CreateIPSOrderInfo>(jsonSerializer::toJson(order).toObject()) == order);
    EXPECT_FALSE(CreateIPSOrderInfo() == order);
}

} // namespace
