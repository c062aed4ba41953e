#include "benchmarks/Peers.h"

#include <algorithm>

#include <QEventLoop>
#include <QJsonDocument>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QSslConfiguration>

namespace bench
{

namespace
{

constexpr char const* userAgent = "KeloCommunicationLib/1.0";

std::size_t append(char const* data, std::size_t, std::size_t size, void* body)
{
    static_cast<QByteArray*>(body)->append(data, static_cast<qsizetype>(size));
    return size;
}

std::string joined(QUrl const& base, char const* path)
{
    return base.toString().toStdString() + path;
}

} // namespace

PlainTransfer::PlainTransfer()
    : easy_(curl_easy_init()), headers_(curl_slist_append(nullptr, "Accept: application/json"))
{
    curl_easy_setopt(easy_, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(easy_, CURLOPT_PROXY, "");
    curl_easy_setopt(easy_, CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
    curl_easy_setopt(easy_, CURLOPT_SSL_VERIFYPEER, 0L);
    curl_easy_setopt(easy_, CURLOPT_SSL_VERIFYHOST, 0L);
    curl_easy_setopt(easy_, CURLOPT_USERNAME, username);
    curl_easy_setopt(easy_, CURLOPT_PASSWORD, password);
    curl_easy_setopt(easy_, CURLOPT_USERAGENT, userAgent);
    curl_easy_setopt(easy_, CURLOPT_ACCEPT_ENCODING, "gzip, deflate");
    curl_easy_setopt(easy_, CURLOPT_HTTPHEADER, headers_);
    curl_easy_setopt(easy_, CURLOPT_PRIVATE, this);
    curl_easy_setopt(easy_, CURLOPT_WRITEDATA, &body_);
    curl_easy_setopt(easy_, CURLOPT_WRITEFUNCTION, &append);
}

PlainTransfer::~PlainTransfer()
{
    curl_easy_cleanup(easy_);
    curl_slist_free_all(headers_);
}

void PlainTransfer::prepare(std::string const& url, std::string const& body)
{
    curl_easy_setopt(easy_, CURLOPT_URL, url.c_str());
    if (body.empty())
    {
        curl_easy_setopt(easy_, CURLOPT_HTTPGET, 1L);
        return;
    }
    curl_easy_setopt(easy_, CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(body.size()));
    curl_easy_setopt(easy_, CURLOPT_COPYPOSTFIELDS, body.data());
}

bool PlainTransfer::takeReply(CURLcode result)
{
    bool const isJson = !QJsonDocument::fromJson(body_).isNull();
    body_.resize(0);
    long status = 0;
    curl_easy_getinfo(easy_, CURLINFO_RESPONSE_CODE, &status);
    return result == CURLE_OK && status == 200 && isJson;
}

EasyClient::EasyClient(QUrl const& base)
{
    transfer_.prepare(joined(base, settingsPath), {});
}

bool EasyClient::fetch(std::int64_t count)
{
    bool ok = true;
    for (std::int64_t index = 0; index < count; ++index)
    {
        ok = transfer_.takeReply(curl_easy_perform(transfer_.handle())) && ok;
    }
    return ok;
}

bool EasyClient::post(std::string const& url, std::string const& body)
{
    transfer_.prepare(url, body);
    return fetch(1);
}

MultiClient::MultiClient(QUrl const& base, Limits limits) : base_(joined(base, "")), multi_(curl_multi_init())
{
    curl_multi_setopt(multi_, CURLMOPT_MAX_HOST_CONNECTIONS, limits.connections);
    for (std::size_t index = 0; index < limits.inFlight; ++index)
    {
        CURL* const easy = transfers_.emplace_back(std::make_unique<PlainTransfer>())->handle();
        if (limits.http2)
        {
            curl_easy_setopt(easy, CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_2TLS));
            curl_easy_setopt(easy, CURLOPT_PIPEWAIT, 1L);
        }
    }
}

MultiClient::~MultiClient()
{
    transfers_.clear();
    curl_multi_cleanup(multi_);
}

bool MultiClient::fetch(std::int64_t count)
{
    return run(settingsPath, {}, count);
}

bool MultiClient::run(std::string const& path, std::string const& body, std::int64_t count)
{
    auto const window = std::min(count, static_cast<std::int64_t>(transfers_.size()));
    for (std::int64_t index = 0; index < window; ++index)
    {
        PlainTransfer& transfer = *transfers_[static_cast<std::size_t>(index)];
        transfer.prepare(base_ + path, body);
        curl_multi_add_handle(multi_, transfer.handle());
    }
    bool ok = true;
    std::int64_t missing = count;
    while (missing > 0)
    {
        int number = 0;
        curl_multi_perform(multi_, &number);
        while (CURLMsg const* const message = curl_multi_info_read(multi_, &number))
        {
            CURL* const easy = message->easy_handle;
            PlainTransfer* transfer = nullptr;
            curl_easy_getinfo(easy, CURLINFO_PRIVATE, &transfer);
            ok = transfer->takeReply(message->data.result) && ok;
            curl_multi_remove_handle(multi_, easy);
            if (missing > window)
            {
                curl_multi_add_handle(multi_, easy);
            }
            --missing;
        }
        if (missing > 0)
        {
            curl_multi_poll(multi_, nullptr, 0, 1000, nullptr);
        }
    }
    return ok;
}

QtClient::QtClient(QUrl const& base) : request_(QUrl(QString::fromStdString(joined(base, settingsPath))))
{
    QByteArray const credentials = QByteArray(username) + ":" + password;
    request_.setRawHeader("Authorization", "Basic " + credentials.toBase64());
    request_.setRawHeader("Accept", "application/json");
    request_.setRawHeader("User-Agent", userAgent);
    QSslConfiguration tls = request_.sslConfiguration();
    tls.setPeerVerifyMode(QSslSocket::VerifyNone);
    request_.setSslConfiguration(tls);
}

bool QtClient::fetch(std::int64_t count)
{
    QEventLoop loop;
    std::int64_t missing = count;
    bool ok = true;
    for (std::int64_t index = 0; index < count; ++index)
    {
        QNetworkReply* const reply = manager_.get(request_);
        QObject::connect(
            reply, &QNetworkReply::finished, &loop,
            [&, reply]
            {
                ok = !QJsonDocument::fromJson(reply->readAll()).isNull() && ok;
                reply->deleteLater();
                if (--missing == 0)
                {
                    loop.quit();
                }
            });
    }
    loop.exec();
    return ok;
}

} // namespace bench
