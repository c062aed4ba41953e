#include <KeloCommunicationLib/account/AccountSettingsRetriever.h>

#include <utility>

#include <QDebug>
#include <QLatin1String>

#include <KeloCommunicationLib/connection/KeloErrors.h>
#include <KeloCommunicationLib/connection/internal/EventLoopWait.h>
#include <KeloCommunicationLib/connection/internal/PlatformExtras.h>
#include <platform/core/HostInfo.h>
#include <platform/utility/Optional.h>

/// What is logged when a step does not succeed.
struct AccountSettingsRetriever::FailureTexts
{
    char const* unreachable;
    char const* failed;
};

/// The value of one step, or nothing, which has then been logged.
template <class T>
utility::Optional<T> AccountSettingsRetriever::resultOf(
    threading::Future<rest::RestReply<T>> future, FailureTexts const& texts)
{
    KeloCommunicationLib::internal::waitWithEventLoop(future);
    lastStatus_ = rest::RestReplyStatus();
    if (future.isCanceled())
    {
        lastStatus_.kind = 1;
        lastStatus_.message = QStringLiteral("The call was cancelled.");
        qWarning() << "AccountSettingsRetriever::retrieveAccountSettings" << texts.unreachable;
        return std::nullopt;
    }
    rest::RestReply<T> reply = KeloCommunicationLib::internal::taken(std::move(future));
    lastStatus_ = reply.status;
    if (reply.status.kind != 0)
    {
        qWarning().noquote() << QLatin1String(texts.failed) + kelo::errorMessage(reply.status);
        return std::nullopt;
    }
    return std::move(reply.value);
}

AccountSettingsRetriever::AccountSettingsRetriever() = default;
AccountSettingsRetriever::AccountSettingsRetriever(AccountSettingsRetriever const& other) = default;
AccountSettingsRetriever& AccountSettingsRetriever::operator=(AccountSettingsRetriever const& other) = default;
AccountSettingsRetriever::~AccountSettingsRetriever() = default;

bool AccountSettingsRetriever::retrieveAccountSettings(TessalyConnectionInterface& connection)
{
    QString const reference = settings::registry::getInstallationReference(QString());

    auto const account = resultOf(
        connection.getAccountLicenseInfo(reference),
        {"Failed to get account info. KELO was unreachable", "Failed to get account info: "});
    if (!account)
    {
        return false;
    }
    accountSettings_.clear();
    insertAccount(*account);

    auto const settings = resultOf(
        connection.getSettingsLicenseInfo(reference),
        {"Failed to get settings info. KELO was unreachable.", "Failed to get settings info: "});
    if (!settings)
    {
        return false;
    }
    insertSettings(*settings);

    return retrieveDocuments(connection, reference);
}

bool AccountSettingsRetriever::retrieveDocuments(TessalyConnectionInterface& connection, QString const& reference)
{
    if (!skipIfuFileReference_)
    {
        auto const ifu = resultOf(
            connection.getIfuFileReference(reference),
            {"Failed to get IFU info. KELO was unreachable.", "Failed to get ifu info: "});
        if (!ifu)
        {
            return false;
        }
        updateReferences_.insert(QStringLiteral("KeloIFUFileReference"), ifu->getFileId());
    }

    auto const translation = resultOf(
        connection.getUITranslationFileReference(reference),
        {"Failed to get ui translation info. KELO was unreachable.", "Failed to get ui translation info: "});
    if (!translation)
    {
        return false;
    }
    updateReferences_.insert(QStringLiteral("KeloUiTranslationFileReference"), translation->getFileId());

    auto const helpFiles = resultOf(
        connection.getHelpFilesInfo(reference),
        {"Failed to get help files. KELO was unreachable.", "Failed to get help files: "});
    if (!helpFiles)
    {
        return false;
    }
    insertHelpFiles(*helpFiles);
    return true;
}

rest::RestReplyStatus AccountSettingsRetriever::lastStatus() const
{
    return lastStatus_;
}

QHash<QString, QVariant> AccountSettingsRetriever::getAccountSettings() const
{
    return accountSettings_;
}

QHash<QString, QVariant> AccountSettingsRetriever::getUpdateReferences() const
{
    return updateReferences_;
}

void AccountSettingsRetriever::skipIFUFileReference(bool skip)
{
    skipIfuFileReference_ = skip;
}

void AccountSettingsRetriever::insertAccount(AccountLicenseInfo const& account)
{
    accountSettings_.insert(QStringLiteral("SAPId"), account.getAccountId());
    accountSettings_.insert(QStringLiteral("UserName"), account.getAccountName());
    // The host's partner id is the site's token.
    accountSettings_.insert(QStringLiteral("PartnerId"), account.getToken());
    accountSettings_.insert(QStringLiteral("SiteId"), account.getSiteId());
    accountSettings_.insert(QStringLiteral("ZelkoCoreUrlApi"), account.getZelkoCoreUrlApi());
    accountSettings_.insert(QStringLiteral("ZelkoCoreUrlScanCenter"), account.getZelkoCoreUrlScanCenter());
    accountSettings_.insert(QStringLiteral("TwoFactorEnabled"), account.isTwoFactorEnabled());
    accountSettings_.insert(QStringLiteral("TwoFactorRefreshTime"), account.getTwoFactorRefreshTime());
}

void AccountSettingsRetriever::insertSettings(SettingsLicenseInfo const& settings)
{
    namespace names = applicationParameterNames;
    accountSettings_.insert(QStringLiteral("VantorStatsUrl"), settings.getVantorStatsUrl());
    accountSettings_.insert(QStringLiteral("VantorContactUrl"), settings.getContactUrl());
    accountSettings_.insert(QStringLiteral("VantorHelpUrl"), settings.getHelpUrl());
    accountSettings_.insert(QStringLiteral("VantorOnlineIfuUrl"), settings.getIfuUrl());
    accountSettings_.insert(names::getZelkoMiraUrl(), settings.getZelkoMiraUrl());
    accountSettings_.insert(names::getZelkoMiraSoftwarePageUrl(), settings.getZelkoMiraSoftwarePageUrl());
    accountSettings_.insert(
        names::getZelkoMiraSharedCasesPageUrlParameter(), settings.getZelkoMiraSharedCasesPageUrl());
    accountSettings_.insert(names::getZelkoMiraPasswordPageUrl(), settings.getZelkoMiraPasswordPageUrl());
    accountSettings_.insert(names::getZelkoMiraConnectionPageUrl(), settings.getZelkoMiraConnectionPageUrl());
    accountSettings_.insert(names::getZelkoMiraAdditionalResourcesUrl(), settings.getZelkoMiraAdditionalResourcesUrl());
    accountSettings_.insert(
        names::getZelkoMiraDownloadImplantFilesPageUrl(), settings.getZelkoMiraDownloadImplantFilesPageUrl());
    accountSettings_.insert(names::getTrainingVideosUrl(), settings.getTrainingVideosUrl());
    accountSettings_.insert(names::getZelkoMiraSubscriptionsPageUrl(), settings.getZelkoMiraSubscriptionsPageUrl());
    accountSettings_.insert(names::getZelkoMiraPartnerUrl(), settings.getPartnerUrl());
}

void AccountSettingsRetriever::insertHelpFiles(std::vector<HelpFileInfo> const& files)
{
    accountSettings_.insert(
        QStringLiteral("NumberOfAvailableHelpFileTranslations"), static_cast<qulonglong>(files.size()));
    for (std::size_t index = 0; index < files.size(); ++index)
    {
        QString const prefix = QStringLiteral("LatestLanguage") + QString::number(index);
        accountSettings_.insert(prefix + QStringLiteral("LanguageCode"), files[index].getLanguageCode());
        accountSettings_.insert(prefix + QStringLiteral("DisplayName"), files[index].getDisplayName());
        accountSettings_.insert(prefix + QStringLiteral("Reference"), files[index].getFileRef());
    }
}
