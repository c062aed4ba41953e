#pragma once

#include <vector>

#include <QAbstractTableModel>
#include <QDate>
#include <QHash>
#include <QIcon>

#include "RequestRow.h"

namespace board
{

/// Why a row is marked until somebody looks at it.
enum class News : int
{
    None,
    Changed,
    New
};

/// The requests as a table. What changes does so row by row, so that views keep their selection and their order.
class RequestModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column : int
    {
        NewsColumn,
        KeyColumn,
        KindColumn,
        PartnerColumn,
        PatientColumn,
        StatusColumn,
        DueColumn,
        FilesColumn,
        NotesColumn
    };
    /// What a column is sorted by: dates and numbers as such.
    static constexpr int sortRole = Qt::UserRole;
    /// What is searched: all that is shown but the marks, lest a row vanish from a search when it is looked at.
    static constexpr int searchRole = Qt::UserRole + 1;

    explicit RequestModel(QObject* parent = nullptr);

    int rowCount(QModelIndex const& parent = {}) const override;
    int columnCount(QModelIndex const& parent = {}) const override;
    QVariant data(QModelIndex const& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    /// Adds the request or takes over what it is now.
    void put(RequestRow row, News news);
    void remove(QString const& requestId);
    void markAsSeen(int row);
    /// The day that due dates are compared with.
    void setToday(QDate today);
    void setLogo(QString const& partnerId, QIcon const& logo);

    RequestRow const& at(int row) const { return entries_[static_cast<std::size_t>(row)].request; }
    /// -1 if the request is not there.
    int rowOf(QString const& requestId) const { return rows_.value(requestId, -1); }
    int count(News news) const;

private:
    struct Entry
    {
        RequestRow request;
        News news = News::None;
    };

    QVariant value(Entry const& entry, int column) const;
    QVariant text(Entry const& entry, int column) const;
    bool isOverdue(Entry const& entry) const;
    void tellChanged(int row);

    std::vector<Entry> entries_;
    QHash<QString, int> rows_; ///< by the request's id
    QHash<QString, QIcon> logos_;
    QIcon noLogo_; ///< as wide as a logo, so that names stand below each other
    QDate today_ = QDate::currentDate();
};

} // namespace board
