#include <algorithm>
#include <array>
#include <cstdlib>
#include <optional>
#include <vector>

#include <QJsonArray>
#include <QLocale>

#include <KeloCommunicationLib/account/AccountOperations.h>
#include <KeloCommunicationLib/connection/KeloErrors.h>

#include "cli/doctor/Checks.h"

namespace cli
{

using namespace Qt::Literals::StringLiterals;

namespace
{

constexpr int mostRoundTrips = 5;
constexpr double slowRoundTrip = 1000; // milliseconds
constexpr qint64 largeSkew = 60;       // seconds

bool isPage(Exchange const& exchange)
{
    return exchange.header("Content-Type").startsWith("text/html") || exchange.reply->text().trimmed().startsWith('<');
}

QString originOf(QUrl const& url)
{
    return url.toDisplayString(QUrl::RemovePath | QUrl::RemoveQuery | QUrl::RemoveFragment | QUrl::RemoveUserInfo);
}

Finding redirected(Examination const& examination, Exchange const& answer)
{
    auto const target = QUrl::fromEncoded(answer.header("Location"));
    bool const isUpgrade = target.host() == examination.host() && target.scheme() == "https"_L1;
    return Finding::failed(
        u"HTTP status %1 sends on to %2"_s.arg(answer.status.httpStatus).arg(originOf(target)),
        isUpgrade
            ? u"Give the address with https:// in the place of http://."_s
            : u"Open a browser on this computer: the network may ask for a log-in first. If it does not, the address "
              "has changed: ask the service's operator."_s);
}

/// What is no answer of the service's, by how it looks.
Finding notOfService(Examination const& examination, Exchange const& answer)
{
    int const status = answer.status.httpStatus;
    constexpr int wantsLogin = 511;
    if (status / 100 == 3 && !answer.header("Location").isEmpty())
    {
        return redirected(examination, answer);
    }
    if (status == wantsLogin || (status / 100 == 2 && isPage(answer)))
    {
        return Finding::failed(
            u"a web page answers in the service's place (HTTP status %1)"_s.arg(status),
            u"Open a browser on this computer: the network may ask for a log-in first. If it does not, check the "
            u"address: it "
            "is a web site's."_s);
    }
    if (status == 502 || status == 503 || status == 504)
    {
        return Finding::failed(
            u"a proxy or gateway before the service answers with HTTP status %1"_s.arg(status),
            u"The service behind it is down, or cannot be reached from there: try again in some minutes, then tell the "
            "service's operator%1."_s.arg(
                examination.way.proxy.address.isEmpty() ? QString() : u" and whoever runs the proxy"_s));
    }
    return Finding::failed(
        u"HTTP status %1 with something that the KELO service does not send"_s.arg(status),
        u"Check the address: host, port and path."_s);
}

QJsonObject statusJson(Exchange const& exchange)
{
    return {
        {u"HttpStatus"_s, exchange.status.httpStatus},
        {u"Code"_s, exchange.status.code},
        {u"Message"_s, exchange.status.message},
        {u"Server"_s, QString::fromLatin1(exchange.header("Server"))}};
}

double millisecondsOf(std::chrono::microseconds time)
{
    return static_cast<double>(time.count()) / 1000;
}

QString shown(double milliseconds)
{
    return QString::number(milliseconds, 'f', 1) + " ms"_L1;
}

/// A time in seconds in the unit that people would use.
QString shownLong(qint64 seconds)
{
    constexpr qint64 minute = 60;
    constexpr qint64 hour = 60 * minute;
    return seconds < 5 * minute  ? u"%1 seconds"_s.arg(seconds)
           : seconds < 3 * hour  ? u"%1 minutes"_s.arg(seconds / minute)
           : seconds < 72 * hour ? u"%1 hours"_s.arg(seconds / hour)
                                 : u"%1 days"_s.arg(seconds / (24 * hour));
}

Finding unanswered(Examination const& examination, Exchange const& exchange)
{
    auto const& way = examination.way;
    // A server of https may end a connection on which it is not greeted.
    if (way.url.scheme() == "http"_L1 && exchange.reply->errorCode() != CURLE_OPERATION_TIMEDOUT
        && probeTls(way, {Trust::Whose::Anybody}, examination.patience.limit()).result == CURLE_OK)
    {
        return Finding::failed(
            u"no proper answer, for the server speaks TLS at this port"_s, u"Begin the address with https://."_s);
    }
    return Finding::failed(
        exchange.status.message,
        u"Try again; if it stays so, tell the service's operator: the connection stands, but no proper answer comes."_s);
}

Finding refusedByService(Exchange const& exchange)
{
    return Finding::failed(
               u"the service answers with an error: %1"_s.arg(kelo::errorMessage(exchange.status)),
               u"Try again in some minutes, then tell the service's operator this message."_s, ExitCode::ServiceError)
        .with(statusJson(exchange));
}

/// What keeps the answer from being one of the service's to this account; who asks for what is judged elsewhere.
std::optional<Finding> problemWith(Examination const& examination, Exchange const& answer)
{
    if (answer.status.kind == 1)
    {
        return unanswered(examination, answer);
    }
    constexpr std::array refusals = {401, 403, 404};
    bool const isRefusal = std::find(refusals.begin(), refusals.end(), answer.status.httpStatus) != refusals.end();
    // Of wrong credentials a gateway before the service may tell in its place.
    if (!answer.isOfService() && answer.status.httpStatus != 401)
    {
        return notOfService(examination, answer).with(statusJson(answer));
    }
    return answer.status.kind == 0 || isRefusal ? std::nullopt : std::optional(refusedByService(answer));
}

} // namespace

Finding checkHttp(Examination& examination)
{
    auto const& answer = examination.first = examination.ask(operations::getSoftwarePageUrl);
    if (answer.status.httpStatus == 404)
    {
        QString const path = examination.way.url.path();
        return Finding::failed(
                   answer.isOfService() ? u"a KELO service answers, but not below the address's path"_s
                                        : u"HTTP status 404: nothing is at this address"_s,
                   u"Check the path of the address: it is \"%1\"."_s.arg(path.isEmpty() ? u"/"_s : path))
            .with(statusJson(answer));
    }
    if (auto const problem = problemWith(examination, answer))
    {
        return *problem;
    }
    return Finding::ok(
        u"%1 answers with HTTP status %2"_s.arg(answer.isOfService() ? u"a KELO service"_s : u"a server"_s)
            .arg(answer.status.httpStatus),
        statusJson(answer));
}

Finding checkCredentials(Examination& examination)
{
    // Wrong credentials are not tried more often than needed: accounts may be locked for that.
    bool const isRefused = examination.first.status.httpStatus == 401;
    examination.account = isRefused || !examination.hasInstallation
                              ? examination.first
                              : examination.ask(operations::getSettingsLicenseInfo);
    auto const& answer = examination.account;
    bool const hasUser = !examination.context->user().isEmpty();
    if (auto const problem = problemWith(examination, answer))
    {
        return *problem;
    }
    if (answer.status.httpStatus != 401)
    {
        QString const limit =
            examination.hasInstallation ? QString() : u", as far as can be told without an installation"_s;
        return Finding::ok((hasUser ? u"accepted"_s : u"none given, and none asked for"_s) + limit);
    }
    auto const refusal =
        hasUser ? Finding::failed(
            u"the service does not accept the user name or the password"_s,
            u"Check both, capitals and blanks included (--user or KELO_USERNAME, KELO_PASSWORD). If they "
            "are right, the account may be locked or its password changed: ask who administers it."_s,
            ExitCode::ServiceError)
                : Finding::failed(
                    u"the service asks for a user name and a password, and none is given"_s,
                    u"Set KELO_USERNAME and KELO_PASSWORD."_s, ExitCode::BadInput);
    return refusal.with(statusJson(answer));
}

Finding checkInstallation(Examination& examination)
{
    if (!examination.hasInstallation)
    {
        return Finding::failed(
            u"none given"_s, u"Give the installation's id with --installation or in KELO_INSTALLATION."_s,
            ExitCode::BadInput);
    }
    auto const& answer = examination.account;
    QString const id = examination.context->installation();
    if (answer.status.kind != 0)
    {
        bool const isUnknown = answer.status.httpStatus == 404;
        return Finding::failed(
                   (isUnknown ? u"the service knows no installation %1: %2"_s
                              : u"the account has no access to the installation %1: %2"_s)
                       .arg(id, kelo::errorMessage(answer.status)),
                   isUnknown
                       ? u"Check the id (--installation or KELO_INSTALLATION), and that the address is that of the "
                         "right service."_s
                       : u"Check that user name and installation belong together; else ask who administers the "
                         "account to give it access."_s,
                   ExitCode::ServiceError)
            .with(statusJson(answer));
    }
    return Finding::ok(id + u" is known to the service"_s);
}

Finding checkClock(Examination& examination)
{
    auto const& answer = examination.first;
    auto theirs =
        QLocale::c().toDateTime(QString::fromLatin1(answer.header("Date")), u"ddd, dd MMM yyyy hh:mm:ss 'GMT'"_s);
    if (!theirs.isValid())
    {
        return Finding::notTried(u"the service does not tell the time"_s);
    }
    theirs.setTimeSpec(Qt::UTC);
    auto const& phases = answer.trace.phases;
    auto const until =
        phases.queued + phases.nameLookUp + phases.connect + phases.tlsHandshake + phases.send + phases.wait;
    auto const ours = answer.trace.startTime.addMSecs(std::chrono::ceil<std::chrono::milliseconds>(until).count());
    // Theirs is cut off to seconds.
    constexpr qint64 halfSecond = 500;
    qint64 const skew = (theirs.msecsTo(ours) - halfSecond) / 1000;
    QJsonObject const details{{u"SkewSeconds"_s, skew}, {u"Here"_s, ours.toString(Qt::ISODate)}};
    if (std::abs(skew) <= largeSkew)
    {
        auto const within = skew == 0 ? u"a second"_s : u"%1 seconds"_s.arg(std::abs(skew) + 1);
        return Finding::ok(u"within %1 of the service's"_s.arg(within), details);
    }
    return Finding::warning(
        u"this computer's is %1 %2 the service's"_s.arg(
            shownLong(std::abs(skew)), skew > 0 ? u"ahead of"_s : u"behind"_s),
        u"Set date, time and time zone of this computer: certificates will be taken for expired or not yet valid, and "
        u"what is "
        "new or due is judged wrongly."_s,
        details);
}

Finding checkRoundTrips(Examination& examination)
{
    std::vector<double> times;
    int lost = 0;
    Patience const own(examination.patience.limit() / mostRoundTrips);
    for (int trip = 0; trip < mostRoundTrips && !own.isOver() && !examination.patience.isOver(); ++trip)
    {
        auto const exchange = examination.ask(operations::getSoftwarePageUrl);
        auto const& phases = exchange.trace.phases;
        exchange.status.kind == 1 ? void(++lost)
                                  : times.push_back(millisecondsOf(phases.send + phases.wait + phases.receive));
    }
    auto const& first = examination.first.trace.phases;
    std::sort(times.begin(), times.end());
    double const median = times.empty() ? 0 : times[times.size() / 2];
    double const worst = times.empty() ? 0 : times.back();
    QJsonObject const details{
        {u"NameLookUp"_s, millisecondsOf(first.nameLookUp)},
        {u"Connect"_s, millisecondsOf(first.connect)},
        {u"Tls"_s, millisecondsOf(first.tlsHandshake)},
        {u"FirstByte"_s, millisecondsOf(first.send + first.wait)},
        {u"Exchanges"_s, static_cast<int>(times.size())},
        {u"Lost"_s, lost},
        {u"Median"_s, median},
        {u"Worst"_s, worst}};
    QString const found =
        u"name look-up %1, connect %2, TLS %3, first byte %4; then %5 exchanges, median %6, worst %7"_s.arg(
            shown(millisecondsOf(first.nameLookUp)), shown(millisecondsOf(first.connect)),
            shown(millisecondsOf(first.tlsHandshake)), shown(millisecondsOf(first.send + first.wait)),
            QString::number(times.size()), shown(median), shown(worst));
    if (lost > 0)
    {
        return Finding::warning(
            u"%1; %2 more got no answer"_s.arg(found).arg(lost),
            u"The line loses what is sent: check cable, Wi-Fi and VPN."_s, details);
    }
    return median <= slowRoundTrip
               ? Finding::ok(found, details)
               : Finding::warning(
                   found, u"The line is slow: check whether somebody else fills it, and Wi-Fi and VPN."_s, details);
}

} // namespace cli
