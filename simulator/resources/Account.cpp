#include "simulator/resources/Account.h"

#include "simulator/Lookup.h"
#include "simulator/Routing.h"
#include "simulator/State.h"

namespace simulator
{

namespace
{

constexpr auto softwarePage = "SoftwarePageUrl";

Answer accountInfo(Call const& call)
{
    auto const& row = ofInstallation(call.state.accounts.accounts, knownInstallation(call.state, call.id()));
    QJsonObject const account = {{"AccountId", row.accountId}, {"AccountName", row.accountName}};
    QJsonObject const site = {
        {"Email", row.email},
        {"Token", row.token},
        {"Id", row.siteId},
        {"ZelkoCoreUrlApi", "https://core.kelo.example/api"},
        {"ZelkoCoreUrlScanCenter", "https://core.kelo.example/scan-center"},
        {"TwoFactorEnabled", row.twoFactorEnabled},
        {"TwoFactorRefreshTime", row.twoFactorRefreshTime}};
    return Answer::json(QJsonObject{{"Account", account}, {"Site", site}});
}

Answer settings(Call const& call)
{
    knownInstallation(call.state, call.id());
    QJsonObject json;
    auto const& addresses = call.state.accounts.addresses;
    for (auto const& key : addresses.keys())
    {
        json.insert(key, addresses[key]);
    }
    return Answer::json(json);
}

Answer publicSettings(Call const& call)
{
    return Answer::json(QJsonObject{{softwarePage, call.state.accounts.addresses.value(softwarePage)}});
}

} // namespace

std::vector<Route> accountRoutes()
{
    return {
        {"getAccountLicenseInfo", "GET", "/Installations/{}/accountInfo?api-version=1.0", {}, accountInfo},
        {"getSettingsLicenseInfo", "GET", "/Installations/{}/settings?api-version=1.0", {}, settings},
        {"getSoftwarePageUrl", "GET", "/Settings", {}, publicSettings},
    };
}

void seedAccounts(State& state)
{
    state.accounts.accounts = {
        {"INST-1001", "0000710034", "Harbour Street Dental Practice", "office@harbour-street.example",
         "b7d2f0c4-6a1e-4a55-9a0c-52f1c8e0d913", "SITE-3301", true, 30},
        {"INST-2002", "0000710077", "Dr. Lindqvist Dental Surgery", "praxis@lindqvist.example",
         "41e98c1b-0f0d-4d6f-8a3e-7b9c6d2a5f10", "SITE-3358", false, 0},
    };
    state.accounts.addresses = {
        {"StatsUploadUrl", "https://stats.kelo.example/upload"},
        {"ContactUrl", "https://www.kelo.example/contact"},
        {"HelpUrl", "https://www.kelo.example/help"},
        {"IFUUrl", "https://ifu.kelo.example"},
        {"ZelkoMiraUrl", "https://portal.kelo.example"},
        {"SharedCasesUrl", "https://portal.kelo.example/shared-cases"},
        {softwarePage, "https://portal.kelo.example/software"},
        {"ForgotPasswordPageUrl", "https://portal.kelo.example/forgot-password"},
        {"FindAccountPageUrl", "https://portal.kelo.example/find-account"},
        {"AdditionalResourcesUrl", "https://portal.kelo.example/resources"},
        {"DownloadImplantFilesUrl", "https://portal.kelo.example/implant-files"},
        {"TrainingVideosUrl", "https://www.kelo.example/training"},
        {"SubscriptionsUrl", "https://portal.kelo.example/subscriptions"},
        {"RedirectToPartnerUrl", "https://partners.kelo.example/redirect"},
    };
}

} // namespace simulator
