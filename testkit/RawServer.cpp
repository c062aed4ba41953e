#include <testkit/RawServer.h>

#include <algorithm>
#include <csignal>
#include <stdexcept>

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

#include <testkit/ServerSocket.h>

namespace testkit
{

namespace
{

constexpr std::chrono::seconds patience{20};

// A write to a connection that the client has closed must not end the test program.
void blockBrokenPipeSignal()
{
    sigset_t brokenPipe;
    sigemptyset(&brokenPipe);
    sigaddset(&brokenPipe, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &brokenPipe, nullptr);
}

RawRequest parseHead(QByteArray const& head)
{
    RawRequest request;
    QList<QByteArray> lines = head.split('\n');
    QList<QByteArray> const start = lines.takeFirst().trimmed().split(' ');
    request.method = start.value(0);
    request.target = start.value(1);
    for (QByteArray const& line : lines)
    {
        if (qsizetype const colon = line.indexOf(':'); colon > 0)
        {
            request.headers.emplace_back(line.left(colon), line.mid(colon + 1).trimmed());
        }
    }
    return request;
}

} // namespace

QByteArray RawRequest::header(QByteArray const& name) const
{
    auto const found = std::find_if(
        headers.begin(), headers.end(),
        [&name](auto const& header) { return header.first.compare(name, Qt::CaseInsensitive) == 0; });
    return found != headers.end() ? found->second : QByteArray();
}

Action Action::truncatedTo(qsizetype count) const
{
    Action action = thenClose();
    action.bytes = bytes.left(count);
    return action;
}

Action Action::truncatedBy(qsizetype count) const
{
    return truncatedTo(bytes.size() - count);
}

Action Action::inSlices(qsizetype size, std::chrono::milliseconds interval) const
{
    Action action = *this;
    action.sliceSize = size;
    action.sliceInterval = interval;
    return action;
}

Action Action::afterRelease() const
{
    Action action = *this;
    action.waitsForRelease = true;
    return action;
}

Action Action::holdingBack(qsizetype count) const
{
    Action action = *this;
    action.heldBack = count;
    return action;
}

Action Action::thenRepeat(QByteArray const& chunk) const
{
    Action action = *this;
    action.repeated = chunk;
    return action;
}

Action Action::thenClose() const
{
    Action action = *this;
    action.end = End::Close;
    return action;
}

Action Action::thenReset() const
{
    Action action = *this;
    action.end = End::Reset;
    return action;
}

Action Action::thenStall() const
{
    Action action = *this;
    action.end = End::Stall;
    return action;
}

Action reply(int status, QByteArray const& body, HeaderList const& headers)
{
    QByteArray head = "HTTP/1.1 " + QByteArray::number(status) + " Status\r\n";
    head += "Content-Length: " + QByteArray::number(body.size()) + "\r\n";
    bool typed = false;
    for (auto const& [name, value] : headers)
    {
        head += name + ": " + value + "\r\n";
        typed = typed || name.compare("Content-Type", Qt::CaseInsensitive) == 0;
    }
    if (!typed)
    {
        head += "Content-Type: application/json\r\n";
    }
    return rawReply(head + "\r\n" + body);
}

Action rawReply(QByteArray const& bytes)
{
    Action action;
    action.bytes = bytes;
    return action;
}

Action closeNow()
{
    return Action().thenClose();
}

Action resetNow()
{
    return Action().thenReset();
}

Action stall()
{
    return Action().thenStall();
}

struct RawServer::Peer
{
    explicit Peer(int descriptor) : socket(descriptor) {}

    ServerSocket socket;
    std::thread thread;
};

RawServer::RawServer(Script script) : RawServer(std::move(script), Options()) {}

RawServer::RawServer(Script script, Options options)
    : script_(std::move(script)),
      options_(std::move(options)),
      tls_(options_.tls ? std::make_unique<ServerTls>(options_.tlsOptions) : nullptr),
      listener_(listenOnLoopback(port_)),
      releaseEvent_(::eventfd(0, EFD_CLOEXEC)),
      acceptor_([this] { acceptLoop(); })
{
}

RawServer::~RawServer()
{
    {
        std::lock_guard const lock(mutex_);
        counters_.stopping = true;
        for (Peer& peer : peers_)
        {
            peer.socket.shutDown();
        }
    }
    release();
    ::shutdown(listener_, SHUT_RDWR);
    acceptor_.join();
    for (Peer& peer : peers_)
    {
        peer.thread.join();
    }
    ::close(listener_);
    ::close(releaseEvent_);
}

int RawServer::port() const
{
    return port_;
}

QUrl RawServer::url(QString const& path) const
{
    return QUrl(QStringLiteral("%1://127.0.0.1:%2%3").arg(options_.tls ? "https" : "http").arg(port_).arg(path));
}

int RawServer::connectionCount() const
{
    std::lock_guard const lock(mutex_);
    return counters_.connections;
}

int RawServer::closedByClientCount() const
{
    std::lock_guard const lock(mutex_);
    return counters_.closedByClient;
}

int RawServer::resumedCount() const
{
    std::lock_guard const lock(mutex_);
    return counters_.resumed;
}

int RawServer::requestCount() const
{
    std::lock_guard const lock(mutex_);
    return static_cast<int>(counters_.requests.size());
}

std::vector<RawRequest> RawServer::requests() const
{
    std::lock_guard const lock(mutex_);
    return counters_.requests;
}

template <class Condition>
bool RawServer::waitFor(Condition condition) const
{
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, patience, condition);
}

bool RawServer::waitForRequests(int count) const
{
    return waitFor([this, count] { return static_cast<int>(counters_.requests.size()) >= count; });
}

bool RawServer::waitForConnections(int count) const
{
    return waitFor([this, count] { return counters_.connections >= count; });
}

bool RawServer::waitForClosedByClient(int count) const
{
    return waitFor([this, count] { return counters_.closedByClient >= count; });
}

bool RawServer::waitForHeld(int count) const
{
    return waitFor([this, count] { return counters_.held >= count; });
}

bool RawServer::waitForAnswered(int count) const
{
    return waitFor([this, count] { return counters_.answered >= count; });
}

void RawServer::release()
{
    {
        std::lock_guard const lock(mutex_);
        counters_.released = true;
    }
    ::eventfd_write(releaseEvent_, 1);
    changed_.notify_all();
}

void RawServer::acceptLoop()
{
    blockBrokenPipeSignal();
    for (;;)
    {
        int const descriptor = ::accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
        std::lock_guard const lock(mutex_);
        if (descriptor < 0 || counters_.stopping)
        {
            if (descriptor >= 0)
            {
                ::close(descriptor);
            }
            return;
        }
        int const on = 1;
        ::setsockopt(descriptor, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
        int const number = ++counters_.connections;
        Peer& peer = peers_.emplace_back(descriptor);
        peer.thread = std::thread([this, &peer, number] { serve(peer, number); });
        changed_.notify_all();
    }
}

void RawServer::serve(Peer& peer, int number)
{
    bool const greeted = tls_ == nullptr || peer.socket.startTls(*tls_);
    QByteArray buffer;
    Outcome outcome = greeted ? Outcome::Open : Outcome::ClosedByClient;
    std::unique_lock lock(mutex_);
    counters_.resumed += greeted && peer.socket.isResumed() ? 1 : 0;
    while (outcome == Outcome::Open)
    {
        lock.unlock();
        outcome = answer(peer.socket, buffer, number);
        lock.lock();
        counters_.answered += outcome == Outcome::Open ? 1 : 0;
        changed_.notify_all();
    }
    if (outcome == Outcome::ClosedByClient)
    {
        // Frees the client's port at once; thousands of repetitions would use up all of them.
        peer.socket.resetOnClose();
    }
    peer.socket.close();
    counters_.answered += outcome == Outcome::ClosedByServer ? 1 : 0;
    counters_.closedByClient += outcome == Outcome::ClosedByClient && !counters_.stopping ? 1 : 0;
    changed_.notify_all();
}

RawServer::Outcome RawServer::answer(ServerSocket& socket, QByteArray& buffer, int connection)
{
    std::optional<Action> early;
    std::optional<RawRequest> const request = readRequest(socket, buffer, connection, early);
    if (!request)
    {
        return Outcome::ClosedByClient;
    }
    if (early)
    {
        return perform(socket, *early);
    }
    return perform(socket, script_ ? script_(*request) : reply(200));
}

std::optional<RawRequest> RawServer::readRequest(
    ServerSocket& socket, QByteArray& buffer, int connection, std::optional<Action>& early)
{
    qsizetype end = -1;
    while ((end = buffer.indexOf("\r\n\r\n")) < 0)
    {
        if (!socket.readSome(buffer))
        {
            return std::nullopt;
        }
    }
    RawRequest request = parseHead(buffer.left(end));
    request.connection = connection;
    buffer.remove(0, end + 4);
    early = options_.onHead ? options_.onHead(request) : std::nullopt;
    qsizetype const length = early ? 0 : request.header("Content-Length").toLongLong();
    while (buffer.size() < length)
    {
        if (!socket.readSome(buffer))
        {
            return std::nullopt;
        }
    }
    request.body = buffer.left(length);
    buffer.remove(0, length);
    request.number = record(request);
    return request;
}

int RawServer::record(RawRequest const& request)
{
    std::lock_guard const lock(mutex_);
    counters_.requests.push_back(request);
    auto const number = static_cast<int>(counters_.requests.size());
    counters_.requests.back().number = number;
    changed_.notify_all();
    return number;
}

RawServer::Outcome RawServer::perform(ServerSocket& socket, Action const& action)
{
    if (action.waitsForRelease && !awaitRelease(socket))
    {
        return Outcome::ClosedByClient;
    }
    qsizetype const first = action.bytes.size() - action.heldBack;
    bool open = action.sliceSize > 0 ? sendSlices(socket, action) : socket.writeAll(action.bytes.left(first));
    if (open && action.heldBack > 0)
    {
        open = awaitRelease(socket) && socket.writeAll(action.bytes.mid(first));
    }
    while (open && !action.repeated.isEmpty())
    {
        open = socket.writeAll(action.repeated);
    }
    if (!open)
    {
        return Outcome::ClosedByClient;
    }
    switch (action.end)
    {
    case Action::End::KeepOpen:
        return Outcome::Open;
    case Action::End::Stall:
        awaitRelease(socket);
        return Outcome::Open;
    case Action::End::Reset:
        socket.resetOnClose();
        return Outcome::ClosedByServer;
    case Action::End::Close:
        break;
    }
    return Outcome::ClosedByServer;
}

bool RawServer::sendSlices(ServerSocket& socket, Action const& action)
{
    for (qsizetype sent = 0; sent < action.bytes.size(); sent += action.sliceSize)
    {
        if (!socket.writeAll(action.bytes.mid(sent, action.sliceSize)))
        {
            return false;
        }
        std::unique_lock lock(mutex_);
        changed_.wait_for(lock, action.sliceInterval, [this] { return counters_.stopping; });
    }
    return true;
}

bool RawServer::awaitRelease(ServerSocket& socket)
{
    {
        std::lock_guard const lock(mutex_);
        ++counters_.held;
        changed_.notify_all();
    }
    return !socket.waitForCloseOr(releaseEvent_);
}

} // namespace testkit
