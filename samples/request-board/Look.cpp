#include "Look.h"

#include <QApplication>
#include <QPalette>
#include <QStyleFactory>

namespace board
{

void applyLook(QApplication& application)
{
    application.setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QPalette palette;
    QColor const ink(0x20, 0x28, 0x30);
    QColor const accent(0x1f, 0x6f, 0x8b);
    for (auto const role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
    {
        palette.setColor(role, ink);
        palette.setColor(QPalette::Disabled, role, QColor(0x8a, 0x92, 0x9a));
    }
    palette.setColor(QPalette::Window, QColor(0xf5, 0xf7, 0xf9));
    palette.setColor(QPalette::Base, Qt::white);
    palette.setColor(QPalette::AlternateBase, QColor(0xfa, 0xfb, 0xfc));
    palette.setColor(QPalette::Button, QColor(0xee, 0xf1, 0xf4));
    palette.setColor(QPalette::PlaceholderText, QColor(0x75, 0x7d, 0x85));
    palette.setColor(QPalette::Highlight, accent);
    palette.setColor(QPalette::HighlightedText, Qt::white);
    application.setPalette(palette);
}

} // namespace board
