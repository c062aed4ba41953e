#pragma once

#include <chrono>
#include <functional>

#include <QDateTime>
#include <QMainWindow>
#include <QSortFilterProxyModel>

#include <KeloCommunicationLib/collaboration/RequestPoller.h>
#include <KeloCommunicationLib/connection/TessalyConnectionInterface.h>

#include "DetailsPane.h"
#include "ErrorBar.h"
#include "Logos.h"
#include "RequestModel.h"

class QLabel;
class QLineEdit;
class QTableView;

namespace board
{

struct BoardSettings
{
    std::chrono::milliseconds interval{30000};
    /// What the window takes for the time.
    std::function<QDateTime()> now = [] { return QDateTime::currentDateTime(); };
};

/// The window: the requests of the host's installation, kept up to date.
class Board : public QMainWindow
{
    Q_OBJECT

public:
    /// Uses `connection`, which must outlive the window, for every call. The first refresh begins at once.
    explicit Board(TessalyConnectionInterface const& connection, BoardSettings settings = {});

    /// Refreshes now, whatever is scheduled.
    void refresh();

Q_SIGNALS:
    /// What a refresh has found is shown.
    void refreshed();

private:
    void layOut();
    void setUpTable();
    void setUpShortcuts();
    void connectPoller();
    void takeOver(RequestChanges const& changes);
    void put(std::vector<collaboration::ExtendedRequestDetails> requests, News news);
    void remove(QString const& requestId);
    void lookAt(QModelIndex const& index);
    void showDetails();
    void showSchedule(RequestPoller::State state);
    void showStatus();
    /// The row of the model that is selected; -1 if none is.
    int selectedRow() const;

    BoardSettings settings_;
    RequestModel model_;
    QSortFilterProxyModel order_;
    Logos logos_;
    ErrorBar* errorBar_;
    QLineEdit* search_;
    QTableView* table_;
    DetailsPane* details_;
    QLabel* status_;
    QDateTime lastRefresh_;
    RequestPoller poller_;
};

} // namespace board
