#include <platform/rest/internal/Proxy.h>

#include <algorithm>
#include <array>
#include <optional>

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

Proxy proxyAt(QByteArray const& scheme, QString const& host, int port, QString const& user, QString const& password)
{
    QUrl address;
    address.setScheme(QString::fromLatin1(scheme));
    address.setHost(host);
    address.setPort(port);
    return {address.toEncoded(), user.toUtf8(), password.toUtf8()};
}

QString variable(QString const& name)
{
    QString const value = qEnvironmentVariable(name.toLatin1().constData());
    return value.isEmpty() ? qEnvironmentVariable(name.toUpper().toLatin1().constData()) : value;
}

/// Whether `no_proxy` names the host: itself, a domain above it, a network that its address is in, or "*".
bool isExempt(QString const& host)
{
    QStringList const entries = variable(QStringLiteral("no_proxy")).split(u',');
    for (QString const& text : entries)
    {
        QString const entry = text.trimmed();
        QString const domain = entry.startsWith(u'.') ? entry : u'.' + entry;
        bool const isNetwork = entry.contains(u'/') && QHostAddress(host).isInSubnet(QHostAddress::parseSubnet(entry));
        if (entry == u'*' || isNetwork
            || (!entry.isEmpty() && QString(u'.' + host).endsWith(domain, Qt::CaseInsensitive)))
        {
            return true;
        }
    }
    return false;
}

/// What the usual variables of the environment say; nothing, if they say nothing that can be understood. The system's
/// look-up does not know all forms of them.
std::optional<Proxy> proxyOfEnvironment(QUrl const& url)
{
    struct Kind
    {
        QLatin1String written = QLatin1String("");
        char const* meant = nullptr;
        int usualPort = 0;
    };
    static constexpr std::array<Kind, 4> kinds = {{
        {QLatin1String("http"), "http", 80},
        {QLatin1String("socks5"), "socks5h", 1080},
        {QLatin1String("socks5h"), "socks5h", 1080},
        {QLatin1String("socks"), "socks5h", 1080},
    }};
    QString text = variable(url.scheme() + QLatin1String("_proxy"));
    if (text.isEmpty())
    {
        text = variable(QStringLiteral("all_proxy"));
    }
    QUrl const address(text.contains(QLatin1String("://")) ? text : QLatin1String("http://") + text);
    auto const kind = std::find_if(
        kinds.begin(), kinds.end(), [&address](Kind const& known) { return address.scheme() == known.written; });
    if (kind == kinds.end() || address.host().isEmpty())
    {
        return std::nullopt;
    }
    if (isExempt(url.host()))
    {
        return Proxy();
    }
    return proxyAt(
        kind->meant, address.host(), address.port(kind->usualPort), address.userName(QUrl::FullyDecoded),
        address.password(QUrl::FullyDecoded));
}

} // namespace

Proxy systemProxyFor(QUrl const& url)
{
    if (isLoopback(url.host()))
    {
        return {};
    }
    if (auto const proxy = proxyOfEnvironment(url))
    {
        return *proxy;
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
            return proxyAt(scheme, candidate.hostName(), candidate.port(), candidate.user(), candidate.password());
        }
    }
    return {};
}

} // namespace rest
