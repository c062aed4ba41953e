#pragma once

#include <QFrame>
#include <QString>

#include <platform/rest/RestReply.h>

class QLabel;

namespace board
{

/// Why a call failed, in a sentence for the user.
QString reasonOf(rest::RestReplyStatus const& status);

/// Tells that a refresh has failed, and why. Hidden until there is something to tell.
class ErrorBar : public QFrame
{
    Q_OBJECT

public:
    explicit ErrorBar(QWidget* parent = nullptr);

    void tell(QString const& reason);
    /// What is done about it, behind the reason.
    void setOutlook(QString const& outlook);

Q_SIGNALS:
    /// The user does not want to wait.
    void tryAgain();

private:
    void showText();

    QLabel* text_;
    QString reason_;
    QString outlook_;
};

} // namespace board
