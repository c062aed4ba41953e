#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <list>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

#include <QByteArray>
#include <QUrl>

#include <testkit/TlsOptions.h>

namespace testkit
{

class ServerTls;
class ServerSocket;

using HeaderList = std::vector<std::pair<QByteArray, QByteArray>>;

/// One request as it came over the wire.
struct RawRequest
{
    QByteArray method;
    QByteArray target; ///< exactly as received
    HeaderList headers;
    QByteArray body;
    int connection = 0; ///< number of the TCP connection it came on, from 1
    int number = 0;     ///< number of the request at this server, from 1

    /// The first header of that name (any case); null if there is none.
    QByteArray header(QByteArray const& name) const;
};

/// What the server does with one request. Start from `reply`, `rawReply`, `closeNow`, `resetNow` or `stall`, then
/// refine:
///     return testkit::reply(200, "{}").inSlices(1, 20ms).thenClose();
struct Action
{
    enum class End : int
    {
        KeepOpen,
        Close,
        Reset,
        Stall
    };

    QByteArray bytes;    ///< written as they are
    QByteArray repeated; ///< written after `bytes`, again and again until the client goes away
    bool waitsForRelease = false;
    qsizetype heldBack = 0; ///< how many of the last bytes wait for release
    qsizetype sliceSize = 0;
    std::chrono::milliseconds sliceInterval{0};
    End end = End::KeepOpen;

    /// Only the first `count` bytes of the answer are sent (head included), then the connection is closed.
    Action truncatedTo(qsizetype count) const;
    /// Without the last `count` bytes, then the connection is closed.
    Action truncatedBy(qsizetype count) const;
    Action inSlices(qsizetype size, std::chrono::milliseconds interval) const;
    /// Nothing is sent before `RawServer::release()`.
    Action afterRelease() const;
    /// The last `count` bytes are not sent before `RawServer::release()`.
    Action holdingBack(qsizetype count) const;
    Action thenRepeat(QByteArray const& chunk) const;
    Action thenClose() const;
    /// A TCP reset in place of an orderly close.
    Action thenReset() const;
    /// The connection stays open and silent until the client closes it, `RawServer::release()` is called or the server
    /// ends.
    Action thenStall() const;
};

/// An answer with status line, Content-Length and the given headers (Content-Type: application/json unless given).
Action reply(int status, QByteArray const& body = "{}", HeaderList const& headers = {});
/// An answer given byte by byte.
Action rawReply(QByteArray const& bytes);
/// The request is read, the connection closed without an answer.
Action closeNow();
/// The request is read, the connection reset without an answer.
Action resetNow();
/// The request is read, nothing is sent; see `Action::thenStall`.
Action stall();

/// An HTTP/1.1 server on 127.0.0.1 at a free port, for tests. It runs in threads of its own from construction to
/// destruction, records every request, and answers each with what the script says.
class RawServer
{
public:
    /// Called on the connection's thread once a request was read completely.
    using Script = std::function<Action(RawRequest const&)>;

    struct Options
    {
        /// HTTPS; unless `tlsOptions` say otherwise with a certificate for 127.0.0.1 and localhost that this server has
        /// just signed itself.
        bool tls = false;
        /// Asked when a request's head was read, before its body; an action ends the matter there.
        std::function<std::optional<Action>(RawRequest const&)> onHead = {};
        TlsOptions tlsOptions = {};
    };

    /// Without a script every request is answered with status 200 and "{}".
    explicit RawServer(Script script = {});
    RawServer(Script script, Options options);
    RawServer(RawServer const&) = delete;
    RawServer& operator=(RawServer const&) = delete;
    ~RawServer();

    int port() const;
    /// "http://127.0.0.1:<port>" or https, followed by `path`.
    QUrl url(QString const& path = {}) const;

    /// TCP connections accepted so far.
    int connectionCount() const;
    /// Connections that the client ended, in order or by reset.
    int closedByClientCount() const;
    /// TLS connections that went on with the session of an earlier one.
    int resumedCount() const;
    /// Requests read so far. One that `onHead` ended counts, too.
    int requestCount() const;
    std::vector<RawRequest> requests() const;

    /// These wait for the count to be reached, at most 20 s; false when it was not.
    bool waitForRequests(int count) const;
    bool waitForConnections(int count) const;
    bool waitForClosedByClient(int count) const;
    /// Counts answers that have stalled or waited for release, whether they still do or not.
    bool waitForHeld(int count) const;
    /// Counts answers that are through with all that follows them, the end of the connection included.
    bool waitForAnswered(int count) const;

    /// Lets go of everything that stalls or waits for release, now and later.
    void release();

private:
    enum class Outcome : int
    {
        Open,
        ClosedByServer,
        ClosedByClient
    };
    struct Peer;
    struct Counters
    {
        int connections = 0;
        int closedByClient = 0;
        int held = 0;
        int answered = 0;
        int resumed = 0;
        std::vector<RawRequest> requests;
        bool released = false;
        bool stopping = false;
    };

    void acceptLoop();
    void serve(Peer& peer, int number);
    std::optional<RawRequest> readRequest(
        ServerSocket& socket, QByteArray& buffer, int connection, std::optional<Action>& early);
    Outcome answer(ServerSocket& socket, QByteArray& buffer, int connection);
    Outcome perform(ServerSocket& socket, Action const& action);
    bool sendSlices(ServerSocket& socket, Action const& action);
    /// False when the client has closed the connection meanwhile.
    bool awaitRelease(ServerSocket& socket);
    int record(RawRequest const& request);
    template <class Condition>
    bool waitFor(Condition condition) const;

    Script script_;
    Options options_;
    std::unique_ptr<ServerTls> tls_;
    int port_ = 0;
    int listener_ = -1;
    int releaseEvent_ = -1;
    mutable std::mutex mutex_;
    mutable std::condition_variable changed_;
    Counters counters_;
    std::list<Peer> peers_;
    std::thread acceptor_;
};

} // namespace testkit
