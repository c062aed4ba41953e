#include <platform/core/HostInfo.h>

#include <QSettings>

namespace
{

/// The host's settings come from where its administrator put them, but for what the environment says.
QString setting(char const* variable, QString const& key)
{
    return qEnvironmentVariable(variable, QSettings().value(QStringLiteral("kelo/") + key).toString());
}

} // namespace

QUrl HostInfo::getTessalyHostApiUrl()
{
    return QUrl(setting("KELO_API_URL", QStringLiteral("apiUrl")));
}

QUrl HostInfo::getVantorStatsURL()
{
    return QUrl(setting("KELO_STATS_URL", QStringLiteral("statsUrl")));
}

QString HostInfo::getKELOUsername()
{
    return setting("KELO_USERNAME", QStringLiteral("username"));
}

QString HostInfo::getKELOPassword()
{
    return setting("KELO_PASSWORD", QStringLiteral("password"));
}

bool HostInfo::getHTTPProxyAutoDiscovery()
{
    return setting("KELO_PROXY_AUTO_DISCOVERY", QStringLiteral("proxyAutoDiscovery")) == QLatin1String("1");
}

QString settings::registry::getInstallationReference(QString const&)
{
    return setting("KELO_INSTALLATION", QStringLiteral("installation"));
}

QVersionNumber CollaborationRequestVersion::getVersion()
{
    return QVersionNumber(2, 0);
}

namespace applicationParameterNames
{

QString getZelkoMiraUrl()
{
    return QStringLiteral("portal/address");
}

QString getZelkoMiraSoftwarePageUrl()
{
    return QStringLiteral("portal/software");
}

QString getZelkoMiraSharedCasesPageUrlParameter()
{
    return QStringLiteral("portal/sharedCases");
}

QString getZelkoMiraPasswordPageUrl()
{
    return QStringLiteral("portal/password");
}

QString getZelkoMiraConnectionPageUrl()
{
    return QStringLiteral("portal/connections");
}

QString getZelkoMiraAdditionalResourcesUrl()
{
    return QStringLiteral("portal/resources");
}

QString getZelkoMiraDownloadImplantFilesPageUrl()
{
    return QStringLiteral("portal/implantFiles");
}

QString getTrainingVideosUrl()
{
    return QStringLiteral("portal/videos");
}

QString getZelkoMiraSubscriptionsPageUrl()
{
    return QStringLiteral("portal/subscriptions");
}

QString getZelkoMiraPartnerUrl()
{
    return QStringLiteral("portal/partner");
}

} // namespace applicationParameterNames
