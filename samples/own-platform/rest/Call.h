#pragma once

#include <functional>

#include <QDateTime>
#include <QObject>
#include <QTimer>

#include "Exchange.h"

namespace rest
{

/// One exchange while it is under way, and those it is redirected to; belongs to the network thread. Deleting it aborts
/// it.
class Call : public QObject
{
public:
    /// `done` is called at the end.
    Call(Exchange exchange, std::function<void(Outcome)> done);
    ~Call() override;

private:
    void start();
    QNetworkReply* send();
    void read();
    void handleProgress();
    void handleTimeout();
    void fail(QNetworkReply::NetworkError error, QString const& text);
    void finish();
    bool follow();
    bool isAnswered() const;
    QString sentence(QString const& what) const;

    Exchange exchange_;
    std::function<void(Outcome)> done_;
    Outcome outcome_;
    QDateTime startTime_;
    QTimer timer_;
    QNetworkReply* reply_ = nullptr;
    bool isSent_ = false; ///< and does not wait for its turn any more
    int redirects_ = 0;
};

} // namespace rest
