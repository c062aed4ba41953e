#pragma once

#include <QWidget>

#include "RequestRow.h"

class QLabel;
class QTreeWidget;

namespace board
{

/// Files and notes of one request.
class DetailsPane : public QWidget
{
    Q_OBJECT

public:
    explicit DetailsPane(QWidget* parent = nullptr);

    /// Null: none is selected.
    void showRequest(RequestRow const* request);

private:
    QLabel* title_;
    QLabel* subtitle_;
    QTreeWidget* files_;
    QTreeWidget* notes_;
};

} // namespace board
