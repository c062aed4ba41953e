#include "DetailsPane.h"

#include <QGridLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLocale>
#include <QTreeWidget>

#include "Look.h"

namespace board
{

namespace
{

QLabel* plainLabel()
{
    auto* const label = new QLabel;
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    return label;
}

QTreeWidget* list(char const* name, QString const& accessibleName, QStringList const& titles)
{
    auto* const tree = new QTreeWidget;
    tree->setObjectName(QLatin1String(name));
    tree->setAccessibleName(accessibleName);
    tree->setHeaderLabels(titles);
    tree->setRootIsDecorated(false);
    tree->setStyleSheet(QLatin1String(look::lists));
    tree->setWordWrap(true);
    tree->setSelectionMode(QAbstractItemView::NoSelection);
    tree->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    tree->header()->setStretchLastSection(false);
    return tree;
}

QString author(QString const& name, bool isOwn)
{
    return isOwn ? DetailsPane::tr("%1 (own)").arg(name) : name;
}

} // namespace

DetailsPane::DetailsPane(QWidget* parent)
    : QWidget(parent),
      title_(plainLabel()),
      subtitle_(plainLabel()),
      files_(list("files", tr("Files of the selected request"), {tr("File"), tr("Size"), tr("From")})),
      notes_(list("notes", tr("Notes on the selected request"), {tr("Time"), tr("From"), tr("Note")}))
{
    QFont font = title_->font();
    font.setBold(true);
    font.setPointSizeF(font.pointSizeF() * 1.3);
    title_->setFont(font);
    files_->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    notes_->header()->setSectionResizeMode(2, QHeaderView::Stretch);

    auto* const layout = new QGridLayout(this);
    layout->setContentsMargins(0, 6, 0, 0);
    layout->addWidget(title_, 0, 0, 1, 2);
    layout->addWidget(subtitle_, 1, 0, 1, 2);
    layout->addWidget(files_, 2, 0);
    layout->addWidget(notes_, 2, 1);
    layout->setColumnStretch(0, 1);
    layout->setColumnStretch(1, 1);
    layout->setRowStretch(2, 1);
    showRequest(nullptr);
}

void DetailsPane::showRequest(RequestRow const* request)
{
    files_->clear();
    notes_->clear();
    title_->setText(request == nullptr ? tr("No request selected") : tr("%1  %2").arg(request->key, request->patient));
    subtitle_->setText(request == nullptr ? QString() : tr("%1 \u00b7 %2").arg(request->kind, request->partner));
    if (request == nullptr)
    {
        return;
    }
    QLocale const locale;
    for (auto const& file : request->files)
    {
        QString const size = locale.formattedDataSize(static_cast<qint64>(file.size));
        files_->addTopLevelItem(new QTreeWidgetItem({file.name, size, author(file.createdBy, file.isCreator)}));
    }
    for (auto const& note : request->notes)
    {
        QString const time = locale.toString(note.createdAt.toLocalTime(), QLocale::ShortFormat);
        notes_->addTopLevelItem(new QTreeWidgetItem({time, author(note.createdBy, note.isCreator), note.text}));
    }
}

} // namespace board
