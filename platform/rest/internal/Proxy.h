#pragma once

#include <QByteArray>
#include <QUrl>

namespace rest
{

/// The proxy of a request, in libcurl's words.
struct Proxy
{
    QByteArray address; ///< "http://host:port" or "socks5h://host:port"; empty: direct
    QByteArray username;
    QByteArray password;
};

/// The proxy for `url` that `http_proxy`, `https_proxy`, `all_proxy` and `no_proxy` name in the environment, or else
/// the system's. Loopback addresses are always reached directly. May block while the system looks for a proxy.
Proxy systemProxyFor(QUrl const& url);

} // namespace rest
