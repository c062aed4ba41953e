#pragma once

#include <QObject>

#include <platform/threading/Export.h>

namespace threading::impl
{

/// The Qt face of a future. It belongs to no thread: its signals are emitted on whichever thread finishes, cancels or
/// waits, so receivers that live in an event loop connect with a queued connection.
class PLATFORM_THREADING_EXPORT SharedStateSignals : public QObject
{
    Q_OBJECT

Q_SIGNALS:
    /// The future is finished; follows `canceled()` when it was cancelled.
    void finished();
    /// The future was cancelled.
    void canceled();
    /// A thread is about to block until the future is finished.
    void aboutToStartWaiting();
};

} // namespace threading::impl
