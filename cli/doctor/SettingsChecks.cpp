#include <QSysInfo>

#include <platform/core/HostEnvironment.h>

#include "cli/doctor/Checks.h"
#include "cli/shell/Input.h"

namespace cli
{

using namespace Qt::Literals::StringLiterals;

namespace
{

bool isThisMachine(QString const& host)
{
    return host == "localhost"_L1 || host.startsWith("127."_L1) || host == "::1"_L1;
}

} // namespace

Finding checkAddress(Examination& examination)
{
    auto const& given = examination.options.url;
    QUrl& url = examination.way.url;
    try
    {
        url = serviceUrl(
            given.isNull() ? qEnvironmentVariable("KELO_API_URL") : given, u"give --url or set KELO_API_URL"_s);
    }
    catch (Failure const& failure)
    {
        return Finding::failed(
            failure.message(),
            u"Give the address that the service's operator named, such as https://HOST/PATH, with --url or in "
            "KELO_API_URL."_s,
            failure.code());
    }
    int const port = url.port(url.scheme() == "https"_L1 ? 443 : 80);
    QString const path = url.path().size() > 1 ? u"base path "_s + url.path() : u"no base path"_s;
    QString const found = u"%1, port %2, %3"_s.arg(url.toDisplayString()).arg(port).arg(path);
    QJsonObject const details{
        {u"Url"_s, url.toDisplayString()}, {u"Host"_s, url.host()}, {u"Port"_s, port}, {u"BasePath"_s, url.path()}};
    if (url.scheme() == "http"_L1 && !isThisMachine(url.host()))
    {
        return Finding::warning(
            found + u"; all that is sent, the password too, can be read on the way"_s,
            u"Ask the service's operator for an address that begins with https://."_s, details);
    }
    return Finding::ok(found, details);
}

Finding checkSettings(Examination& examination)
{
    CommonOptions options = examination.options;
    examination.hasInstallation = !options.installation.isNull() || qEnvironmentVariableIsSet("KELO_INSTALLATION");
    // Without one, all else can be tried.
    options.installation = examination.hasInstallation ? options.installation : u"none"_s;
    try
    {
        examination.open(options);
        auto const& file = examination.context->certificateFile();
        if (!file.isEmpty() && !contentOf("certificate file", file).contains("CERTIFICATE-----"))
        {
            throw badInput(u"The certificate file %1 holds no certificate in PEM form."_s.arg(file));
        }
    }
    catch (Failure const& failure)
    {
        return Finding::failed(
            failure.message(), u"Correct this option or variable of the environment."_s, failure.code());
    }
    auto const& context = *examination.context;
    auto const given = [](bool isGiven) { return isGiven ? u"given"_s : u"not given"_s; };
    bool const hasPassword = !core::hostEnvironment().password.isEmpty();
    QString const installation = examination.hasInstallation ? context.installation() : given(false);
    QString const file = context.certificateFile();
    return Finding::ok(
        u"user name %1, password %2, installation %3, own certificates %4"_s.arg(
            given(!context.user().isEmpty()), given(hasPassword), installation, file.isEmpty() ? given(false) : file),
        {{u"HasUser"_s, !context.user().isEmpty()},
         {u"HasPassword"_s, hasPassword},
         {u"HasInstallation"_s, examination.hasInstallation},
         {u"CertificateFile"_s, file}});
}

Finding checkVersions(Examination& /*examination*/)
{
    QString const system = QSysInfo::prettyProductName();
    QString const libraries = QString::fromLatin1(curl_version()).section(u' ', 0, 2);
    return Finding::ok(
        u"kelo %1, Qt %2, %3, on %4"_s.arg(
            QString::fromLatin1(KELO_VERSION), QString::fromLatin1(qVersion()), libraries, system),
        {{u"Kelo"_s, QString::fromLatin1(KELO_VERSION)},
         {u"Qt"_s, QString::fromLatin1(qVersion())},
         {u"Libraries"_s, libraries},
         {u"System"_s, system}});
}

} // namespace cli
