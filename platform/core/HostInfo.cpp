#include <platform/core/HostInfo.h>

#include <platform/core/HostEnvironment.h>

namespace HostInfo
{

QUrl getTessalyHostApiUrl()
{
    return core::hostEnvironment().apiUrl;
}

QUrl getVantorStatsURL()
{
    return core::hostEnvironment().statsUrl;
}

QString getKELOUsername()
{
    return core::hostEnvironment().username;
}

QString getKELOPassword()
{
    return core::hostEnvironment().password;
}

bool getHTTPProxyAutoDiscovery()
{
    return core::hostEnvironment().proxyAutoDiscovery;
}

} // namespace HostInfo

QString settings::registry::getInstallationReference(QString const& key)
{
    auto const lookUp = core::hostEnvironment().installationReference;
    return lookUp ? lookUp(key) : QString();
}

QVersionNumber CollaborationRequestVersion::getVersion()
{
    return core::hostEnvironment().collaborationRequestVersion;
}

namespace applicationParameterNames
{

QString const& getZelkoMiraUrl()
{
    static QString const name = QStringLiteral("ZelkoMiraUrl");
    return name;
}

QString const& getZelkoMiraSoftwarePageUrl()
{
    static QString const name = QStringLiteral("ZelkoMiraSoftwarePageUrl");
    return name;
}

QString const& getZelkoMiraSharedCasesPageUrlParameter()
{
    static QString const name = QStringLiteral("ZelkoMiraSharedCasesPageUrlParameter");
    return name;
}

QString const& getZelkoMiraPasswordPageUrl()
{
    static QString const name = QStringLiteral("ZelkoMiraPasswordPageUrl");
    return name;
}

QString const& getZelkoMiraConnectionPageUrl()
{
    static QString const name = QStringLiteral("ZelkoMiraConnectionPageUrl");
    return name;
}

QString const& getZelkoMiraAdditionalResourcesUrl()
{
    static QString const name = QStringLiteral("ZelkoMiraAdditionalResourcesUrl");
    return name;
}

QString const& getZelkoMiraDownloadImplantFilesPageUrl()
{
    static QString const name = QStringLiteral("ZelkoMiraDownloadImplantFilesPageUrl");
    return name;
}

QString const& getTrainingVideosUrl()
{
    static QString const name = QStringLiteral("TrainingVideosUrl");
    return name;
}

QString const& getZelkoMiraSubscriptionsPageUrl()
{
    static QString const name = QStringLiteral("ZelkoMiraSubscriptionsPageUrl");
    return name;
}

QString const& getZelkoMiraPartnerUrl()
{
    static QString const name = QStringLiteral("ZelkoMiraPartnerUrl");
    return name;
}

} // namespace applicationParameterNames
