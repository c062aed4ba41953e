#pragma once

#include <QString>
#include <QUrl>
#include <QVersionNumber>

#include <platform/core/Export.h>

/// Service addresses and credentials of the host, read from its environment at each call.
namespace HostInfo
{

PLATFORM_CORE_EXPORT QUrl getTessalyHostApiUrl();
PLATFORM_CORE_EXPORT QUrl getVantorStatsURL();
PLATFORM_CORE_EXPORT QString getKELOUsername();
PLATFORM_CORE_EXPORT QString getKELOPassword();
PLATFORM_CORE_EXPORT bool getHTTPProxyAutoDiscovery();

} // namespace HostInfo

namespace settings::registry
{

/// The installation reference stored under `key`; empty when the host has none.
PLATFORM_CORE_EXPORT QString getInstallationReference(QString const& key);

} // namespace settings::registry

namespace CollaborationRequestVersion
{

/// The version of the collaboration requests that the host understands.
PLATFORM_CORE_EXPORT QVersionNumber getVersion();

} // namespace CollaborationRequestVersion

/// The key names under which the host stores the portal's addresses; ten distinct, fixed texts.
namespace applicationParameterNames
{

PLATFORM_CORE_EXPORT QString const& getZelkoMiraUrl();
PLATFORM_CORE_EXPORT QString const& getZelkoMiraSoftwarePageUrl();
PLATFORM_CORE_EXPORT QString const& getZelkoMiraSharedCasesPageUrlParameter();
PLATFORM_CORE_EXPORT QString const& getZelkoMiraPasswordPageUrl();
PLATFORM_CORE_EXPORT QString const& getZelkoMiraConnectionPageUrl();
PLATFORM_CORE_EXPORT QString const& getZelkoMiraAdditionalResourcesUrl();
PLATFORM_CORE_EXPORT QString const& getZelkoMiraDownloadImplantFilesPageUrl();
PLATFORM_CORE_EXPORT QString const& getTrainingVideosUrl();
PLATFORM_CORE_EXPORT QString const& getZelkoMiraSubscriptionsPageUrl();
PLATFORM_CORE_EXPORT QString const& getZelkoMiraPartnerUrl();

} // namespace applicationParameterNames
