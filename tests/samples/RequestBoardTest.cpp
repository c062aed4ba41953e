#include "tests/simulator/SimulatorFixture.h"

#include <algorithm>

#include <QApplication>
#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QTimer>
#include <QTreeWidget>

#include <Board.h>
#include <KeloCommunicationLib/connection/TessalyConnection.h>
#include <platform/core/HostEnvironment.h>
#include <testkit/Waiting.h>

using namespace std::chrono_literals;
using board::RequestModel;
using testkit::comesTrue;

namespace
{

constexpr int seeded = 18; // requests that the simulator has and the window shows

/// The window on the simulator, without a display. It refreshes when it is opened and when it is told to.
class RequestBoardTest : public SimulatorFixture
{
protected:
    RequestBoardTest()
    {
        core::HostEnvironment environment;
        environment.installationReference = [](QString const&) { return QString("INST-1001"); };
        core::setHostEnvironment(environment);
    }

    void open(std::chrono::milliseconds interval = 1h)
    {
        connection = TessalyConnection::makeConnection(QUrl(QString("http://127.0.0.1:%1").arg(port)), "kelo", "kelo");
        window = std::make_unique<board::Board>(
            *connection, board::BoardSettings{interval, [] { return QDateTime(QDate(2025, 3, 15), QTime(12, 0)); }});
        QObject::connect(window.get(), &board::Board::refreshed, window.get(), [this] { ++refreshes; });
        table = window->findChild<QTableView*>("requests");
        window->show();
    }
    void openAndLoad()
    {
        open();
        ASSERT_TRUE(comesTrue([this] { return refreshes == 1 && rowCount() == seeded; }));
    }
    void refresh()
    {
        window->refresh();
        ASSERT_TRUE(comesTrue([this, before = refreshes] { return refreshes > before; })) << reason();
    }
    void act(QJsonObject const& action) { post("/_control/partner-action", action); }

    int rowCount() const { return table->model()->rowCount(); }
    QModelIndex cell(int row, int column) const { return table->model()->index(row, column); }
    QString text(int row, int column) const { return cell(row, column).data().toString(); }
    /// The keys of the rows that have this text in the column, sorted.
    QStringList keys(int column, QString const& wanted) const
    {
        QStringList found;
        for (auto const& hit : table->model()->match(cell(0, column), Qt::DisplayRole, wanted, -1, Qt::MatchContains))
        {
            found << text(hit.row(), RequestModel::KeyColumn);
        }
        found.sort();
        return found;
    }
    void select(QString const& key) const
    {
        table->setCurrentIndex(table->model()->match(cell(0, RequestModel::KeyColumn), Qt::DisplayRole, key).value(0));
    }
    QString selected() const
    {
        return table->selectionModel()->selectedRows(RequestModel::KeyColumn).value(0).data().toString();
    }
    bool hasLogo(int row) const
    {
        auto const logo = cell(row, RequestModel::PartnerColumn).data(Qt::DecorationRole).value<QIcon>();
        return logo.pixmap(20).toImage().pixelColor(10, 10).alpha() > 0;
    }
    int listed(char const* list) const { return window->findChild<QTreeWidget*>(list)->topLevelItemCount(); }
    /// What the bar on top says; empty without one.
    std::string reason() const
    {
        auto const* const bar = window->findChild<board::ErrorBar*>();
        return bar->isVisible() ? bar->accessibleDescription().toStdString() : std::string();
    }
    bool isTold(char const* words) const { return reason().find(words) != std::string::npos; }

    bool const isOffscreen = qputenv("QT_QPA_PLATFORM", "offscreen");
    int argc = 1;
    char name[13] = "samples_test";
    char* argv[2] = {name, nullptr};
    QApplication application{argc, argv};
    std::unique_ptr<TessalyConnection> connection;
    std::unique_ptr<board::Board> window;
    QTableView* table = nullptr;
    int refreshes = 0;
};

TEST_F(RequestBoardTest, ShowsTheRequestsAndWhatPartnersDo)
{
    openAndLoad();
    EXPECT_EQ(keys(RequestModel::NewsColumn, "e"), QStringList()) << "what was there is no news";
    EXPECT_EQ(
        keys(RequestModel::DueColumn, "overdue"), QStringList({"KC-0001", "KC-0003", "KC-0004", "KC-0007", "KC-0018"}));
    EXPECT_EQ(text(0, RequestModel::KeyColumn), "KC-0003") << "what is due first";
    EXPECT_TRUE(comesTrue([this] { return hasLogo(0); }));
    window->findChild<QLineEdit*>("search")->setText("CERAMICS");
    EXPECT_EQ(keys(RequestModel::KindColumn, "Lab design"), QStringList("KC-0005"));
    EXPECT_EQ(rowCount(), 1);
    window->findChild<QLineEdit*>("search")->clear();

    select("KC-0004");
    EXPECT_EQ(listed("files"), 2);
    act({{"Action", "reply"}, {"RequestId", "REQ-000004"}});
    act({{"Action", "note"}, {"RequestId", "REQ-000011"}});
    act({{"Action", "create"}, {"Type", 7}});
    act({{"Action", "withdraw"}, {"RequestId", "REQ-000002"}});
    refresh();
    EXPECT_EQ(keys(RequestModel::NewsColumn, "new"), QStringList("KC-0022"));
    EXPECT_EQ(keys(RequestModel::NewsColumn, "changed"), QStringList({"KC-0004", "KC-0011"}));
    EXPECT_EQ(keys(RequestModel::KeyColumn, "KC-0002"), QStringList());
    EXPECT_EQ(selected(), "KC-0004");
    EXPECT_EQ(listed("files") + listed("notes"), 6) << "the selected one is shown as it is now";

    select("KC-0011");
    EXPECT_EQ(keys(RequestModel::NewsColumn, "changed"), QStringList("KC-0004")) << "looked at";
    act({{"Action", "withdraw"}, {"RequestId", "REQ-000011"}});
    refresh();
    EXPECT_EQ(selected() + QString::number(listed("notes")), "0");
    EXPECT_EQ(keys(RequestModel::NewsColumn, "e"), QStringList({"KC-0004", "KC-0022"})) << "nobody has looked at them";
}

TEST_F(RequestBoardTest, AFailureIsToldAndWhatWasThereStays)
{
    struct
    {
        QJsonObject fault;
        char const* reason;
    } const rows[] = {
        {{{"Kind", "status"}, {"Operation", "*"}}, "HTTP 503"},
        {{{"Kind", "drop"}, {"Operation", "*"}}, "cannot be reached"},
        {{{"Kind", "unauthorized"}, {"Operation", "getRequests"}}, "user name or the password"},
        {{{"Kind", "status"}, {"Operation", "getReferralRequestDetails"}}, "HTTP 503"},
    };
    openAndLoad();
    select("KC-0004");
    int count = seeded;
    for (auto const& row : rows)
    {
        act({{"Action", "create"}, {"Type", 7}});
        fault(merged(row.fault, {{"Times", -1}}));
        window->refresh();
        ASSERT_TRUE(comesTrue([&] { return isTold(row.reason) && isTold("Next attempt at"); }))
            << row.reason << " / " << reason();
        EXPECT_EQ(rowCount(), count);
        EXPECT_EQ(listed("files"), 2);
        send("DELETE", "/_control/faults", {}, 204);
        window->findChild<QPushButton*>("tryAgain")->click();
        ASSERT_TRUE(comesTrue([&] { return rowCount() == count + 1 && reason().empty(); })) << reason();
        ++count;
    }
    EXPECT_EQ(keys(RequestModel::NewsColumn, "new").size(), count - seeded);
}

TEST_F(RequestBoardTest, StartsOfflineAndRecoversByItself)
{
    service.stop();
    open(1s);
    ASSERT_TRUE(comesTrue([this] { return isTold("cannot be reached"); }));
    simulator::SimulatorOptions options;
    options.port = port;
    simulator::Simulator later(options);
    ASSERT_NE(later.start(), QString());
    EXPECT_TRUE(comesTrue([this] { return rowCount() == seeded && reason().empty(); })) << reason();
}

TEST_F(RequestBoardTest, WaitingForASlowServiceHoldsUpNothing)
{
    constexpr qint64 delay = 1000;
    openAndLoad(); // once before, for what is slow the first time
    fault({{"Kind", "delay"}, {"Operation", "*"}, {"Milliseconds", delay}, {"Times", -1}});
    qint64 largest = 0;
    qint64 total = 0;
    QElapsedTimer sinceLast;
    QTimer timer;
    QObject::connect(
        &timer, &QTimer::timeout,
        [&]
        {
            largest = std::max(largest, sinceLast.elapsed());
            total += sinceLast.restart();
        });
    timer.start(10);
    sinceLast.start();
    open();
    ASSERT_TRUE(comesTrue([this] { return refreshes == 2 && hasLogo(0); }));
    EXPECT_GE(total, 3 * delay) << "list, details and logos were slow";
    EXPECT_LT(largest, delay / 2);
}

TEST_F(RequestBoardTest, TheWindowMayBeClosedInMidRefresh)
{
    for (auto const* operation : {"getRequests", "getReferralRequestDetails", "getPartnerLogo"})
    {
        SCOPED_TRACE(operation);
        send("DELETE", "/_control/faults", {}, 204);
        fault({{"Kind", "delay"}, {"Operation", operation}, {"Milliseconds", 60'000}, {"Times", -1}});
        open();
        ASSERT_TRUE(comesTrue([this] { return get("/_control/faults").array().at(0)["Fired"].toInt() > 0; }));
        QElapsedTimer elapsed;
        elapsed.start();
        window->close();
        window.reset();
        connection.reset();
        EXPECT_LT(elapsed.elapsed(), 30'000);
    }
}

} // namespace
