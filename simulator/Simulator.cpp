#include "simulator/Simulator.h"

#include "simulator/Service.h"
#include "simulator/Sockets.h"
#include "simulator/Workers.h"
#include "simulator/faults/FaultProxy.h"
#include "simulator/faults/FaultText.h"
#include "simulator/faults/FindByName.h"
#include "simulator/faults/ServiceFaultKinds.h"
#include "simulator/faults/ToxicKinds.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QLocale>
#include <QTemporaryFile>

#include <httplib.h>

#include <sys/file.h>
#include <sys/socket.h>

#include <testkit/Certificates.h>

#include <thread>

namespace simulator
{

namespace
{

constexpr char const* loopback = "127.0.0.1";

QByteArray bytes(std::string const& text)
{
    return QByteArray::fromStdString(text);
}

/// Now, as HTTP writes it.
QByteArray httpDate()
{
    return QLocale::c()
        .toString(QDateTime::currentDateTimeUtc(), QStringLiteral("ddd, dd MMM yyyy hh:mm:ss 'GMT'"))
        .toLatin1();
}

HttpRequest headOf(httplib::Request const& request)
{
    HttpRequest head = {.method = bytes(request.method), .target = bytes(request.target)};
    for (auto const& [name, value] : request.headers)
    {
        // The HTTP library's own notes on the connection.
        if (!name.starts_with("REMOTE_") && !name.starts_with("LOCAL_"))
        {
            head.headers.emplace_back(bytes(name), bytes(value));
        }
    }
    return head;
}

/// A request that announces no body has none; the HTTP library would wait for one until its time is over.
bool hasBody(httplib::Request const& request)
{
    return request.has_header("Content-Length") || request.has_header("Transfer-Encoding");
}

bool hasLength(httplib::Request const& request)
{
    auto const text = request.get_header_value("Content-Length");
    constexpr std::size_t mostDigits = 18;
    return text.size() <= mostDigits && text.find_first_not_of("0123456789") == std::string::npos;
}

/// Takes the body in as it arrives; false when it does not arrive in full.
bool receiveBody(httplib::Request const& request, httplib::ContentReader const& read, HttpRequest& received)
{
    if (request.is_multipart_form_data())
    {
        // No resource takes forms: they count as an empty body.
        return read(
            [](httplib::MultipartFormData const&) { return true; }, [](char const*, std::size_t) { return true; });
    }
    QCryptographicHash md5(QCryptographicHash::Md5);
    auto const most = received.target.contains("/_control/") ? HttpRequest::keptControlBytes : HttpRequest::keptBytes;
    auto const take = [&](char const* data, std::size_t size)
    {
        auto const length = static_cast<qsizetype>(size);
        md5.addData(QByteArrayView(data, length));
        received.bodySize += length;
        received.body.append(data, std::min(length, most - received.body.size()));
        return true;
    };
    auto const isComplete = !hasBody(request) || read(take);
    received.bodyMd5 = md5.result().toHex();
    return isComplete;
}

constexpr auto certificateNames = "kelo-simulator-*.pem";

/// Takes away what simulators that were killed have left behind: nobody holds it.
void removeAbandonedCertificates()
{
    auto const files = QDir::temp().entryInfoList({certificateNames}, QDir::Files | QDir::NoSymLinks);
    for (auto const& info : files)
    {
        // One that was made just now may not be held yet.
        auto const isOld = info.lastModified().secsTo(QDateTime::currentDateTime()) > 60;
        QFile file(info.filePath());
        if (isOld && file.open(QIODevice::ReadOnly) && ::flock(file.handle(), LOCK_EX | LOCK_NB) == 0)
        {
            file.remove();
        }
    }
}

} // namespace

class Simulator::Server
{
public:
    explicit Server(SimulatorOptions options);
    ~Server() { stop(); }

    QString start();
    void stop();
    QString certificateFile() const { return certificateFile_ ? certificateFile_->fileName() : QString(); }
    QString directUrl() const { return urlOf(port_, proxy_ ? QByteArray(loopback) : address()); }
    faults::FaultProxy* faultProxy() const { return proxy_.get(); }
    Service& service() { return service_; }

private:
    QString urlOf(int port, QByteArray const& host) const;
    QByteArray address() const { return options_.listenAddress.toLatin1(); }
    void makeHttpServer();
    void writeCertificate(QByteArray const& pem);
    void prepareSocket(int socket);
    void addHandlers();
    void answer(httplib::Request const& request, HttpRequest const& received, httplib::Response& response);
    void writeRaw(RawBytes const& raw, int clientPort) const;

    SimulatorOptions const options_;
    Service service_;
    std::unique_ptr<QFile> certificateFile_;
    std::unique_ptr<httplib::Server> http_;
    int listeningSocket_ = -1;
    int port_ = -1;
    std::unique_ptr<faults::FaultProxy> proxy_;
    std::thread thread_;
};

Simulator::Server::Server(SimulatorOptions options) : options_(std::move(options)), service_(options_)
{
    makeHttpServer();
    http_->new_task_queue = [threads = options_.workerThreads] { return new Workers(threads); };
    http_->set_tcp_nodelay(true);
    http_->set_keep_alive_max_count(1'000'000);
    http_->set_keep_alive_timeout(60);
    http_->set_socket_options([this](int socket) { prepareSocket(socket); });
    addHandlers();
}

void Simulator::Server::makeHttpServer()
{
    if (!options_.tls)
    {
        http_ = std::make_unique<httplib::Server>();
        return;
    }
    using std::chrono::hours;
    auto const key = testkit::makeKey();
    auto const certificate =
        testkit::makeCertificate({.validFrom = hours(-24), .validUntil = hours(365 * 24)}, key.get());
    auto tlsServer = std::make_unique<httplib::SSLServer>(certificate.get(), key.get());
    SSL_CTX_set_min_proto_version(tlsServer->ssl_context(), TLS1_2_VERSION);
    http_ = std::move(tlsServer);
    writeCertificate(testkit::toPem(certificate.get()));
}

void Simulator::Server::writeCertificate(QByteArray const& pem)
{
    if (options_.certificateFile.isEmpty())
    {
        removeAbandonedCertificates();
        auto const name = QString(certificateNames).replace('*', "XXXXXX");
        certificateFile_ = std::make_unique<QTemporaryFile>(QDir::temp().filePath(name));
    }
    else
    {
        certificateFile_ = std::make_unique<QFile>(options_.certificateFile);
    }
    QFile& file = *certificateFile_;
    if (!file.open(QIODevice::ReadWrite | QIODevice::Truncate) || file.write(pem) < 0 || !file.flush())
    {
        throw std::runtime_error("cannot write the certificate file: " + file.errorString().toStdString());
    }
    ::flock(file.handle(), LOCK_SH);
}

void Simulator::Server::prepareSocket(int socket)
{
    // Unlike the HTTP library's own choice, this keeps a second simulator from sharing the port unnoticed.
    int const yes = 1;
    ::setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
    listeningSocket_ = socket;
}

void Simulator::Server::addHandlers()
{
    auto const withoutBody = [this](httplib::Request const& request, httplib::Response& response)
    { answer(request, headOf(request), response); };
    auto const withBody =
        [this](httplib::Request const& request, httplib::Response& response, httplib::ContentReader const& read)
    {
        auto received = headOf(request);
        // The HTTP library answers by itself when the body is cut off.
        if (receiveBody(request, read, received))
        {
            answer(request, received, response);
        }
    };
    http_->Get(".*", withoutBody);
    http_->Options(".*", withoutBody);
    http_->Post(".*", withBody);
    http_->Put(".*", withBody);
    http_->Patch(".*", withBody);
    http_->Delete(".*", withBody);
    http_->set_pre_routing_handler(
        [](httplib::Request const& request, httplib::Response& response)
        {
            using enum httplib::Server::HandlerResponse;
            response.status = hasLength(request) ? response.status : 400;
            return hasLength(request) ? Unhandled : Handled;
        });
    // What the HTTP library turns down by itself has no body yet.
    http_->set_error_handler(
        [](httplib::Request const&, httplib::Response& response)
        {
            if (!response.has_header("Content-Type"))
            {
                auto const error =
                    errorAnswer(response.status, QString::number(response.status * 10), "The request cannot be read");
                response.set_content(error.body.toStdString(), error.contentType.toStdString());
            }
        });
}

void Simulator::Server::answer(
    httplib::Request const& request, HttpRequest const& received, httplib::Response& response)
{
    auto const answer = service_.handle(received);
    if (answer.raw)
    {
        writeRaw(*answer.raw, request.remote_port);
    }
    if (answer.dropped || (answer.raw && !answer.raw->isInterim))
    {
        // The HTTP library always writes an answer; on a connection that is shut down it reaches nobody.
        shutdownConnections(port_, request.remote_port);
        return;
    }
    // The HTTP library makes 206 of 200 by itself where a part is asked for.
    if (answer.status != 200 || request.method != "GET")
    {
        response.status = answer.status;
    }
    for (auto const& [name, value] : answer.headers)
    {
        response.set_header(name.toStdString(), value.toStdString());
    }
    response.set_header("Date", httpDate().toStdString());
    if (answer.status == 401)
    {
        response.set_header("WWW-Authenticate", "Basic realm=\"KELO\"");
    }
    if (answer.status != 204)
    {
        // A recorded answer may have none.
        auto const type = answer.contentType.isEmpty() ? "application/octet-stream" : answer.contentType;
        response.set_content(answer.body.toStdString(), type.toStdString());
    }
}

void Simulator::Server::writeRaw(RawBytes const& raw, int clientPort) const
{
    auto isOpen = sendOnConnection(port_, clientPort, raw.bytes);
    while (isOpen && !raw.repeated.isEmpty())
    {
        isOpen = sendOnConnection(port_, clientPort, raw.repeated);
    }
}

QString Simulator::Server::start()
try
{
    // With a fault proxy in front, clients come to its address.
    auto const wanted = options_.faultSeed ? 0 : options_.port;
    std::string const host = options_.faultSeed ? loopback : address().toStdString();
    port_ = wanted == 0 ? http_->bind_to_any_port(host) : http_->bind_to_port(host, wanted) ? wanted : -1;
    if (port_ < 0)
    {
        return {};
    }
    // The HTTP library queues five clients at most, which makes the sixth wait a second for its next attempt.
    ::listen(listeningSocket_, SOMAXCONN);
    thread_ = std::thread([this] { http_->listen_after_bind(); });
    while (!http_->is_running())
    {
        std::this_thread::yield();
    }
    if (options_.faultSeed)
    {
        proxy_ = std::make_unique<faults::FaultProxy>(port_, *options_.faultSeed, options_.port, address());
        service_.setFaultProxy(proxy_.get());
    }
    return urlOf(proxy_ ? proxy_->port() : port_, address());
}
catch (std::runtime_error const&)
{
    stop();
    return {};
}

QString Simulator::Server::urlOf(int port, QByteArray const& host) const
{
    auto const shown = host == "0.0.0.0" ? QByteArray(loopback) : host;
    return QStringLiteral("%1://%2:%3%4")
        .arg(
            QLatin1String(options_.tls ? "https" : "http"), QString::fromLatin1(shown), QString::number(port),
            QString::fromUtf8(service_.basePath()));
}

void Simulator::Server::stop()
{
    if (!thread_.joinable())
    {
        return;
    }
    service_.stopWaiting();
    service_.setFaultProxy(nullptr);
    proxy_.reset();
    http_->stop();
    shutdownConnections(port_);
    thread_.join();
}

Simulator::Simulator(SimulatorOptions options) : server_(std::make_unique<Server>(std::move(options))) {}

Simulator::~Simulator() = default;

QString Simulator::start()
{
    return server_->start();
}

void Simulator::stop()
{
    server_->stop();
}

QString Simulator::certificateFile() const
{
    return server_->certificateFile();
}

QString Simulator::directUrl() const
{
    return server_->directUrl();
}

faults::FaultProxy* Simulator::faultProxy() const
{
    return server_->faultProxy();
}

void Simulator::clearFaults()
{
    server_->service().clearFaults();
    if (auto* const proxy = faultProxy())
    {
        proxy->clear();
    }
}

void Simulator::addFault(QString const& text)
{
    faults::FaultText const fault(text);
    if (faults::findServiceFaultKind(fault.name()) != nullptr)
    {
        server_->service().addFault(fault.toServiceFault());
    }
    else if (faults::findToxicKind(fault.name()) == nullptr)
    {
        auto const names = faults::namesOf(faults::toxicKinds()) + faults::namesOf(faults::serviceFaultKinds());
        throw std::invalid_argument(oneOf(fault.name(), names).toStdString());
    }
    else if (auto* const proxy = faultProxy())
    {
        proxy->add(text);
    }
    else
    {
        throw std::invalid_argument("no fault proxy stands in front");
    }
}

void Simulator::reset(std::optional<unsigned> seed)
{
    control("POST", "reset", seed ? QJsonObject{{"Seed", static_cast<qint64>(*seed)}} : QJsonObject());
}

QJsonObject Simulator::partnerAction(QJsonObject const& action)
{
    return control("POST", "partner-action", action).object();
}

QJsonObject Simulator::journal() const
{
    return control("GET", "journal").object();
}

void Simulator::verify(QJsonObject const& expected) const
{
    control("POST", "verify", expected);
}

QJsonDocument Simulator::control(QByteArray const& method, QString const& resource, QJsonObject const& body) const
{
    auto const answer = server_->service().handle(
        {.method = method,
         .target = resource.isEmpty() ? QByteArray("/_control") : "/_control/" + resource.toUtf8(),
         .body = QJsonDocument(body).toJson()});
    auto const document = QJsonDocument::fromJson(answer.body);
    if (answer.status >= 400)
    {
        throw std::invalid_argument(document[0]["Message"].toString().toStdString());
    }
    return document;
}

} // namespace simulator
