#pragma once

#include <QColor>
#include <QString>

class QApplication;

namespace board
{

/// The colours of the window, in one place.
namespace look
{

inline constexpr QColor newRow{0xe6, 0xf4, 0xea};
inline constexpr QColor changedRow{0xff, 0xf4, 0xd6};
inline constexpr QColor overdue{0xb3, 0x26, 0x1e};
inline constexpr char const* lists = "QTableView::item { padding: 0 6px; } QTreeView::item { padding: 3px; }"
                                     "QHeaderView::section { padding: 4px 3px; }";
inline constexpr char const* errorBar = "QFrame { background: #fdecea; border: 1px solid #f1b0a8; border-radius: 4px; }"
                                        "QLabel { border: none; color: #5f1712; }";

} // namespace look

/// Plain Fusion in light colours, on every desktop the same.
void applyLook(QApplication& application);

} // namespace board
