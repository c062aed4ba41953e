#include <platform/rest/internal/FailedExchange.h>

#include <array>
#include <cstring>

#include <QUrl>

#include <openssl/x509_vfy.h>

namespace rest
{

namespace
{

QString hostOf(QByteArray const& url)
{
    return QUrl::fromEncoded(url).host();
}

QString proxyName(Proxy const& proxy)
{
    return QUrl::fromEncoded(proxy.address).authority();
}

long info(FailedExchange const& exchange, CURLINFO which)
{
    long value = 0;
    curl_easy_getinfo(exchange.handle, which, &value);
    return value;
}

QString systemText(long error)
{
    return QString::fromLocal8Bit(std::strerror(static_cast<int>(error)));
}

/// What the system said of the socket, if that ended the exchange: libcurl keeps the number of an earlier error, too.
QString socketDetail(FailedExchange const& exchange)
{
    long const error = info(exchange, CURLINFO_OS_ERRNO);
    return error != 0 && exchange.text.contains(std::strerror(static_cast<int>(error))) ? systemText(error) : QString();
}

/// What one side said of the other's TLS, which stands behind the number and the library in libcurl's words.
QString tlsDetail(FailedExchange const& exchange)
{
    static QByteArray const mark = "SSL routines::";
    qsizetype const start = exchange.text.indexOf(mark);
    if (start < 0)
    {
        return socketDetail(exchange);
    }
    QByteArray const reason = exchange.text.mid(start + mark.size()).split(',').front();
    if (reason == "wrong version number")
    {
        return QStringLiteral("it does not speak TLS at this port");
    }
    return reason.startsWith("unexpected eof") ? QString() : QString::fromUtf8(reason);
}

struct Reason
{
    long number;
    char const* text;
};

constexpr char const* unknownIssuer = "it comes from an authority that this system does not know";

// libcurl leaves "unspecified" where the certificate is in order and its names are not.
constexpr std::array<Reason, 8> certificateReasons = {{
    {X509_V_ERR_UNSPECIFIED, "it is made out to another name"},
    {X509_V_ERR_CERT_HAS_EXPIRED, "it has expired"},
    {X509_V_ERR_CERT_NOT_YET_VALID, "it is not yet valid; the clock of this computer may be wrong"},
    {X509_V_ERR_DEPTH_ZERO_SELF_SIGNED_CERT, "it is self-signed"},
    {X509_V_ERR_SELF_SIGNED_CERT_IN_CHAIN, unknownIssuer},
    {X509_V_ERR_UNABLE_TO_GET_ISSUER_CERT_LOCALLY, unknownIssuer},
    {X509_V_ERR_UNABLE_TO_GET_ISSUER_CERT, unknownIssuer},
    {X509_V_ERR_UNABLE_TO_VERIFY_LEAF_SIGNATURE, unknownIssuer},
}};

constexpr std::array<Reason, 9> proxyReasons = {{
    {CURLPX_NO_AUTH, "it asks for a user name and a password"},
    {CURLPX_USER_REJECTED, "it does not accept the user name or the password"},
    {CURLPX_REPLY_NOT_ALLOWED, "it does not allow that"},
    {CURLPX_REPLY_CONNECTION_REFUSED, "Connection refused"},
    {CURLPX_REPLY_HOST_UNREACHABLE, "the host cannot be reached from there"},
    {CURLPX_REPLY_NETWORK_UNREACHABLE, "the network cannot be reached from there"},
    {CURLPX_REPLY_TTL_EXPIRED, "the host cannot be reached from there"},
    {CURLPX_BAD_VERSION, "it does not speak SOCKS5"},
    {CURLPX_CLOSED, "it has closed the connection"},
}};

template <std::size_t count>
char const* find(std::array<Reason, count> const& reasons, long number)
{
    for (Reason const& reason : reasons)
    {
        if (reason.number == number)
        {
            return reason.text;
        }
    }
    return nullptr;
}

QString certificateDetail(FailedExchange const& exchange)
{
    // libcurl's words are lost when its alert meets a socket that the server has closed; the number is not.
    long const number = info(exchange, CURLINFO_SSL_VERIFYRESULT);
    char const* const text = find(certificateReasons, number);
    return QString::fromUtf8(text != nullptr ? text : X509_verify_cert_error_string(number));
}

QString proxyDetail(FailedExchange const& exchange)
{
    long status = info(exchange, CURLINFO_HTTP_CONNECTCODE);
    if (status == 0)
    {
        status = info(exchange, CURLINFO_RESPONSE_CODE);
    }
    // Some proxies say 401 of a wrong password.
    if (status == 407 || status == 401)
    {
        bool const isNamed = !exchange.proxy.username.isEmpty();
        return QString::fromUtf8(find(proxyReasons, isNamed ? CURLPX_USER_REJECTED : CURLPX_NO_AUTH));
    }
    if (status != 0)
    {
        return QStringLiteral("HTTP status %1").arg(status);
    }
    char const* const text = find(proxyReasons, info(exchange, CURLINFO_PROXY_ERROR));
    return text != nullptr ? QString::fromUtf8(text) : socketDetail(exchange);
}

QString withDetail(QString const& sentence, QString const& detail)
{
    return detail.isEmpty() ? sentence + u'.' : QStringLiteral("%1 (%2).").arg(sentence, detail);
}

QString proxyText(FailedExchange const& exchange, QString const& host)
{
    return withDetail(
        QStringLiteral("The proxy %1 made no connection to %2").arg(proxyName(exchange.proxy), host),
        proxyDetail(exchange));
}

QString connectText(FailedExchange const& exchange, QString const& host)
{
    QString const to =
        exchange.proxy.address.isEmpty()
            ? QStringLiteral("No connection to %1 could be made").arg(host)
            : QStringLiteral("No connection to the proxy %1 could be made").arg(proxyName(exchange.proxy));
    long const error = info(exchange, CURLINFO_OS_ERRNO);
    return withDetail(to, error != 0 ? systemText(error) : QString());
}

bool isRefusedByProxy(FailedExchange const& exchange)
{
    long const status = info(exchange, CURLINFO_HTTP_CONNECTCODE);
    return status != 0 && status / 100 != 2;
}

} // namespace

QString FailedExchange::description() const
{
    QString const host = hostOf(request.origin);
    if (result == CURLE_PROXY || isRefusedByProxy(*this))
    {
        return proxyText(*this, host);
    }
    switch (result)
    {
    case CURLE_COULDNT_RESOLVE_HOST:
        return QStringLiteral("The name of the host %1 could not be resolved.").arg(host);
    case CURLE_COULDNT_RESOLVE_PROXY:
        return QStringLiteral("The name of the proxy %1 could not be resolved.").arg(hostOf(proxy.address));
    case CURLE_COULDNT_CONNECT:
    case CURLE_OPERATION_TIMEDOUT: // the system's patience; this library's own time-outs end exchanges otherwise
        return connectText(*this, host);
    case CURLE_PEER_FAILED_VERIFICATION:
        return QStringLiteral("The certificate of %1 is not trusted: %2.").arg(host, certificateDetail(*this));
    case CURLE_SSL_CONNECT_ERROR:
    case CURLE_SSL_CLIENTCERT:
    case CURLE_SSL_CIPHER:
        return withDetail(QStringLiteral("No secure connection to %1 could be made").arg(host), tlsDetail(*this));
    case CURLE_PARTIAL_FILE:
        return QStringLiteral("The answer of %1 was cut short.").arg(host);
    case CURLE_WEIRD_SERVER_REPLY:
    case CURLE_UNSUPPORTED_PROTOCOL:
        return QStringLiteral("The answer of %1 was not proper HTTP.").arg(host);
    case CURLE_OUT_OF_MEMORY:
        return QStringLiteral("There is not enough memory for the exchange with %1.").arg(host);
    default:
        break;
    }
    if (!isSent)
    {
        return proxy.address.isEmpty() ? connectText(*this, host) : proxyText(*this, host);
    }
    return withDetail(
        QStringLiteral("The connection to %1 was lost before the answer was complete").arg(host), tlsDetail(*this));
}

} // namespace rest
