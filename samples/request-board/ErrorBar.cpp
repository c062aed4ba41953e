#include "ErrorBar.h"

#include <QAccessible>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

#include "Look.h"

namespace board
{

QString reasonOf(rest::RestReplyStatus const& status)
{
    QString const detail = status.message.isEmpty() ? QString() : QStringLiteral(": ") + status.message;
    if (status.kind == 1)
    {
        return ErrorBar::tr("The service cannot be reached") + detail;
    }
    if (status.httpStatus == 401 || status.httpStatus == 403)
    {
        return ErrorBar::tr("The service does not accept the user name or the password (HTTP %1)")
            .arg(status.httpStatus);
    }
    return ErrorBar::tr("The service answered with an error (HTTP %1)").arg(status.httpStatus) + detail;
}

ErrorBar::ErrorBar(QWidget* parent) : QFrame(parent), text_(new QLabel)
{
    setObjectName(QStringLiteral("errorBar"));
    setAccessibleName(tr("Error"));
    setStyleSheet(QLatin1String(look::errorBar));
    // Whatever the service says is text, not markup.
    text_->setTextFormat(Qt::PlainText);
    text_->setWordWrap(true);
    text_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto* const button = new QPushButton(tr("Try &again"));
    button->setObjectName(QStringLiteral("tryAgain"));
    connect(button, &QPushButton::clicked, this, &ErrorBar::tryAgain);

    auto* const layout = new QHBoxLayout(this);
    layout->addWidget(text_, 1);
    layout->addWidget(button, 0, Qt::AlignVCenter);
    hide();
}

void ErrorBar::tell(QString const& reason)
{
    reason_ = reason;
    showText();
    show();
    QAccessibleEvent alert(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

void ErrorBar::setOutlook(QString const& outlook)
{
    outlook_ = outlook;
    showText();
}

void ErrorBar::showText()
{
    text_->setText(outlook_.isEmpty() ? reason_ : reason_ + u'\n' + outlook_);
    setAccessibleDescription(text_->text());
}

} // namespace board
