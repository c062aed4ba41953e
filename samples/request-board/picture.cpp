// Writes a picture of the window beside a simulator, with partners who act. The same on every machine with the same
// font: the data, the size and the time are fixed.

#include <cstdio>

#include <QApplication>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QJsonObject>
#include <QTableView>

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

/// Runs the events until the condition holds; false when that takes too long.
template <class Condition>
bool comesTrue(Condition condition)
{
    QDeadlineTimer const deadline(std::chrono::seconds(30));
    while (!condition() && !deadline.hasExpired())
    {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 100);
    }
    return condition();
}

/// One partner has none.
bool areLogosThere(QAbstractItemModel const& rows)
{
    int missing = 0;
    for (int row = 0; row < rows.rowCount(); ++row)
    {
        QModelIndex const partner = rows.index(row, board::RequestModel::PartnerColumn);
        QImage const logo = partner.data(Qt::DecorationRole).value<QIcon>().pixmap(20).toImage();
        bool const isBlank = logo.pixelColor(logo.rect().center()).alpha() == 0;
        missing += isBlank && partner.data() != u"Central Production"_s ? 1 : 0;
    }
    return missing == 0;
}

/// Has the partners act between the first refresh and the second one; false if that takes too long.
bool showNews(board::Board& window, TessalyConnection const& connection)
{
    int refreshes = 0;
    QObject::connect(&window, &board::Board::refreshed, &window, [&refreshes] { ++refreshes; });
    if (!comesTrue([&] { return refreshes == 1; }))
    {
        return false;
    }
    for (auto const& action : {
             QJsonObject{{u"Action"_s, u"reply"_s}, {u"RequestId"_s, u"REQ-000003"_s}, {u"Text"_s, u"Proposal."_s}},
             QJsonObject{{u"Action"_s, u"status"_s}, {u"RequestId"_s, u"REQ-000011"_s}, {u"Status"_s, 3}},
             QJsonObject{{u"Action"_s, u"create"_s}, {u"Type"_s, 7}},
             QJsonObject{{u"Action"_s, u"withdraw"_s}, {u"RequestId"_s, u"REQ-000001"_s}},
         })
    {
        connection.httpConnection().send(rest::RequestDataCreator::makeRequestData(
            rest::HttpMethod::Post, QUrl(u"/_control/partner-action"_s), action, std::chrono::milliseconds(0), false));
    }
    window.refresh();
    auto const& rows = *window.findChild<QTableView*>()->model();
    bool const isThere = comesTrue([&] { return refreshes == 2 && areLogosThere(rows); });
    window.disconnect(&window);
    return isThere;
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
    window.resize(1160, 660);
    window.show();
    if (!showNews(window, *connection))
    {
        std::fprintf(stderr, "The simulator was not shown in time.\n");
        return 1;
    }
    window.findChild<QTableView*>()->selectRow(3);
    constexpr int smallest = 0;
    return window.grab().toImage().convertToFormat(QImage::Format_RGB888).save(path, "PNG", smallest) ? 0 : 1;
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
    QApplication::setFont(QFont(u"DejaVu Sans"_s, 9));
    board::applyLook(application);
    return takePicture(QString::fromLocal8Bit(argv[1]));
}
