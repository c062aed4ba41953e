#pragma once

#include <QByteArray>
#include <QUrl>

#include <platform/rest/Export.h>

namespace rest
{

/// The proxy of a request, in libcurl's words.
struct Proxy
{
    QByteArray address = {}; ///< "http://host:port" or "socks5h://host:port"; empty: direct
    QByteArray username = {};
    QByteArray password = {};
    QByteArray decidedBy = {}; ///< the variable of the environment that says so; "loopback"; "system"
};

/// The proxy for `url` that a connection with auto-discovery uses: the one that `http_proxy`, `https_proxy`,
/// `all_proxy` and `no_proxy` name in the environment, or else the system's. Loopback addresses are always reached
/// directly. May block while the system looks for a proxy.
PLATFORM_REST_EXPORT Proxy systemProxyFor(QUrl const& url);

} // namespace rest
