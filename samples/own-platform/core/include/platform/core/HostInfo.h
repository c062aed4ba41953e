#pragma once

#include <QString>
#include <QUrl>
#include <QVersionNumber>

namespace core
{

/// True where this header is reached, and no other of its name.
inline constexpr bool isHostsOwn = true;

} // namespace core

namespace HostInfo
{

QUrl getTessalyHostApiUrl();
QUrl getVantorStatsURL();
QString getKELOUsername();
QString getKELOPassword();
bool getHTTPProxyAutoDiscovery();

} // namespace HostInfo

namespace settings::registry
{

QString getInstallationReference(QString const& key);

} // namespace settings::registry

namespace CollaborationRequestVersion
{

QVersionNumber getVersion();

} // namespace CollaborationRequestVersion

namespace applicationParameterNames
{

QString getZelkoMiraUrl();
QString getZelkoMiraSoftwarePageUrl();
QString getZelkoMiraSharedCasesPageUrlParameter();
QString getZelkoMiraPasswordPageUrl();
QString getZelkoMiraConnectionPageUrl();
QString getZelkoMiraAdditionalResourcesUrl();
QString getZelkoMiraDownloadImplantFilesPageUrl();
QString getTrainingVideosUrl();
QString getZelkoMiraSubscriptionsPageUrl();
QString getZelkoMiraPartnerUrl();

} // namespace applicationParameterNames
