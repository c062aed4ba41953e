#pragma once

#include <QHash>
#include <QIcon>
#include <QObject>
#include <QSet>
#include <QString>

#include <KeloCommunicationLib/connection/TessalyConnectionInterface.h>

namespace board
{

/// Fetches each partner's logo once. One that cannot be had is asked for three times at most: that it is missing looks
/// like a line that was down.
class Logos : public QObject
{
    Q_OBJECT

public:
    /// Uses `connection`, which must outlive this object.
    explicit Logos(TessalyConnectionInterface const& connection, QObject* parent = nullptr);

    /// Has `ready` emitted once the logo is there, unless that has happened or is about to.
    void want(QString const& partnerId);

Q_SIGNALS:
    void ready(QString const& partnerId, QIcon const& logo);

private:
    TessalyConnectionInterface const& connection_;
    QSet<QString> settled_;        ///< there, on their way, or given up
    QHash<QString, int> failures_; ///< by partner
};

} // namespace board
