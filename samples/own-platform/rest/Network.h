#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <unordered_map>

#include <QObject>
#include <QThread>

#include "Exchange.h"

namespace rest
{

class Call;

/// The thread in which all access managers live. May be used from any thread. It ends with the application object, as
/// Qt's own threads have to.
class Network
{
public:
    using CallId = quint64;

    static std::shared_ptr<Network> instance();

    Network();
    Network(Network const&) = delete;
    Network& operator=(Network const&) = delete;
    ~Network();

    std::shared_ptr<QNetworkAccessManager> makeManager();
    CallId nextId() { return ++lastId_; }
    /// `done` is called in the network thread, or destroyed if the call is aborted or the thread has ended.
    void start(CallId id, Exchange exchange, std::function<void(Outcome)> done);
    void abort(CallId id);

private:
    void end();
    void post(std::function<void()> task);
    void begin(CallId id, Exchange exchange, std::function<void(Outcome)> done);

    std::atomic<CallId> lastId_{0};
    std::mutex mutex_;
    bool hasEnded_ = false;
    QThread thread_;
    QObject inThread_;
    std::unordered_map<CallId, Call*> calls_; ///< in the network thread only
};

} // namespace rest
