// Writes a picture of the window beside a simulator, with partners who act. The same on every machine with the same
// font: the data, the size and the time are fixed.

#include <cstdio>

#include <QApplication>
#include <QEventLoop>
#include <QJsonObject>
#include <QTableView>
#include <QTimer>

#include <KeloCommunicationLib/connection/TessalyConnection.h>
#include <platform/core/HostEnvironment.h>
#include <simulator/Simulator.h>

#include "Board.h"
#include "Look.h"

namespace
{

using namespace Qt::Literals::StringLiterals;

QDateTime noon()
{
    return {QDate(2025, 3, 15), QTime(12, 0)};
}

/// Runs the events until the signal comes; false if it does not.
template <class Sender, class Signal>
bool comes(Sender const& sender, Signal signal)
{
    QEventLoop loop;
    QObject::connect(&sender, signal, &loop, [&loop] { loop.exit(1); });
    QTimer::singleShot(std::chrono::seconds(30), &loop, [&loop] { loop.exit(0); });
    return loop.exec() == 1;
}

void actAsPartner(TessalyConnection const& connection, QJsonObject const& action)
{
    connection.httpConnection().send(rest::RequestDataCreator::makeRequestData(
        rest::HttpMethod::Post, QUrl(u"/_control/partner-action"_s), action, std::chrono::milliseconds(0), false));
}

bool showNews(board::Board& window, TessalyConnection const& connection)
{
    actAsPartner(
        connection,
        {{u"Action"_s, u"reply"_s}, {u"RequestId"_s, u"REQ-000003"_s}, {u"Text"_s, u"Proposal attached."_s}});
    actAsPartner(connection, {{u"Action"_s, u"status"_s}, {u"RequestId"_s, u"REQ-000011"_s}, {u"Status"_s, 3}});
    actAsPartner(connection, {{u"Action"_s, u"create"_s}, {u"Type"_s, 7}});
    actAsPartner(connection, {{u"Action"_s, u"withdraw"_s}, {u"RequestId"_s, u"REQ-000001"_s}});
    window.refresh();
    return comes(window, &board::Board::refreshed);
}

int takePicture(QString const& path)
{
    simulator::Simulator service;
    core::HostEnvironment environment;
    environment.apiUrl = QUrl(service.start());
    environment.username = u"kelo"_s;
    environment.password = u"kelo"_s;
    environment.installationReference = [](QString const&) { return u"INST-1001"_s; };
    core::setHostEnvironment(environment);
    auto const connection = TessalyConnection::makeDefaultConnection();
    board::Board window(*connection, {.interval = std::chrono::hours(1), .now = noon});
    window.resize(1240, 640);
    window.show();
    if (!comes(window, &board::Board::refreshed) || !showNews(window, *connection))
    {
        std::fprintf(stderr, "The simulator was not shown in time.\n");
        return 1;
    }
    window.findChild<QTableView*>()->selectRow(3);
    return window.grab().save(path) ? 0 : 1;
}

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    if (argc != 2)
    {
        std::fprintf(stderr, "Usage: request-board-picture FILE.png\n");
        return 2;
    }
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedKingdom));
    board::applyLook(application);
    return takePicture(QString::fromLocal8Bit(argv[1]));
}
