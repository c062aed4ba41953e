#include <gmock/gmock.h>

#include <atomic>
#include <map>

#include <QCoreApplication>
#include <QSet>
#include <QTimer>

#include <KeloCommunicationLib/account/AccountSettingsRetriever.h>
#include <KeloCommunicationLib/connection/TessalyConnection.h>
#include <platform/core/HostEnvironment.h>
#include <platform/core/HostInfo.h>
#include <testkit/RawServer.h>
#include <tests/support/LogCapture.h>

namespace
{

using Settings = QHash<QString, QVariant>;

/// The steps of a retrieval, in their order.
struct Step
{
    char const* target;
    char const* answer;
    char const* unreachable;
    char const* failed;
};
constexpr Step steps[] = {
    {"/Installations/REF/accountInfo?api-version=1.0",
     R"({"Account":{"AccountId":"sap","AccountName":"user"},"Site":{"Token":"token","Id":"site","Email":"e",)"
     R"("ZelkoCoreUrlApi":"api","ZelkoCoreUrlScanCenter":"scan","TwoFactorEnabled":true,"TwoFactorRefreshTime":7}})",
     "Failed to get account info. KELO was unreachable", "Failed to get account info: "},
    {"/Installations/REF/settings?api-version=1.0",
     R"({"StatsUploadUrl":"1","ContactUrl":"2","HelpUrl":"3","IFUUrl":"4","ZelkoMiraUrl":"5","SoftwarePageUrl":"6",)"
     R"("SharedCasesUrl":"7","ForgotPasswordPageUrl":"8","FindAccountPageUrl":"9","AdditionalResourcesUrl":"10",)"
     R"("DownloadImplantFilesUrl":"11","TrainingVideosUrl":"12","SubscriptionsUrl":"13","RedirectToPartnerUrl":"14"})",
     "Failed to get settings info. KELO was unreachable.", "Failed to get settings info: "},
    {"/Installations/REF/ifu/status", R"({"FileId":"ifu"})", "Failed to get IFU info. KELO was unreachable.",
     "Failed to get ifu info: "},
    {"/Installations/REF/uitranslation/status", R"({"FileId":"ui"})",
     "Failed to get ui translation info. KELO was unreachable.", "Failed to get ui translation info: "},
    {"/Installations/REF/help/status",
     R"([{"LanguageCode":"de","DisplayName":"Deutsch","Id":"h0"},{"LanguageCode":"en","DisplayName":"English","Id":"h1"}])",
     "Failed to get help files. KELO was unreachable.", "Failed to get help files: "},
};
constexpr int stepCount = static_cast<int>(std::size(steps));

class AccountSettings : public testing::Test
{
protected:
    AccountSettings() : connection_(TessalyConnection::makeConnection(server_.url(), QString(), QString()))
    {
        core::HostEnvironment host;
        host.installationReference = [](QString const& key)
        { return key.isEmpty() ? QStringLiteral("REF") : QString(); };
        core::setHostEnvironment(host);
    }

    bool retrieve() { return retriever_.retrieveAccountSettings(*connection_); }

    /// What one target is answered with from now on in place of its usual answer.
    void answerWith(char const* target, std::function<testkit::Action()> answer)
    {
        std::lock_guard const lock(mutex_);
        special_ = {{target, std::move(answer)}};
    }

    testkit::Action answer(testkit::RawRequest const& request)
    {
        std::function<testkit::Action()> special;
        {
            std::lock_guard const lock(mutex_);
            auto const found = special_.find(request.target);
            special = found != special_.end() ? found->second : nullptr;
        }
        if (special)
        {
            return special();
        }
        for (Step const& step : steps)
        {
            if (request.target == step.target)
            {
                return testkit::reply(200, step.answer);
            }
        }
        return testkit::reply(404);
    }

    std::mutex mutex_;
    std::map<QByteArray, std::function<testkit::Action()>> special_;
    testkit::RawServer server_{[this](testkit::RawRequest const& request) { return answer(request); }};
    std::unique_ptr<TessalyConnection> connection_;
    AccountSettingsRetriever retriever_;
};

Settings accountEntries()
{
    return {
        {QStringLiteral("SAPId"), QStringLiteral("sap")},
        {QStringLiteral("UserName"), QStringLiteral("user")},
        {QStringLiteral("PartnerId"), QStringLiteral("token")},
        {QStringLiteral("SiteId"), QStringLiteral("site")},
        {QStringLiteral("ZelkoCoreUrlApi"), QStringLiteral("api")},
        {QStringLiteral("ZelkoCoreUrlScanCenter"), QStringLiteral("scan")},
        {QStringLiteral("TwoFactorEnabled"), true},
        {QStringLiteral("TwoFactorRefreshTime"), 7},
    };
}

Settings addressEntries()
{
    namespace names = applicationParameterNames;
    QString const keys[] = {
        QStringLiteral("VantorStatsUrl"),
        QStringLiteral("VantorContactUrl"),
        QStringLiteral("VantorHelpUrl"),
        QStringLiteral("VantorOnlineIfuUrl"),
        names::getZelkoMiraUrl(),
        names::getZelkoMiraSoftwarePageUrl(),
        names::getZelkoMiraSharedCasesPageUrlParameter(),
        names::getZelkoMiraPasswordPageUrl(),
        names::getZelkoMiraConnectionPageUrl(),
        names::getZelkoMiraAdditionalResourcesUrl(),
        names::getZelkoMiraDownloadImplantFilesPageUrl(),
        names::getTrainingVideosUrl(),
        names::getZelkoMiraSubscriptionsPageUrl(),
        names::getZelkoMiraPartnerUrl()};
    Settings entries;
    int number = 0;
    for (QString const& key : keys)
    {
        entries.insert(key, QString::number(++number));
    }
    return entries;
}

Settings helpEntries()
{
    return {
        {QStringLiteral("NumberOfAvailableHelpFileTranslations"), qulonglong{2}},
        {QStringLiteral("LatestLanguage0LanguageCode"), QStringLiteral("de")},
        {QStringLiteral("LatestLanguage0DisplayName"), QStringLiteral("Deutsch")},
        {QStringLiteral("LatestLanguage0Reference"), QStringLiteral("h0")},
        {QStringLiteral("LatestLanguage1LanguageCode"), QStringLiteral("en")},
        {QStringLiteral("LatestLanguage1DisplayName"), QStringLiteral("English")},
        {QStringLiteral("LatestLanguage1Reference"), QStringLiteral("h1")},
    };
}

/// The settings after the first `count` steps succeeded.
Settings settingsAfter(int count)
{
    Settings settings;
    if (count > 0)
    {
        settings.insert(accountEntries());
    }
    if (count > 1)
    {
        settings.insert(addressEntries());
    }
    if (count > 4)
    {
        settings.insert(helpEntries());
    }
    return settings;
}

Settings referencesAfter(int count)
{
    Settings references;
    if (count > 2)
    {
        references.insert(QStringLiteral("KeloIFUFileReference"), QStringLiteral("ifu"));
    }
    if (count > 3)
    {
        references.insert(QStringLiteral("KeloUiTranslationFileReference"), QStringLiteral("ui"));
    }
    return references;
}

TEST_F(AccountSettings, AllStepsInOrder)
{
    test::LogCapture const log;
    ASSERT_TRUE(retrieve());
    EXPECT_EQ(retriever_.getAccountSettings(), settingsAfter(stepCount));
    EXPECT_EQ(retriever_.getUpdateReferences(), referencesAfter(stepCount));
    EXPECT_EQ(
        retriever_.getAccountSettings()[QStringLiteral("NumberOfAvailableHelpFileTranslations")].typeId(),
        QMetaType::ULongLong);
    auto const requests = server_.requests();
    ASSERT_EQ(requests.size(), std::size(steps));
    for (std::size_t index = 0; index < requests.size(); ++index)
    {
        EXPECT_EQ(requests[index].target, steps[index].target);
    }
    EXPECT_THAT(log.warnings(), testing::IsEmpty());
}

TEST_F(AccountSettings, AFailedStepIsLoggedAndEndsTheCall)
{
    for (int failing = 0; failing < stepCount; ++failing)
    {
        Step const& step = steps[failing];
        SCOPED_TRACE(step.target);
        struct
        {
            std::function<testkit::Action()> answer;
            std::string warning;
            quint32 kind;
        } const rows[] = {
            {[] { return testkit::reply(400, R"([{"Code":"17","Message":"Bad \"input\""}])"); },
             step.failed + std::string("(17) Bad \"input\""), 2},
            {[] { return testkit::reply(503, "<html/>"); }, step.failed + std::string("(1000) "), 2},
            // The exchange ends without a reply.
            {[this]
             {
                 connection_->closeConnection();
                 return testkit::closeNow();
             },
             std::string("AccountSettingsRetriever::retrieveAccountSettings ") + step.unreachable, 1},
        };
        for (auto const& row : rows)
        {
            connection_->initialize(server_.url(), QString(), QString(), QString());
            retriever_ = AccountSettingsRetriever();
            answerWith(step.target, row.answer);
            test::LogCapture const log;
            EXPECT_FALSE(retrieve());
            EXPECT_EQ(retriever_.lastStatus().kind, row.kind);
            EXPECT_THAT(log.warnings(), testing::ElementsAre(row.warning));
            EXPECT_EQ(retriever_.getAccountSettings(), settingsAfter(failing));
            EXPECT_EQ(retriever_.getUpdateReferences(), referencesAfter(failing));
        }
    }
}

TEST_F(AccountSettings, ABrokenExchangeIsAFailedStep)
{
    answerWith(steps[1].target, [] { return testkit::closeNow(); });
    test::LogCapture const log;
    EXPECT_FALSE(retrieve());
    EXPECT_THAT(log.warnings(), testing::ElementsAre(testing::StartsWith("Failed to get settings info: (0) ")));
}

TEST_F(AccountSettings, EarlierEntriesGoWithTheNextAccountOnly)
{
    ASSERT_TRUE(retrieve());
    test::LogCapture const log;
    answerWith(steps[0].target, [] { return testkit::reply(500); });
    EXPECT_FALSE(retrieve());
    EXPECT_EQ(retriever_.getAccountSettings(), settingsAfter(stepCount));

    answerWith(steps[1].target, [] { return testkit::reply(500); });
    EXPECT_FALSE(retrieve());
    EXPECT_EQ(retriever_.getAccountSettings(), accountEntries());
    EXPECT_EQ(retriever_.getUpdateReferences(), referencesAfter(stepCount));

    answerWith(steps[4].target, [] { return testkit::reply(200, "[]"); });
    retriever_.skipIFUFileReference(true);
    AccountSettingsRetriever copy = retriever_;
    int const before = server_.requestCount();
    EXPECT_TRUE(copy.retrieveAccountSettings(*connection_));
    EXPECT_EQ(copy.lastStatus().kind, 0U);
    EXPECT_EQ(server_.requestCount() - before, stepCount - 1) << "without the instructions for use";
    Settings expected = settingsAfter(stepCount - 1);
    expected.insert(QStringLiteral("NumberOfAvailableHelpFileTranslations"), qulonglong{0});
    EXPECT_EQ(copy.getAccountSettings(), expected);
    EXPECT_EQ(copy.getUpdateReferences(), referencesAfter(stepCount)) << "the earlier one stays";
    EXPECT_EQ(retriever_.getAccountSettings(), accountEntries()) << "copies are independent";
}

TEST_F(AccountSettings, TheCallingThreadGoesOnWithItsEvents)
{
    int count = 0;
    QCoreApplication const application(count, nullptr);
    // Only an event of this thread lets the answer go.
    answerWith(steps[0].target, [] { return testkit::reply(200).afterRelease(); });
    QTimer::singleShot(0, [this] { server_.release(); });
    EXPECT_TRUE(retrieve());
    EXPECT_EQ(retriever_.getAccountSettings()[QStringLiteral("PartnerId")], QVariant(QString()));
}

} // namespace
