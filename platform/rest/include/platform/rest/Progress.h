#pragma once

#include <functional>
#include <memory>

#include <QtGlobal>

#include <platform/rest/Export.h>

namespace rest
{

/// How far one transfer has come, in bytes.
struct TransferProgress
{
    qint64 sent = 0;       ///< of the request's body, handed to the network
    qint64 toSend = 0;     ///< the request's whole body
    qint64 received = 0;   ///< of the answer's body, as it came: before decompression
    qint64 toReceive = -1; ///< the answer's whole body; -1 while that is unknown
    bool hasEnded = false; ///< the transfer's last report, whether it succeeded or not
};

using ProgressCallback = std::function<void(TransferProgress const&)>;

/// While it lives, the requests that its thread makes report to a callback:
///     rest::ProgressScope const watched([](rest::TransferProgress const& progress) { ... });
///     auto const future = connection->uploadOrderFile(reference, file.bytes());
/// A transfer reports at most ten times a second while it goes on, and once when it ends, before its future is
/// finished; a cancelled one ends without a report. None begins after the future is finished by the transport, or after
/// the host's call that cancels it has returned; one that is under way on another thread then comes to its end, which
/// the connection's destructor waits for. Received bytes start over at 0 when a redirect is followed or a GET repeated.
///
/// The callback runs on the I/O thread, for the last report of a download or of a large reply on a worker, and so
/// perhaps for several transfers at the same time; no lock is held. Be short: while it blocks, all transfers stand
/// still. What it throws is logged and goes no further. It is destroyed with the scope or after the last transfer that
/// it watches. Requests that continuations make for themselves are not watched.
///
/// Scopes nest; the innermost counts. An empty callback watches nothing.
class PLATFORM_REST_EXPORT ProgressScope
{
public:
    explicit ProgressScope(ProgressCallback callback);
    ProgressScope(ProgressScope const&) = delete;
    ProgressScope& operator=(ProgressScope const&) = delete;
    /// On the thread that made it.
    ~ProgressScope();

private:
    friend class Session;

    static std::shared_ptr<ProgressCallback const> current();

    std::shared_ptr<ProgressCallback const> outer_;
};

} // namespace rest
