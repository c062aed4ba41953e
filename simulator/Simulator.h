#pragma once

#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace simulator
{

namespace faults
{
class FaultProxy;
}

struct SimulatorOptions
{
    int port = 0;              ///< 0: any free one
    unsigned seed = 1;         ///< of the data it starts with
    bool tls = false;          ///< HTTPS with a certificate made at start
    QString certificateFile;   ///< where that certificate is written to; empty: a temporary file
    QString username = "kelo"; ///< HTTP Basic; empty: no credentials are asked for
    QString password = "kelo";
    std::optional<quint64> faultSeed;        ///< set: a fault proxy stands in front; its chance is drawn from this seed
    std::size_t workerThreads = 64;          ///< how many connections can be open at once; each one keeps its thread
    std::function<void(QString const&)> log; ///< gets a line for every request answered, from any thread
};

/// A KELO service for one desk: keeps its state in memory, listens on the loopback interface, and can be driven over
/// "/_control/" (see Control.h). Safe to start in the process that tests against it; SIGPIPE is ignored from then on.
class Simulator
{
public:
    explicit Simulator(SimulatorOptions options = {});
    /// Stops a running service.
    ~Simulator();
    Simulator(Simulator const&) = delete;
    Simulator& operator=(Simulator const&) = delete;

    /// Listens on 127.0.0.1 and returns the base URL, "http://127.0.0.1:PORT" (https with TLS). Empty: the port cannot
    /// be had. A simulator starts once.
    QString start();
    /// Closes all connections, ends waiting answers and returns when no thread is left.
    void stop();

    /// The PEM file with the certificate that clients must trust; a temporary one exists as long as this object. Empty
    /// without TLS.
    QString certificateFile() const;

    /// The address behind the fault proxy; what `start` returned if there is none.
    QString directUrl() const;
    /// The fault proxy in front; null without one. Exists from `start` to `stop`.
    faults::FaultProxy* faultProxy() const;
    /// A fault as text (faults/FaultText.h), at the fault proxy or in the service, from now on. Throws std::exception
    /// naming what is not understood.
    void addFault(QString const& text);
    /// Ends all faults of both kinds.
    void clearFaults();

private:
    class Server;
    std::unique_ptr<Server> server_;
};

} // namespace simulator
