#pragma once

#include <QByteArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QString>

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace simulator
{

namespace faults
{
class FaultProxy;
}

/// An HTTP archive, as `kelo --trace` and the network panel of a browser write it.
struct RecordedFile
{
    static constexpr qsizetype mostBytes = 256 << 20; ///< of a file

    QString name = {}; ///< for messages
    QByteArray har = {};
};

struct SimulatorOptions
{
    int port = 0;                 ///< 0: any free one
    unsigned seed = 1;            ///< of the data it starts with
    bool tls = false;             ///< HTTPS with a certificate made at start
    QString certificateFile = {}; ///< where that certificate is written to; empty: a temporary file
    QString username = "kelo";    ///< HTTP Basic; empty: no credentials are asked for
    QString password = "kelo";
    std::optional<quint64> faultSeed = {}; ///< set: a fault proxy stands in front; its chance is drawn from this seed
    std::size_t workerThreads = 1024;      ///< how many connections can be open at once; each one keeps a thread
    QString listenAddress = "127.0.0.1";   ///< an IPv4 address of this machine, or 0.0.0.0 for all of them
    QString basePath = {};                 ///< what the service's paths stand below, as "/api/v1"
    QByteArray state = {}; ///< the data it starts with, as `control("GET", "state")` tells them; empty: from the seed
    /// Recordings of which one service is made that answers what was answered then, to any credentials; it keeps no
    /// data.
    std::vector<RecordedFile> recordings = {};
    bool recordedDelays = false;                        ///< its answers take as long as they took
    std::function<void(QString const&)> unmatched = {}; ///< gets a line for every request that is not in the recordings
    std::function<void(QString const&)> log = {};       ///< gets a line for every request answered, from any thread
};

/// A KELO service for one desk: keeps its state in memory, listens on the loopback interface unless told otherwise, and
/// can be driven by the functions below or, from other programs, over "/_control", which lists its resources. The data
/// it starts with are those of the installation "INST-1001". Safe to start in the process that tests against it;
/// SIGPIPE is ignored from then on. But for `start` and `stop`, all functions may be called from any thread.
class Simulator
{
public:
    /// Throws std::exception naming what is wrong with the options.
    explicit Simulator(SimulatorOptions options = {});
    /// Stops a running service.
    ~Simulator();
    Simulator(Simulator const&) = delete;
    Simulator& operator=(Simulator const&) = delete;

    /// Listens and returns the base URL, "http://127.0.0.1:PORT" (https with TLS) with the base path. Empty: the port
    /// cannot be had. A simulator starts once.
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
    /// A fault as `kelo-simulator --fault` takes it, from now on: of the line, at the fault proxy
    /// ("latency:latency=200,stream=upstream"), or of the service ("status:operation=getPartners,status=503,times=2").
    /// Throws std::exception naming what is not understood.
    void addFault(QString const& text);
    /// Ends all faults of both kinds.
    void clearFaults();

    /// As freshly started with the data of this seed, or with those it started with: no journal, no faults of the
    /// service.
    void reset(std::optional<unsigned> seed = {});
    /// What others do meanwhile, and what came of it. The partner: `{"Action": "note", "RequestId": ..., "Text": ...}`,
    /// "addFile" ("Name", "FileType", "Size"), "status" ("Status"), "reply" (all three), "withdraw", and "create"
    /// ("Type", "ConnectionId"). The service: "advanceOrder" (the order in "Reference" gets to its next state). Throws
    /// std::invalid_argument naming what does not fit.
    QJsonObject partnerAction(QJsonObject const& action);
    /// Every request with its answer in the order of arrival, and how often each was made:
    /// `{"Requests": [...], "Counts": {"GET /Installations/INST-1001/partners": 2}, "Dropped": 0}`
    QJsonObject journal() const;
    /// Throws std::invalid_argument with the difference if the journal does not hold what is expected:
    /// `{"Requests": [{"Operation": "createOrder", "Exactly": 1}], "InOrder": ["createOrder", "uploadOrderFile"]}`
    void verify(QJsonObject const& expected) const;
    /// Any control resource by its name below "/_control/", such as ("GET", "orders") or ("DELETE", "journal"), or
    /// by an empty name their list; an empty document if it answers nothing. Throws std::invalid_argument with its
    /// message if it refuses.
    QJsonDocument control(QByteArray const& method, QString const& resource, QJsonObject const& body = {}) const;

private:
    class Server;
    std::unique_ptr<Server> server_;
};

} // namespace simulator
