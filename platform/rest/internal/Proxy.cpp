#include <platform/rest/internal/Proxy.h>

#include <algorithm>

#include <QHostAddress>
#include <QNetworkProxy>

namespace rest
{

namespace
{

bool isLoopback(QString const& host)
{
    return host == QLatin1String("localhost") || host.endsWith(QLatin1String(".localhost"))
           || QHostAddress(host).isLoopback();
}

QByteArray schemeOf(QNetworkProxy const& proxy)
{
    switch (proxy.type())
    {
    case QNetworkProxy::HttpProxy:
    case QNetworkProxy::HttpCachingProxy:
        return "http";
    case QNetworkProxy::Socks5Proxy:
        return "socks5h";
    default:
        return {};
    }
}

} // namespace

Proxy systemProxyFor(QUrl const& url)
{
    if (isLoopback(url.host()))
    {
        return {};
    }
    auto const candidates = QNetworkProxyFactory::systemProxyForQuery(QNetworkProxyQuery(url));
    // The first one counts, as the system prefers it; a kind that cannot carry HTTP is passed over.
    for (QNetworkProxy const& candidate : candidates)
    {
        if (candidate.type() == QNetworkProxy::NoProxy)
        {
            break;
        }
        if (QByteArray const scheme = schemeOf(candidate); !scheme.isEmpty() && !candidate.hostName().isEmpty())
        {
            QUrl address;
            address.setScheme(QString::fromLatin1(scheme));
            address.setHost(candidate.hostName());
            address.setPort(candidate.port());
            return {address.toEncoded(), candidate.user().toUtf8(), candidate.password().toUtf8()};
        }
    }
    return {};
}

} // namespace rest
