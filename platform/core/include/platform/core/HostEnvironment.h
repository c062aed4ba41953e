#pragma once

#include <functional>

#include <QString>
#include <QUrl>
#include <QVersionNumber>

#include <platform/core/Export.h>

namespace core
{

/// What the host application knows and the library asks for at run time.
struct HostEnvironment
{
    QUrl apiUrl;                     ///< base URL of the KELO service
    QUrl statsUrl;                   ///< base URL of the statistics service
    QString username;                ///< service user name
    QString password;                ///< service password
    bool proxyAutoDiscovery = false; ///< whether the system's proxies are used
    /// The installation reference stored under a registry key; the library asks with an empty key.
    std::function<QString(QString const&)> installationReference;
    QVersionNumber collaborationRequestVersion; ///< version of the collaboration requests that the host understands
};

/// Replaces the process-wide environment; safe from any thread. Connections that exist keep what they were made with.
PLATFORM_CORE_EXPORT void setHostEnvironment(HostEnvironment environment);

/// A copy of the process-wide environment. Until it is set, it is read from `KELO_API_URL`, `KELO_STATS_URL`,
/// `KELO_USERNAME`, `KELO_PASSWORD`, `KELO_INSTALLATION`, `KELO_PROXY_AUTO_DISCOVERY` (1, true, yes or on) and
/// `KELO_COLLABORATION_VERSION`.
PLATFORM_CORE_EXPORT HostEnvironment hostEnvironment();

} // namespace core
