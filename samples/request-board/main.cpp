#include <chrono>
#include <cstdio>
#include <memory>

#include <QApplication>
#include <QCommandLineParser>

#include <KeloCommunicationLib/connection/TessalyConnection.h>
#include <platform/core/HostEnvironment.h>

#include "Board.h"
#include "Look.h"

namespace
{

using namespace Qt::Literals::StringLiterals;

constexpr int badInput = 2;

struct Options
{
    core::HostEnvironment environment;
    QString certificateFile;
    board::BoardSettings board;
};

/// Ends the program with a sentence on standard error.
[[noreturn]] void refuse(QString const& why)
{
    std::fprintf(stderr, "request-board: %s\n", qPrintable(why));
    std::exit(badInput);
}

/// The time of day goes on as usual, but on another day.
std::function<QDateTime()> clockOn(QString const& day)
{
    QDate const today = QDate::fromString(day, Qt::ISODate);
    if (!today.isValid())
    {
        refuse(u"--today takes a day such as 2025-03-15."_s);
    }
    return [today] { return QDateTime(today, QTime::currentTime()); };
}

void declare(QCommandLineParser& parser)
{
    parser.setApplicationDescription(
        u"Shows the collaboration requests of an installation and keeps them up to date.\n"
        "Settings may come from KELO_API_URL, KELO_USERNAME, KELO_PASSWORD, KELO_INSTALLATION,\n"
        "KELO_CA_FILE and KELO_PROXY_AUTO_DISCOVERY."_s);
    parser.addHelpOption();
    parser.addOptions({
        {u"url"_s, u"Address of the KELO service; else KELO_API_URL."_s, u"URL"_s},
        {u"user"_s, u"User name; else KELO_USERNAME."_s, u"NAME"_s},
        {u"password"_s, u"Password; better given in KELO_PASSWORD, which other users cannot see."_s, u"PASSWORD"_s},
        {u"installation"_s, u"The account's installation; else KELO_INSTALLATION."_s, u"ID"_s},
        {u"ca-file"_s, u"PEM file of certificates to trust beside the system's; else KELO_CA_FILE."_s, u"FILE"_s},
        {u"interval"_s, u"Seconds between two refreshes."_s, u"SECONDS"_s, u"30"_s},
        {u"today"_s, u"Takes this for today's date, for services with data of a certain time."_s, u"DATE"_s},
    });
}

/// The options given, with the environment's values in the place of those that were not.
Options optionsIn(QCommandLineParser const& parser)
{
    auto const given = [&parser](QString const& name, QString const& otherwise)
    { return parser.isSet(name) ? parser.value(name) : otherwise; };
    Options options{.environment = core::hostEnvironment(), .certificateFile = {}, .board = {}};
    auto& environment = options.environment;
    environment.apiUrl = QUrl(given(u"url"_s, environment.apiUrl.toString()), QUrl::StrictMode);
    environment.username = given(u"user"_s, environment.username);
    environment.password = given(u"password"_s, environment.password);
    QString const installation = given(u"installation"_s, environment.installationReference({}));
    environment.installationReference = [installation](QString const&) { return installation; };
    options.certificateFile = given(u"ca-file"_s, qEnvironmentVariable("KELO_CA_FILE"));
    if (!environment.apiUrl.scheme().startsWith("http"_L1) || environment.apiUrl.host().isEmpty())
    {
        refuse(u"No address of a service: give --url or set KELO_API_URL."_s);
    }
    if (installation.isEmpty())
    {
        refuse(u"No installation: give --installation or set KELO_INSTALLATION."_s);
    }
    bool isNumber = false;
    options.board.interval = std::chrono::seconds(parser.value(u"interval"_s).toUInt(&isNumber));
    if (!isNumber || options.board.interval < std::chrono::seconds(1))
    {
        refuse(u"--interval takes a number of seconds, at least 1."_s);
    }
    if (parser.isSet(u"today"_s))
    {
        options.board.now = clockOn(parser.value(u"today"_s));
    }
    return options;
}

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    QCommandLineParser parser;
    declare(parser);
    parser.process(application);
    Options const options = optionsIn(parser);
    core::setHostEnvironment(options.environment);
    board::applyLook(application);

    auto const connection = TessalyConnection::makeDefaultConnection();
    connection->setExtraCertificates(options.certificateFile);
    board::Board window(*connection, options.board);
    window.resize(1180, 640);
    window.show();
    return QApplication::exec();
}
