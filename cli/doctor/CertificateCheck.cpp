#include <algorithm>
#include <array>

#include <openssl/x509_vfy.h>

#include <QDateTime>
#include <QJsonArray>
#include <QLocale>

#include "cli/doctor/Checks.h"
#include "cli/shell/Input.h"

namespace cli
{

using namespace Qt::Literals::StringLiterals;

namespace
{

constexpr qint64 soon = 14; // days

/// Words in the names of authorities that are not the public's: those of proxies and virus scanners, which put their
/// own certificate in the place of the server's to read what is exchanged.
constexpr std::array inspectors = {
    "proxy",     "firewall",  "gateway",   "inspect",  "filter",    "virus",       "web shield", "security appliance",
    "zscaler",   "fortinet",  "fortigate", "sophos",   "kaspersky", "bitdefender", "netskope",   "watchguard",
    "barracuda", "sonicwall", "palo alto", "umbrella", "squid"};

struct Advice
{
    long number; ///< OpenSSL's
    char const* found;
    char const* advice;
};

constexpr auto unknownIssuer = "comes from an authority that is not trusted here";
constexpr auto askForAuthority =
    "An inspecting proxy or a virus scanner may have put it in the place of the service's: ask the office's IT for the "
    "certificate of its authority, a PEM file, and name that with --ca-file or KELO_CA_FILE, or have %1 exempted.";
constexpr auto adviceOnClock =
    "Check date and time of this computer, which says %2; if they are right, the service's operator must renew the "
    "certificate.";

// In the place of %1 stands the host, in that of %2 the time.
constexpr std::array<Advice, 9> certificateAdvice = {{
    // libcurl leaves "unspecified" where the certificate is in order and its names are not.
    {X509_V_ERR_UNSPECIFIED, "is not made out to %1",
     "Check the host name in the address. If it is right, somebody else answers in the service's place: open "
     "https://%1 in a "
     "browser of this computer, for the network may ask for a log-in first."},
    {X509_V_ERR_CERT_HAS_EXPIRED, "has expired", adviceOnClock},
    {X509_V_ERR_CERT_NOT_YET_VALID, "is not yet valid", adviceOnClock},
    {X509_V_ERR_DEPTH_ZERO_SELF_SIGNED_CERT, "is self-signed",
     "If this is a service of one's own, such as the simulator, name its certificate with --ca-file; if not, send "
     "nothing: "
     "somebody else answers in the service's place. Ask the office's IT."},
    {X509_V_ERR_SELF_SIGNED_CERT_IN_CHAIN, unknownIssuer, askForAuthority},
    {X509_V_ERR_UNABLE_TO_GET_ISSUER_CERT_LOCALLY, unknownIssuer, askForAuthority},
    {X509_V_ERR_UNABLE_TO_GET_ISSUER_CERT, unknownIssuer, askForAuthority},
    {X509_V_ERR_UNABLE_TO_VERIFY_LEAF_SIGNATURE, unknownIssuer, askForAuthority},
    {0, "is not trusted", "Tell the service's operator."},
}};

struct Breakdown
{
    char const* mark; ///< in libcurl's words
    char const* found;
    char const* advice;
};

constexpr std::array<Breakdown, 5> breakdowns = {{
    {"timed out", "no answer to the greeting in time",
     "The server is overloaded, or a firewall lets connections through but not what is said on them: try again, then "
     "ask the "
     "office's IT and the service's operator."},
    {"wrong version number", "the server does not speak TLS at this port",
     "Check the port in the address, and whether it must begin with http://."},
    {"protocol version", "the server does not offer TLS 1.2 or newer",
     "The service's operator must offer TLS 1.2 or newer."},
    {"unsupported protocol", "the server does not offer TLS 1.2 or newer",
     "The service's operator must offer TLS 1.2 or newer."},
    {"", "the connection was closed during the handshake",
     "A firewall may end what it cannot read: ask the office's IT to let connections to %1 through."},
}};

QDateTime timeIn(QString const& text)
{
    // As OpenSSL writes it, days below 10 with a space before them.
    auto time = QLocale::c().toDateTime(text.simplified(), u"MMM d hh:mm:ss yyyy 'GMT'"_s);
    time.setTimeSpec(Qt::UTC);
    return time;
}

/// What a certificate says of itself.
struct Certificate
{
    explicit Certificate(Probe const& probe)
        : issuer(probe.certificate.value("Issuer")),
          names(probe.certificate.value("X509v3 Subject Alternative Name").split(u',', Qt::SkipEmptyParts)),
          from(timeIn(probe.certificate.value("Start date"))),
          until(timeIn(probe.certificate.value("Expire date")))
    {
        std::transform(names.begin(), names.end(), names.begin(), [](QString const& name) { return name.trimmed(); });
    }

    qint64 daysLeft() const { return QDateTime::currentDateTimeUtc().daysTo(until); }

    /// As far as its issuer's name tells.
    bool isOfInspector() const
    {
        return std::any_of(
            inspectors.begin(), inspectors.end(),
            [this](char const* word) { return issuer.contains(QLatin1String(word), Qt::CaseInsensitive); });
    }

    QString text() const
    {
        constexpr qsizetype mostNames = 5;
        QString const more = names.size() > mostNames ? u" and %1 more"_s.arg(names.size() - mostNames) : QString();
        QString const inspector = isOfInspector() ? u", by its name an inspecting proxy or virus scanner"_s : QString();
        return u"issued by %1%2, for %3%4, valid from %5 to %6"_s.arg(
            issuer, inspector, names.mid(0, mostNames).join(", "_L1), more, from.date().toString(Qt::ISODate),
            until.date().toString(Qt::ISODate));
    }

    QJsonObject json() const
    {
        return {
            {u"Issuer"_s, issuer},
            {u"Names"_s, QJsonArray::fromStringList(names)},
            {u"ValidFrom"_s, from.toString(Qt::ISODate)},
            {u"ValidUntil"_s, until.toString(Qt::ISODate)},
            {u"DaysLeft"_s, daysLeft()},
            {u"IsOfInspector"_s, isOfInspector()}};
    }

    QString issuer;
    QStringList names;
    QDateTime from;
    QDateTime until;
};

QString filled(char const* text, Way const& way)
{
    auto const now = QDateTime::currentDateTime();
    return QString::fromLatin1(text)
        .replace("%1"_L1, way.url.host())
        .replace("%2"_L1, now.toString(u"yyyy-MM-dd hh:mm"_s));
}

Finding brokenDown(Way const& way, Probe const& attempt)
{
    QByteArray const text = attempt.result == CURLE_OPERATION_TIMEDOUT ? "timed out" : attempt.text;
    auto const known = std::find_if(
        breakdowns.begin(), breakdowns.end(), [&text](Breakdown const& row) { return text.contains(row.mark); });
    return Finding::failed(QString::fromLatin1(known->found), filled(known->advice, way));
}

/// `refused` is the attempt that ended for the certificate's sake.
Finding notTrusted(Examination const& examination, Probe const& refused)
{
    auto const& way = examination.way;
    // Once more, to look at the certificate; nothing is sent to whoever has it.
    Certificate const certificate(probeTls(way, {Trust::Whose::Anybody}, examination.patience.limit()));
    auto const known = std::find_if(
        certificateAdvice.begin(), certificateAdvice.end() - 1,
        [&refused](Advice const& row) { return row.number == refused.verification; });
    QString const detail =
        known->number != 0 ? QString()
                           : u" (%1)"_s.arg(QString::fromLatin1(X509_verify_cert_error_string(refused.verification)));
    auto json = certificate.json();
    json.insert(u"Verification"_s, static_cast<int>(refused.verification));
    return Finding::failed(
               u"the certificate %1%2: %3"_s.arg(filled(known->found, way), detail, certificate.text()),
               filled(known->advice, way))
        .with(json);
}

} // namespace

Finding checkTls(Examination& examination)
{
    auto const& way = examination.way;
    if (way.url.scheme() == "http"_L1)
    {
        return Finding::ok(u"not used, for the address begins with http://"_s);
    }
    Probe attempt = probeTls(way, {}, examination.patience.limit());
    QString trusted = u"this system"_s;
    QString const file = examination.context->certificateFile();
    if (attempt.result == CURLE_PEER_FAILED_VERIFICATION && !file.isEmpty())
    {
        trusted = file;
        Trust const given{Trust::Whose::Given, contentOf("certificate file", file)};
        attempt = probeTls(way, given, examination.patience.limit());
    }
    if (attempt.result == CURLE_PEER_FAILED_VERIFICATION)
    {
        return notTrusted(examination, attempt);
    }
    if (attempt.result != CURLE_OK)
    {
        return brokenDown(way, attempt);
    }
    Certificate const certificate(attempt);
    auto json = certificate.json();
    json.insert(u"Protocol"_s, attempt.protocol);
    json.insert(u"TrustedBy"_s, trusted);
    json.insert(u"Milliseconds"_s, attempt.milliseconds);
    QString const found =
        u"%1, the certificate is trusted by %2: %3, %4 days left"_s.arg(attempt.protocol, trusted, certificate.text())
            .arg(certificate.daysLeft());
    return certificate.daysLeft() >= soon
               ? Finding::ok(found, json)
               : Finding::warning(
                   found, u"The service's operator must renew the certificate before it expires."_s, json);
}

} // namespace cli
