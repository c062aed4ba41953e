#include "RequestModel.h"

#include <algorithm>
#include <array>
#include <utility>

#include <QFont>
#include <QLocale>

#include "Look.h"

namespace board
{

namespace
{

QString wordFor(News news)
{
    switch (news)
    {
    case News::New:
        return RequestModel::tr("new");
    case News::Changed:
        return RequestModel::tr("changed");
    case News::None:
        break;
    }
    return {};
}

QVariant backgroundOf(News news)
{
    switch (news)
    {
    case News::New:
        return look::newRow;
    case News::Changed:
        return look::changedRow;
    case News::None:
        break;
    }
    return {};
}

QVariant boldIf(bool isBold)
{
    QFont font;
    font.setBold(true);
    return isBold ? font : QVariant();
}

QVariant alignmentOf(int column)
{
    bool const isNumber = column == RequestModel::StatusColumn || column == RequestModel::FilesColumn
                          || column == RequestModel::NotesColumn;
    return QVariant::fromValue(Qt::AlignVCenter | (isNumber ? Qt::AlignHCenter : Qt::AlignLeft));
}

} // namespace

RequestModel::RequestModel(QObject* parent) : QAbstractTableModel(parent)
{
    QPixmap blank(64, 64);
    blank.fill(Qt::transparent);
    noLogo_.addPixmap(blank);
}

int RequestModel::rowCount(QModelIndex const& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(entries_.size());
}

int RequestModel::columnCount(QModelIndex const& parent) const
{
    return parent.isValid() ? 0 : NotesColumn + 1;
}

QVariant RequestModel::data(QModelIndex const& index, int role) const
{
    if (!index.isValid())
    {
        return {};
    }
    Entry const& entry = entries_[static_cast<std::size_t>(index.row())];
    int const column = index.column();
    switch (role)
    {
    case Qt::DisplayRole:
        return text(entry, column);
    case searchRole:
        return column == NewsColumn ? QVariant() : text(entry, column);
    case sortRole:
        return value(entry, column);
    case Qt::DecorationRole:
        return column == PartnerColumn ? logos_.value(entry.request.partnerId, noLogo_) : QVariant();
    case Qt::FontRole:
        return boldIf(entry.news != News::None && column <= KeyColumn);
    case Qt::ForegroundRole:
        return column == DueColumn && isOverdue(entry) ? look::overdue : QVariant();
    case Qt::BackgroundRole:
        return backgroundOf(entry.news);
    case Qt::TextAlignmentRole:
        return alignmentOf(column);
    case Qt::AccessibleTextRole:
        return tr("%1: %2").arg(
            headerData(column, Qt::Horizontal, Qt::DisplayRole).toString(), text(entry, column).toString());
    default:
        return {};
    }
}

QVariant RequestModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role == Qt::TextAlignmentRole)
    {
        return alignmentOf(section);
    }
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
    {
        return QAbstractTableModel::headerData(section, orientation, role);
    }
    std::array<QString, NotesColumn + 1> const titles = {tr("News"),    tr("Request"), tr("Kind"),
                                                         tr("Partner"), tr("Patient"), tr("Status"),
                                                         tr("Due"),     tr("Files"),   tr("Notes")};
    return titles.at(static_cast<std::size_t>(section));
}

QVariant RequestModel::value(Entry const& entry, int column) const
{
    RequestRow const& request = entry.request;
    switch (column)
    {
    case NewsColumn:
        return static_cast<int>(entry.news);
    case KeyColumn:
        return request.key;
    case KindColumn:
        return request.kind;
    case PartnerColumn:
        return request.partner;
    case PatientColumn:
        return request.patient;
    case StatusColumn:
        return request.status;
    case DueColumn:
        return request.due;
    case FilesColumn:
        return static_cast<int>(request.files.size());
    case NotesColumn:
        return static_cast<int>(request.notes.size());
    default:
        return {};
    }
}

QVariant RequestModel::text(Entry const& entry, int column) const
{
    if (column == NewsColumn)
    {
        return wordFor(entry.news);
    }
    if (column != DueColumn)
    {
        return value(entry, column).toString();
    }
    QString const due = QLocale().toString(entry.request.due, QLocale::ShortFormat);
    // Not by its colour alone: not everybody sees it.
    return isOverdue(entry) ? tr("%1, overdue").arg(due) : due;
}

void RequestModel::put(RequestRow row, News news)
{
    int const known = rowOf(row.id);
    if (known >= 0)
    {
        auto& entry = entries_[static_cast<std::size_t>(known)];
        // What is new stays so until somebody has looked at it.
        entry = {.request = std::move(row), .news = std::max(news, entry.news)};
        tellChanged(known);
        return;
    }
    int const last = rowCount();
    beginInsertRows({}, last, last);
    rows_.insert(row.id, last);
    entries_.push_back({.request = std::move(row), .news = news});
    endInsertRows();
}

void RequestModel::remove(QString const& requestId)
{
    int const row = rowOf(requestId);
    if (row < 0)
    {
        return;
    }
    beginRemoveRows({}, row, row);
    entries_.erase(entries_.begin() + row);
    rows_.remove(requestId);
    for (int below = row; below < rowCount(); ++below)
    {
        rows_[at(below).id] = below;
    }
    endRemoveRows();
}

void RequestModel::markAsSeen(int row)
{
    auto& news = entries_[static_cast<std::size_t>(row)].news;
    if (news != News::None)
    {
        news = News::None;
        tellChanged(row);
    }
}

void RequestModel::setToday(QDate today)
{
    if (std::exchange(today_, today) != today && !entries_.empty())
    {
        Q_EMIT dataChanged(index(0, DueColumn), index(rowCount() - 1, DueColumn));
    }
}

void RequestModel::setLogo(QString const& partnerId, QIcon const& logo)
{
    logos_.insert(partnerId, logo);
    if (!entries_.empty())
    {
        Q_EMIT dataChanged(index(0, PartnerColumn), index(rowCount() - 1, PartnerColumn), {Qt::DecorationRole});
    }
}

int RequestModel::count(News news) const
{
    return static_cast<int>(
        std::count_if(entries_.begin(), entries_.end(), [news](Entry const& entry) { return entry.news == news; }));
}

bool RequestModel::isOverdue(Entry const& entry) const
{
    return entry.request.due.isValid() && entry.request.due < today_;
}

void RequestModel::tellChanged(int row)
{
    Q_EMIT dataChanged(index(row, 0), index(row, columnCount() - 1));
}

} // namespace board
