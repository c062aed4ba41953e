#pragma once

#include <memory>
#include <type_traits>
#include <utility>

#include <QCoreApplication>
#include <QFuture>
#include <QFutureWatcher>
#include <QPromise>

#include <KeloCommunicationLib/async/Bridge.h>
#include <platform/threading/Future.h>

/// The library's futures as Qt's, and the other way round. This header is for those who need it; no other brings it in.

namespace KeloCommunicationLib
{

namespace internal
{

/// Has `relay` cancel when `future` is cancelled. Qt tells of that in an event loop only: the application's here.
template <class T>
void watchForCancel(QFuture<T> const& future, std::shared_ptr<CancelRelay> const& relay)
{
    auto* const application = QCoreApplication::instance();
    if (application == nullptr || future.isFinished())
    {
        return;
    }
    auto const watch = [future, relay, application]
    {
        auto* const watcher = new QFutureWatcher<T>(application);
        QObject::connect(watcher, &QFutureWatcherBase::canceled, watcher, [relay] { relay->cancel(); });
        QObject::connect(watcher, &QFutureWatcherBase::finished, watcher, &QObject::deleteLater);
        watcher->setFuture(future);
    };
    QMetaObject::invokeMethod(application, watch);
}

template <class T>
void giveResult(QFuture<T> future, threading::Promise<T>& promise)
{
    // Throws what the future holds in the place of a result.
    future.waitForFinished();
    if constexpr (std::is_void_v<T>)
    {
        promise.setValue();
    }
    else if (future.resultCount() > 0)
    {
        promise.setValue(future.result());
    }
}

} // namespace internal

/// A QFuture that finishes when `future` does: with its value, or cancelled. Cancelling it cancels `future`, as soon as
/// the application's event loop comes to it; without an application nothing does. May be called from any thread.
template <class T>
QFuture<T> toQFuture(threading::Future<T> future)
{
    auto const promise = std::make_shared<QPromise<T>>();
    auto const relay = std::make_shared<internal::CancelRelay>();
    promise->start();
    QFuture<T> const result = promise->future();
    relay->reach(future);
    auto const last = std::move(future);
    last.then(
        [promise, relay](threading::Future<T> finished)
        {
            relay->forget();
            if (finished.isCanceled())
            {
                promise->future().cancel();
            }
            else if constexpr (!std::is_void_v<T>)
            {
                promise->addResult(internal::valueOf(std::move(finished)));
            }
            promise->finish();
        });
    internal::watchForCancel(result, relay);
    return result;
}

/// A future that finishes when `future` does: with a copy of its first result, or cancelled if it was cancelled, has
/// no result or holds an exception, which is logged. Cancelling it cancels `future`. Takes the place of the one
/// continuation that a QFuture has.
template <class T>
threading::Future<T> fromQFuture(QFuture<T> future)
{
    auto const promise = std::make_shared<threading::Promise<T>>();
    threading::Future<T> const result = promise->future();
    promise->onCancel([future]() mutable { future.cancel(); });
    future
        .then(
            QtFuture::Launch::Sync,
            [promise](QFuture<T> const& finished)
            {
                try
                {
                    internal::giveResult(finished, *promise);
                }
                catch (...)
                {
                    internal::logException("An exception ended a QFuture:");
                }
                // Which changes nothing if there was a result.
                promise->cancel();
            })
        .onCanceled([promise] { promise->cancel(); });
    return result;
}

} // namespace KeloCommunicationLib
