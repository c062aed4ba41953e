#include <gmock/gmock.h>

#include <algorithm>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <KeloCommunicationLib/account/AccountRecords.h>
#include <KeloCommunicationLib/account/DocumentRecords.h>
#include <KeloCommunicationLib/account/UserRecords.h>
#include <KeloCommunicationLib/account/VantorStats.h>
#include <KeloCommunicationLib/json/JsonSerializer.h>

namespace
{

template <class T>
T read(char const* json)
{
    return jsonSerializer::fromJson<T>(QJsonDocument::fromJson(json).object());
}

TEST(AccountRecords, AccountAndSiteAreReadIndependently)
{
    struct
    {
        char const* json;
        char const* accountId;
        char const* token;
        bool twoFactor;
        int refreshTime;
    } const rows[] = {
        {R"({"Account":{"AccountId":"A"},"Site":{"Token":"T","TwoFactorEnabled":true,"TwoFactorRefreshTime":30}})", "A",
         "T", true, 30},
        {R"({"Account":{"AccountId":"A"}})", "A", "", false, 0},
        {R"({"Site":{"Token":"T","TwoFactorEnabled":1,"TwoFactorRefreshTime":"30"}})", "", "T", false, 0},
        {R"({"Account":"A","Site":[{"Token":"T"}]})", "", "", false, 0},
        {R"({"AccountId":"A","Token":"T"})", "", "", false, 0},
    };
    for (auto const& row : rows)
    {
        auto const account = read<AccountLicenseInfo>(row.json);
        EXPECT_EQ(account.getAccountId(), QLatin1String(row.accountId)) << row.json;
        EXPECT_EQ(account.getToken(), QLatin1String(row.token)) << row.json;
        EXPECT_EQ(account.isTwoFactorEnabled(), row.twoFactor) << row.json;
        EXPECT_EQ(account.getTwoFactorRefreshTime(), row.refreshTime) << row.json;
    }
}

TEST(AccountRecords, SettingsThatAreNamedAfterAnotherPage)
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
}

TEST(AccountRecords, SoftwareUpdatesAndFiles)
{
    auto const update = read<SoftwareUpdateInfo>(R"({"Version":"5.1.0-beta","DirectDownloadUrl":"d"})");
    EXPECT_EQ(update.getUpdateVersion(), QVersionNumber(5, 1, 0));
    EXPECT_FALSE(update.hasMandatoryUpdate());
    EXPECT_EQ(update.getDownloadUrl(), u"d");
    EXPECT_TRUE(read<SoftwareUpdateInfo>(R"({"ForcedUpdate":true})").hasMandatoryUpdate());
    EXPECT_TRUE(read<SoftwareUpdateInfo>(R"({"Version":"next"})").getUpdateVersion().isNull());

    auto const file = read<FileLicenseInfo>(R"({"FileId":"F","FileName":"a.zip","FileSize":2147483647})");
    EXPECT_EQ(file.getFileReference(), u"F");
    EXPECT_EQ(file.getFileSize(), 2147483647);
    EXPECT_EQ(read<FileLicenseInfo>(R"({"FileSize":"12"})").getFileSize(), 0);
    EXPECT_EQ(read<HelpFileInfo>(R"({"Id":"H","LanguageCode":"de"})").getFileRef(), u"H");
}

TEST(AccountRecords, UsersSortByNameAsTheirCodeUnitsDo)
{
    std::vector<TessalyUser> users(4);
    users[0].setUserName(QStringLiteral("bob"));
    users[1].setUserName(QStringLiteral("alice"));
    users[2].setUserName(QStringLiteral("Alice"));
    users[3].setUserName(QStringLiteral("Bob"));
    std::sort(users.begin(), users.end(), UserNameComparator());
    QStringList names;
    for (TessalyUser const& user : users)
    {
        names.append(user.getUserName());
    }
    EXPECT_EQ(names.join(u' '), u"Alice Bob alice bob");

    TessalyUser unnamed;
    TessalyUser empty;
    empty.setUserName(QStringLiteral(""));
    EXPECT_FALSE(UserNameComparator()(unnamed, empty) || UserNameComparator()(empty, unnamed));
    EXPECT_EQ(read<TessalyUser>(R"({"TwoFactorKey":"K"})").getEncryptedTwoFactorKey(), u"K");
}

TEST(AccountRecords, StudiesNameTheFirstClinicianWithAnId)
{
    auto const list = read<StudyInfoList>(
        R"({"StudyInfos":[{"Id":"S","ClinicalPartners":[{"StudyParticipantId":"a1","Name":"first"},)"
        R"({"StudyParticipantId":"a1","Name":"second"},{"StudyParticipantId":"A1","Name":"other"}]},{"Id":"E"},7]})");
    ASSERT_EQ(list.getStudyInfos().size(), 3U);
    StudyInfo const& study = list.getStudyInfos()[0];
    EXPECT_EQ(study.getClinicalNameForClinicianID(QStringLiteral("a1")), u"first");
    EXPECT_EQ(study.getClinicalNameForClinicianID(QStringLiteral("A1")), u"other");
    EXPECT_TRUE(study.getClinicalNameForClinicianID(QStringLiteral("a")).isEmpty());
    EXPECT_TRUE(list.getStudyInfos()[1].getClinicalNameForClinicianID(QString()).isEmpty());
}

TEST(AccountRecords, StatisticsTravelAsBase64)
{
    QByteArray const bytes("\xff\xfe\x00\xfb", 4);
    for (auto const& [data, text] : {std::pair(bytes, "//4A+w=="), std::pair(QByteArray(), "")})
    {
        QJsonValue const json = jsonSerializer::toJson(VantorStats(QStringLiteral("id"), data));
        QJsonObject const expected{
            {QStringLiteral("SelectedType"), QStringLiteral("id")}, {QStringLiteral("Data"), QLatin1String(text)}};
        EXPECT_EQ(json, QJsonValue(expected));
    }
}

} // namespace
