#pragma once

#include <utility>

#include <QString>

#include <KeloCommunicationLib/Export.h>

/// The signed-in account and its site. Reply of GET Installations/{id}/accountInfo.
class KELO_EXPORT AccountLicenseInfo
{
public:
    QString const& getAccountId() const { return accountId_; }

    void setAccountId(QString const& accountId) { accountId_ = accountId; }

    QString const& getAccountName() const { return accountName_; }

    void setAccountName(QString const& accountName) { accountName_ = accountName; }

    QString const& getEmail() const { return email_; }

    void setEmail(QString const& email) { email_ = email; }

    /// The site's token; it is what the host knows as the partner id.
    QString const& getToken() const { return token_; }

    void setToken(QString const& token) { token_ = token; }

    QString const& getSiteId() const { return siteId_; }

    void setSiteId(QString const& siteId) { siteId_ = siteId; }

    QString const& getZelkoCoreUrlApi() const { return zelkoCoreUrlApi_; }

    void setZelkoCoreUrlApi(QString const& url) { zelkoCoreUrlApi_ = url; }

    QString const& getZelkoCoreUrlScanCenter() const { return zelkoCoreUrlScanCenter_; }

    void setZelkoCoreUrlScanCenter(QString const& url) { zelkoCoreUrlScanCenter_ = url; }

    bool isTwoFactorEnabled() const { return twoFactorEnabled_; }

    void setTwoFactorEnabled(bool enabled) { twoFactorEnabled_ = enabled; }

    /// In the service's unit.
    int getTwoFactorRefreshTime() const { return twoFactorRefreshTime_; }

    void setTwoFactorRefreshTime(int time) { twoFactorRefreshTime_ = time; }

private:
    QString accountId_;
    QString accountName_;
    QString email_;
    QString token_;
    QString siteId_;
    QString zelkoCoreUrlApi_;
    QString zelkoCoreUrlScanCenter_;
    bool twoFactorEnabled_ = false;
    int twoFactorRefreshTime_ = 0;
};

/// The addresses that the service hands out to an installation. Reply of GET Installations/{id}/settings.
class KELO_EXPORT SettingsLicenseInfo
{
public:
    /// Where usage statistics go according to the service; the upload of this library goes to the host's address.
    QString const& getVantorStatsUrl() const { return vantorStatsUrl_; }

    void setVantorStatsUrl(QString url) { vantorStatsUrl_ = std::move(url); }

    QString const& getContactUrl() const { return contactUrl_; }

    void setContactUrl(QString url) { contactUrl_ = std::move(url); }

    QString const& getHelpUrl() const { return helpUrl_; }

    void setHelpUrl(QString url) { helpUrl_ = std::move(url); }

    /// The instructions for use on the web.
    QString const& getIfuUrl() const { return ifuUrl_; }

    void setIfuUrl(QString url) { ifuUrl_ = std::move(url); }

    /// The web portal.
    QString const& getZelkoMiraUrl() const { return zelkoMiraUrl_; }

    void setZelkoMiraUrl(QString url) { zelkoMiraUrl_ = std::move(url); }

    QString const& getZelkoMiraSharedCasesPageUrl() const { return zelkoMiraSharedCasesPageUrl_; }

    void setZelkoMiraSharedCasesPageUrl(QString url) { zelkoMiraSharedCasesPageUrl_ = std::move(url); }

    QString const& getZelkoMiraSoftwarePageUrl() const { return zelkoMiraSoftwarePageUrl_; }

    void setZelkoMiraSoftwarePageUrl(QString url) { zelkoMiraSoftwarePageUrl_ = std::move(url); }

    QString const& getZelkoMiraPasswordPageUrl() const { return zelkoMiraPasswordPageUrl_; }

    void setZelkoMiraPasswordPageUrl(QString url) { zelkoMiraPasswordPageUrl_ = std::move(url); }

    QString const& getZelkoMiraConnectionPageUrl() const { return zelkoMiraConnectionPageUrl_; }

    void setZelkoMiraConnectionPageUrl(QString url) { zelkoMiraConnectionPageUrl_ = std::move(url); }

    QString const& getZelkoMiraAdditionalResourcesUrl() const { return zelkoMiraAdditionalResourcesUrl_; }

    void setZelkoMiraAdditionalResourcesUrl(QString url) { zelkoMiraAdditionalResourcesUrl_ = std::move(url); }

    QString const& getZelkoMiraDownloadImplantFilesPageUrl() const { return zelkoMiraDownloadImplantFilesPageUrl_; }

    void setZelkoMiraDownloadImplantFilesPageUrl(QString url)
    {
        zelkoMiraDownloadImplantFilesPageUrl_ = std::move(url);
    }

    QString const& getTrainingVideosUrl() const { return trainingVideosUrl_; }

    void setTrainingVideosUrl(QString url) { trainingVideosUrl_ = std::move(url); }

    QString const& getZelkoMiraSubscriptionsPageUrl() const { return zelkoMiraSubscriptionsPageUrl_; }

    void setZelkoMiraSubscriptionsPageUrl(QString const& url) { zelkoMiraSubscriptionsPageUrl_ = url; }

    QString const& getPartnerUrl() const { return partnerUrl_; }

    void setPartnerUrl(QString const& url) { partnerUrl_ = url; }

private:
    QString vantorStatsUrl_;
    QString contactUrl_;
    QString helpUrl_;
    QString ifuUrl_;
    QString zelkoMiraUrl_;
    QString zelkoMiraSharedCasesPageUrl_;
    QString zelkoMiraSoftwarePageUrl_;
    QString zelkoMiraPasswordPageUrl_;
    QString zelkoMiraConnectionPageUrl_;
    QString zelkoMiraAdditionalResourcesUrl_;
    QString zelkoMiraDownloadImplantFilesPageUrl_;
    QString trainingVideosUrl_;
    QString zelkoMiraSubscriptionsPageUrl_;
    QString partnerUrl_;
};
