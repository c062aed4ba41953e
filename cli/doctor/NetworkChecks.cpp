#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>

#include <netdb.h>
#include <sys/socket.h>

#include <QJsonArray>

#include <platform/core/HostInfo.h>

#include "cli/doctor/Checks.h"

namespace cli
{

using namespace Qt::Literals::StringLiterals;

namespace
{

constexpr double slowLookUp = 1000; // milliseconds

struct LookUp
{
    int error = 0;
    QStringList addresses = {};
};

/// Asks the system; an address is its own.
LookUp lookUp(QByteArray const& host)
{
    addrinfo hints{};
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* list = nullptr;
    LookUp result{::getaddrinfo(host.constData(), nullptr, &hints, &list)};
    for (auto const* entry = list; entry != nullptr; entry = entry->ai_next)
    {
        std::array<char, NI_MAXHOST> text{};
        ::getnameinfo(
            entry->ai_addr, entry->ai_addrlen, text.data(), static_cast<socklen_t>(text.size()), nullptr, 0,
            NI_NUMERICHOST);
        result.addresses << QString::fromLatin1(text.data());
    }
    if (list != nullptr)
    {
        ::freeaddrinfo(list);
    }
    return result;
}

/// Without user name and password.
QString nameOf(rest::Proxy const& proxy)
{
    return QUrl::fromEncoded(proxy.address).toDisplayString(QUrl::RemoveUserInfo);
}

/// The host that this computer itself connects to, and its port.
QUrl nextHost(Way const& way)
{
    return way.proxy.address.isEmpty() ? way.url : QUrl::fromEncoded(way.proxy.address);
}

QString placeOf(Way const& way)
{
    QUrl const next = nextHost(way);
    int const port = next.port(next.scheme() == "https"_L1 ? 443 : 80);
    QString const what = way.proxy.address.isEmpty() ? next.host() : u"the proxy "_s + next.host();
    return u"%1, port %2"_s.arg(what).arg(port);
}

/// What the proxy said, and what to do about it.
Finding refusedByProxy(Way const& way, Probe const& attempt)
{
    QString const start = u"the proxy %1 makes no connection to %2: "_s.arg(nameOf(way.proxy), way.url.host());
    // Some proxies say 401 of a wrong password.
    bool const asks = attempt.proxyStatus == 407 || attempt.proxyStatus == 401 || attempt.proxyError == CURLPX_NO_AUTH;
    if (asks || attempt.proxyError == CURLPX_USER_REJECTED)
    {
        bool const isNamed = !way.proxy.username.isEmpty();
        return Finding::failed(
            start
                + (isNamed ? u"it does not accept its user name or password"_s
                           : u"it asks for a user name and a password"_s),
            u"Ask the office's IT for the proxy's user name and password; %1 takes them as %2://USER:PASSWORD@HOST:PORT."_s
                .arg(
                    QString::fromLatin1(way.proxy.decidedBy),
                    way.proxy.address.startsWith("http:") ? u"http"_s : u"socks5"_s));
    }
    QString const reason = attempt.proxyStatus != 0 ? u"HTTP status %1"_s.arg(attempt.proxyStatus)
                           : attempt.proxyError == CURLPX_REPLY_NOT_ALLOWED ? u"it does not allow that"_s
                                                                            : QString::fromUtf8(attempt.text);
    return Finding::failed(
        start + reason,
        u"Ask the office's IT to let the proxy through to %1, port %2."_s.arg(way.url.host()).arg(way.url.port(443)));
}

Finding notReached(Way const& way, Probe const& attempt)
{
    bool const isSilent = attempt.result == CURLE_OPERATION_TIMEDOUT;
    auto const error = static_cast<int>(attempt.systemError);
    QString const reason = isSilent     ? u"no answer in time"_s
                           : error != 0 ? QString::fromLocal8Bit(std::strerror(error))
                                        : QString::fromUtf8(attempt.text);
    QString const found = u"no connection to %1: %2"_s.arg(placeOf(way), reason);
    bool const isDirect = way.proxy.address.isEmpty();
    if (!isSilent && (error == ENETUNREACH || error == ENETDOWN))
    {
        return Finding::failed(found, u"This computer has no network: check cable, Wi-Fi and VPN."_s);
    }
    QString const cause = isSilent ? u"A firewall may swallow the attempt, or the server is down"_s
                                   : u"Nothing listens there, or a firewall refuses"_s;
    QString const advice =
        isDirect
            ? u"%1: check the address and its port; ask the office's IT whether computers may connect to %2, or must "
              "use a proxy (KELO_PROXY_AUTO_DISCOVERY=1)."_s
            : u"%1: ask the office's IT whether %2 is still right; it comes from "_s
                  + QString::fromLatin1(way.proxy.decidedBy) + u'.';
    return Finding::failed(found, advice.arg(cause, placeOf(way)));
}

} // namespace

Finding checkProxy(Examination& examination)
{
    auto const url = examination.way.url;
    bool const isWanted = HostInfo::getHTTPProxyAutoDiscovery();
    auto const proxy = within(examination.patience.limit(), [url] { return rest::systemProxyFor(url); });
    if (!proxy && !isWanted)
    {
        return Finding::ok(u"none, for KELO_PROXY_AUTO_DISCOVERY is not 1"_s, {{u"Used"_s, false}});
    }
    if (!proxy)
    {
        return Finding::failed(
            u"the system does not say which proxy it uses"_s,
            u"Check the system's network settings: a proxy is looked for automatically and not found."_s);
    }
    QString const decidedBy = QString::fromLatin1(proxy->decidedBy);
    QJsonObject details{{u"Used"_s, false}, {u"AutoDiscovery"_s, isWanted}, {u"DecidedBy"_s, decidedBy}};
    if (proxy->address.isEmpty())
    {
        QString const reason = proxy->decidedBy == "loopback" ? u"the address is this computer's own"_s
                               : proxy->decidedBy == "system" ? u"neither environment nor system name one"_s
                                                              : decidedBy + u" exempts the address"_s;
        return Finding::ok(u"none: "_s + reason, details);
    }
    details.insert(u"Address"_s, nameOf(*proxy));
    if (!isWanted)
    {
        return Finding::ok(
            u"none, for KELO_PROXY_AUTO_DISCOVERY is not 1; else it would be %1 (%2)"_s.arg(nameOf(*proxy), decidedBy),
            details);
    }
    examination.way.proxy = *proxy;
    details.insert(u"Used"_s, true);
    return Finding::ok(
        u"%1 (%2), %3 user name"_s.arg(
            nameOf(*proxy), decidedBy, proxy->username.isEmpty() ? u"without"_s : u"with a"_s),
        details);
}

Finding checkName(Examination& examination)
{
    auto const& way = examination.way;
    QString const name = nextHost(way).host();
    auto const host = nextHost(way).host(QUrl::FullyEncoded).toLatin1();
    auto const start = Patience::Clock::now();
    auto const answer = within(examination.patience.limit(), [host] { return lookUp(host); });
    std::chrono::duration<double, std::milli> const duration = Patience::Clock::now() - start;
    if (!answer || answer->error != 0)
    {
        QString const reason = answer ? QString::fromLocal8Bit(::gai_strerror(answer->error)) : u"no answer in time"_s;
        bool const isUnknown = answer && answer->error != EAI_AGAIN;
        return Finding::failed(
            u"%1 could not be found: %2"_s.arg(name, reason),
            isUnknown
                ? u"Check how the name is spelt; if it is right, check this computer's network, VPN and name server "
                  "(DNS)."_s
                : u"The name server (DNS) does not answer: check this computer's network and VPN."_s);
    }
    QStringList addresses = answer->addresses;
    addresses.removeDuplicates();
    QString const behind =
        way.proxy.address.isEmpty() ? QString() : u"; the proxy itself looks up %1"_s.arg(way.url.host());
    QString const found = addresses == QStringList{name}
                              ? name + u" is an address itself"_s + behind
                              : u"%1 is %2, found in %3 ms%4"_s.arg(name, addresses.join(", "_L1))
                                    .arg(duration.count(), 0, 'f', 1)
                                    .arg(behind);
    QJsonObject const details{
        {u"Name"_s, name},
        {u"Addresses"_s, QJsonArray::fromStringList(addresses)},
        {u"Milliseconds"_s, duration.count()}};
    return duration.count() <= slowLookUp
               ? Finding::ok(found, details)
               : Finding::warning(found, u"The name server (DNS) is slow: tell the office's IT."_s, details);
}

Finding checkConnection(Examination& examination)
{
    auto const& way = examination.way;
    auto const attempt = probe(way, examination.patience.limit());
    if (attempt.result == CURLE_OK)
    {
        return Finding::ok(
            u"%1 (%2) in %3 ms"_s.arg(placeOf(way), attempt.address).arg(attempt.milliseconds, 0, 'f', 1),
            {{u"Address"_s, attempt.address}, {u"Milliseconds"_s, attempt.milliseconds}});
    }
    bool const isUnreached = attempt.result == CURLE_COULDNT_CONNECT || attempt.result == CURLE_OPERATION_TIMEDOUT;
    return way.proxy.address.isEmpty() || isUnreached ? notReached(way, attempt) : refusedByProxy(way, attempt);
}

} // namespace cli
