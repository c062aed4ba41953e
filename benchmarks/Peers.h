#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <QByteArray>
#include <QNetworkAccessManager>
#include <QUrl>

#include <curl/curl.h>

namespace bench
{

/// What all clients send beside the request: the same credentials, compression offered, certificates not checked.
inline constexpr char const* username = "user";
inline constexpr char const* password = "secret";

/// The call that is measured most, a GET of 1 KB.
inline constexpr char const* installation = "INST-1001";
inline constexpr char const* settingsPath = "/Installations/INST-1001/settings";
/// The one that takes longest, a POST.
inline constexpr char const* listPath = "/Installations/INST-1001/requests";

/// A libcurl handle that is kept and collects one body after the other.
class PlainTransfer
{
public:
    PlainTransfer();
    PlainTransfer(PlainTransfer const&) = delete;
    PlainTransfer& operator=(PlainTransfer const&) = delete;
    ~PlainTransfer();

    /// A GET, or a POST of `body` unless that is empty. Takes effect until the next call.
    void prepare(std::string const& url, std::string const& body);

    CURL* handle() const { return easy_; }

    /// Whether the finished exchange brought JSON; parses it and makes room for the next.
    bool takeReply(CURLcode result);

private:
    CURL* easy_;
    curl_slist* headers_;
    QByteArray body_;
};

/// libcurl's easy interface: one call after the other.
class EasyClient
{
public:
    explicit EasyClient(QUrl const& base);

    /// Makes `count` calls; true when all were answered.
    bool fetch(std::int64_t count);
    bool post(std::string const& url, std::string const& body);

private:
    PlainTransfer transfer_;
};

/// libcurl's multi interface with as many kept handles as may be in flight.
class MultiClient
{
public:
    struct Limits
    {
        std::size_t inFlight = 6;
        long connections = 6;
        bool http2 = false;
    };

    explicit MultiClient(QUrl const& base) : MultiClient(base, Limits()) {}

    MultiClient(QUrl const& base, Limits limits);
    MultiClient(MultiClient const&) = delete;
    MultiClient& operator=(MultiClient const&) = delete;
    ~MultiClient();

    bool fetch(std::int64_t count);
    /// As `PlainTransfer::prepare`, `count` times.
    bool run(std::string const& path, std::string const& body, std::int64_t count);

private:
    std::string base_;
    CURLM* multi_;
    std::vector<std::unique_ptr<PlainTransfer>> transfers_;
};

/// Qt's access manager, which queues by itself and has six connections.
class QtClient
{
public:
    explicit QtClient(QUrl const& base);

    bool fetch(std::int64_t count);

private:
    QNetworkAccessManager manager_;
    QNetworkRequest request_;
};

} // namespace bench
