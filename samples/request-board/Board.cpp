#include "Board.h"

#include <algorithm>

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPushButton>
#include <QShortcut>
#include <QSplitter>
#include <QStatusBar>
#include <QTableView>
#include <QVBoxLayout>

#include "Look.h"

namespace board
{

namespace
{

QString clockTime(QDateTime const& time)
{
    return time.toString(QStringLiteral("HH:mm:ss"));
}

} // namespace

Board::Board(TessalyConnectionInterface const& connection, BoardSettings settings)
    : settings_(std::move(settings)),
      logos_(connection),
      errorBar_(new ErrorBar),
      search_(new QLineEdit),
      table_(new QTableView),
      details_(new DetailsPane),
      status_(new QLabel),
      poller_(connection)
{
    setWindowTitle(tr("Collaboration requests"));
    layOut();
    setUpTable();
    setUpShortcuts();
    connect(&logos_, &Logos::ready, &model_, &RequestModel::setLogo);
    connect(errorBar_, &ErrorBar::tryAgain, this, &Board::refresh);
    connectPoller();
}

void Board::layOut()
{
    search_->setObjectName(QStringLiteral("search"));
    search_->setPlaceholderText(tr("Search (Ctrl+F)"));
    search_->setAccessibleName(tr("Search the requests"));
    search_->setClearButtonEnabled(true);
    search_->setMaximumWidth(320);
    connect(search_, &QLineEdit::textChanged, &order_, &QSortFilterProxyModel::setFilterFixedString);
    auto* const button = new QPushButton(tr("&Refresh"));
    button->setObjectName(QStringLiteral("refresh"));
    button->setToolTip(tr("Refresh now (F5)"));
    connect(button, &QPushButton::clicked, this, &Board::refresh);

    auto* const top = new QHBoxLayout;
    top->addWidget(search_, 1);
    top->addStretch();
    top->addWidget(button);
    auto* const halves = new QSplitter(Qt::Vertical);
    halves->addWidget(table_);
    halves->addWidget(details_);
    halves->setStretchFactor(0, 5);
    halves->setStretchFactor(1, 2);
    halves->setChildrenCollapsible(false);
    auto* const all = new QWidget;
    auto* const layout = new QVBoxLayout(all);
    layout->addWidget(errorBar_);
    layout->addLayout(top);
    layout->addWidget(halves, 1);
    setCentralWidget(all);
    status_->setAccessibleName(tr("Last refresh"));
    statusBar()->addWidget(status_, 1);
}

void Board::setUpTable()
{
    order_.setSourceModel(&model_);
    order_.setSortRole(RequestModel::sortRole);
    order_.setSortLocaleAware(true);
    order_.setFilterRole(RequestModel::searchRole);
    order_.setFilterKeyColumn(-1);
    order_.setFilterCaseSensitivity(Qt::CaseInsensitive);
    table_->setObjectName(QStringLiteral("requests"));
    table_->setAccessibleName(tr("Requests"));
    table_->setModel(&order_);
    table_->setSortingEnabled(true);
    table_->sortByColumn(RequestModel::DueColumn, Qt::AscendingOrder);
    table_->setSelectionBehavior(QAbstractItemView::SelectRows);
    table_->setSelectionMode(QAbstractItemView::SingleSelection);
    table_->setAlternatingRowColors(true);
    table_->setShowGrid(false);
    table_->setStyleSheet(QLatin1String(look::lists));
    table_->setWordWrap(false);
    table_->setTabKeyNavigation(false);
    table_->setIconSize({20, 20});
    table_->verticalHeader()->hide();
    table_->verticalHeader()->setDefaultSectionSize(26);
    table_->horizontalHeader()->setHighlightSections(false);
    table_->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    table_->horizontalHeader()->setSectionResizeMode(RequestModel::PatientColumn, QHeaderView::Stretch);
    connect(
        table_->selectionModel(), &QItemSelectionModel::selectionChanged, this,
        [this](QItemSelection const& selected)
        {
            lookAt(selected.indexes().value(0));
            showDetails();
        });
    connect(table_, &QTableView::clicked, this, &Board::lookAt);
    connect(table_, &QTableView::activated, this, &Board::lookAt);
}

void Board::setUpShortcuts()
{
    connect(new QShortcut(QKeySequence::Refresh, this), &QShortcut::activated, this, &Board::refresh);
    connect(
        new QShortcut(QKeySequence::Find, this), &QShortcut::activated, search_,
        [this] { search_->setFocus(Qt::ShortcutFocusReason); });
    auto* const escape = new QShortcut(Qt::Key_Escape, search_, nullptr, nullptr, Qt::WidgetShortcut);
    connect(escape, &QShortcut::activated, search_, &QLineEdit::clear);
    table_->setFocus();
}

void Board::connectPoller()
{
    connect(&poller_, &RequestPoller::polled, this, &Board::takeOver);
    connect(
        &poller_, &RequestPoller::failed, this,
        [this](rest::RestReplyStatus const& status) { errorBar_->tell(reasonOf(status)); });
    connect(&poller_, &RequestPoller::stateChanged, this, &Board::showSchedule);
    PollSettings schedule;
    schedule.interval = settings_.interval;
    poller_.setSettings(schedule);
    poller_.start();
    poller_.pollNow();
}

void Board::refresh()
{
    if (!poller_.pollNow())
    {
        statusBar()->showMessage(tr("The service has asked to be left alone until the next attempt."), 5000);
    }
}

void Board::takeOver(RequestChanges const& changes)
{
    // What was there when the window opened is no news.
    bool const isFirst = lastRefresh_.isNull();
    lastRefresh_ = settings_.now();
    errorBar_->hide();
    model_.setToday(lastRefresh_.date());
    put(changes.added, isFirst ? News::None : News::New);
    put(changes.changed, News::Changed);
    std::for_each(changes.removed.begin(), changes.removed.end(), [this](QString const& id) { remove(id); });
    showStatus();
    Q_EMIT refreshed();
}

void Board::put(std::vector<collaboration::ExtendedRequestDetails> requests, News news)
{
    // The kinds' replies arrive in any order; the order of what is due on the same day must not depend on it.
    std::sort(
        requests.begin(), requests.end(),
        [](auto const& left, auto const& right) { return left.requestDetails.id < right.requestDetails.id; });
    for (auto const& request : requests)
    {
        model_.put(rowOf(request), news);
        logos_.want(request.partnerId);
        if (model_.rowOf(request.requestDetails.id) == selectedRow())
        {
            showDetails();
        }
    }
}

void Board::remove(QString const& requestId)
{
    if (model_.rowOf(requestId) == selectedRow())
    {
        // Else the view selects a neighbour, which would pass for looked at.
        table_->setCurrentIndex({});
        table_->clearSelection();
    }
    model_.remove(requestId);
}

void Board::lookAt(QModelIndex const& index)
{
    if (index.isValid())
    {
        model_.markAsSeen(order_.mapToSource(index).row());
        showStatus();
    }
}

void Board::showDetails()
{
    int const row = selectedRow();
    details_->showRequest(row < 0 ? nullptr : &model_.at(row));
}

void Board::showSchedule(RequestPoller::State state)
{
    if (state == RequestPoller::State::Polling)
    {
        errorBar_->setOutlook(tr("Trying again \u2026"));
    }
    else if (auto const wait = poller_.untilNextPoll())
    {
        errorBar_->setOutlook(tr("Next attempt at %1").arg(clockTime(settings_.now().addMSecs(wait->count()))));
    }
    showStatus();
}

void Board::showStatus()
{
    QStringList parts;
    parts << (lastRefresh_.isNull() ? tr("Not refreshed yet") : tr("Last refresh %1").arg(clockTime(lastRefresh_)));
    if (!lastRefresh_.isNull())
    {
        parts << (model_.rowCount() == 1 ? tr("1 request") : tr("%1 requests").arg(model_.rowCount()));
        parts << tr("%1 new, %2 changed").arg(model_.count(News::New)).arg(model_.count(News::Changed));
    }
    if (poller_.state() == RequestPoller::State::Polling)
    {
        parts << tr("refreshing \u2026");
    }
    status_->setText(parts.join(u" \u00b7 "));
}

int Board::selectedRow() const
{
    QModelIndex const selected = table_->selectionModel()->selectedRows().value(0);
    return selected.isValid() ? order_.mapToSource(selected).row() : -1;
}

} // namespace board
