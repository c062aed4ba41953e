#include <platform/rest/Proxy.h>

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

QByteArray addressOf(QByteArray const& scheme, QString const& host, int port)
{
    QUrl address;
    address.setScheme(QString::fromLatin1(scheme));
    address.setHost(host);
    address.setPort(port);
    return address.toEncoded();
}

struct Variable
{
    QByteArray name;
    QString value;
};

/// The first of them that is not empty, its name in small letters or capitals.
Variable variable(std::initializer_list<QByteArray> names)
{
    for (QByteArray const& small : names)
    {
        for (QByteArray const& name : {small, small.toUpper()})
        {
            if (QString const value = qEnvironmentVariable(name.constData()); !value.isEmpty())
            {
                return {name, value};
            }
        }
    }
    return {};
}

/// Whether the entries of `no_proxy` name the host: itself, a domain above it, a network that its address is in, or
/// "*".
bool isExempt(QString const& host, QString const& exceptions)
{
    QStringList const entries = exceptions.split(u',');
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
    auto const [name, text] = variable({url.scheme().toLatin1() + "_proxy", "all_proxy"});
    QUrl const address(text.contains(QLatin1String("://")) ? text : QLatin1String("http://") + text);
    auto const kind = std::find_if(
        kinds.begin(), kinds.end(), [&address](Kind const& known) { return address.scheme() == known.written; });
    if (kind == kinds.end() || address.host().isEmpty())
    {
        return std::nullopt;
    }
    if (auto const exceptions = variable({"no_proxy"}); isExempt(url.host(), exceptions.value))
    {
        return Proxy{.decidedBy = exceptions.name};
    }
    return Proxy{
        addressOf(kind->meant, address.host(), address.port(kind->usualPort)),
        address.userName(QUrl::FullyDecoded).toUtf8(), address.password(QUrl::FullyDecoded).toUtf8(), name};
}

} // namespace

Proxy systemProxyFor(QUrl const& url)
{
    if (isLoopback(url.host()))
    {
        return {.decidedBy = "loopback"};
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
            return {
                addressOf(scheme, candidate.hostName(), candidate.port()), candidate.user().toUtf8(),
                candidate.password().toUtf8(), "system"};
        }
    }
    return {.decidedBy = "system"};
}

} // namespace rest
