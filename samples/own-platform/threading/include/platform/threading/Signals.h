#pragma once

#include <QObject>

namespace threading::impl
{

/// The Qt face of a future. It lives in no thread: connect queued.
class SharedStateSignals : public QObject
{
    Q_OBJECT

Q_SIGNALS:
    void finished();
    void canceled();
    void aboutToStartWaiting();
};

} // namespace threading::impl
