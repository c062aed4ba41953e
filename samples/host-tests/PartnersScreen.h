#pragma once

#include <QObject>
#include <QStringList>

#include <KeloCommunicationLib/KeloCommunicationLib.h>

/// What a window with the partner platforms shows, without the window. It lives in the thread of the window.
class PartnersScreen : public QObject
{
    Q_OBJECT

public:
    enum class State : int
    {
        Loading,
        Shown,
        Empty,
        Failed
    };

    PartnersScreen(TessalyConnectionInterface const& connection, QString installation);
    ~PartnersScreen() override;

    /// Asks the service, unless that is being done already; "Try again" calls it, too.
    void load();

    State state() const { return state_; }

    QStringList const& names() const { return names_; }

    /// A sentence for the user; empty unless `state()` is `Failed`.
    QString const& error() const { return error_; }

Q_SIGNALS:
    void changed();

private:
    using Partners = rest::RestReply<std::vector<PartnerInfo>>;

    void show(threading::Future<Partners> const& finished);
    void setState(State state, QString const& error = {});

    TessalyConnectionInterface const& connection_;
    QString const installation_;
    threading::Future<Partners> reply_;
    State state_ = State::Empty;
    QStringList names_;
    QString error_;
};
