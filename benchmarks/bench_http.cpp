/// A typed operation against a plain libcurl client and one on Qt's access manager; 1 KB replies over loopback.

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <curl/curl.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <QJsonDocument>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>

#include <benchmark/benchmark.h>

#include <KeloCommunicationLib/KeloCommunicationLib.h>

#include "benchmarks/LoadServer.h"
#include "benchmarks/Ratios.h"

namespace
{

constexpr int inFlight = 1000;
constexpr long connectionCap = 6;

QUrl serverUrl;

/// The addresses that the service hands out to an installation.
std::string const& settingsReply()
{
    static std::string const body = []
    {
        std::string text = "{";
        for (char const* const key :
             {"StatsUploadUrl", "ContactUrl", "HelpUrl", "IFUUrl", "ZelkoMiraUrl", "SharedCasesUrl", "SoftwarePageUrl",
              "ForgotPasswordPageUrl", "FindAccountPageUrl", "AdditionalResourcesUrl", "DownloadImplantFilesUrl",
              "TrainingVideosUrl", "SubscriptionsUrl", "RedirectToPartnerUrl"})
        {
            text += (text.size() == 1 ? "\"" : ",\"") + std::string(key) + "\":\"https://portal.kelo.example/en/pages/"
                    + key + "\"";
        }
        return text + "}";
    }();
    return body;
}

std::string settingsUrl()
{
    return (serverUrl.toString() + QStringLiteral("/Installations/INST-1001/settings?api-version=1.0")).toStdString();
}

/// One libcurl handle that collects its body.
class PlainTransfer
{
public:
    PlainTransfer() : easy_(curl_easy_init())
    {
        static std::string const url = settingsUrl();
        curl_easy_setopt(easy_, CURLOPT_URL, url.c_str());
        curl_easy_setopt(easy_, CURLOPT_NOSIGNAL, 1L);
        curl_easy_setopt(easy_, CURLOPT_USERPWD, "user:secret");
        curl_easy_setopt(easy_, CURLOPT_PROXY, "");
        curl_easy_setopt(easy_, CURLOPT_WRITEDATA, &body_);
        curl_easy_setopt(easy_, CURLOPT_WRITEFUNCTION, &PlainTransfer::append);
    }

    PlainTransfer(PlainTransfer const&) = delete;
    PlainTransfer& operator=(PlainTransfer const&) = delete;

    ~PlainTransfer() { curl_easy_cleanup(easy_); }

    CURL* handle() const { return easy_; }

    bool parse()
    {
        QJsonDocument const document = QJsonDocument::fromJson(body_);
        body_.clear();
        return document.isObject();
    }

private:
    static std::size_t append(char const* data, std::size_t size, std::size_t count, void* body)
    {
        static_cast<QByteArray*>(body)->append(data, static_cast<qsizetype>(size) * static_cast<qsizetype>(count));
        return size * count;
    }

    CURL* easy_;
    QByteArray body_;
};

void sequentialLibrary(benchmark::State& state)
{
    auto const connection =
        TessalyConnection::makeConnection(serverUrl, QStringLiteral("user"), QStringLiteral("secret"));
    for (auto _ : state)
    {
        if (connection->getSettingsLicenseInfo(QStringLiteral("INST-1001")).get().value.getPartnerUrl().isEmpty())
        {
            state.SkipWithError("wrong reply");
        }
    }
}

void sequentialCurl(benchmark::State& state)
{
    PlainTransfer transfer;
    for (auto _ : state)
    {
        if (curl_easy_perform(transfer.handle()) != CURLE_OK || !transfer.parse())
        {
            state.SkipWithError("failed");
        }
    }
}

void parallelLibrary(benchmark::State& state)
{
    auto const connection =
        TessalyConnection::makeConnection(serverUrl, QStringLiteral("user"), QStringLiteral("secret"));
    for (auto _ : state)
    {
        std::vector<TessalyConnectionInterface::Reply<SettingsLicenseInfo>> replies;
        replies.reserve(inFlight);
        for (int index = 0; index < inFlight; ++index)
        {
            replies.push_back(connection->getSettingsLicenseInfo(QStringLiteral("INST-1001")));
        }
        for (auto const& reply : replies)
        {
            if (reply.get().status.kind != 0)
            {
                state.SkipWithError("failed");
            }
        }
    }
    state.SetItemsProcessed(state.iterations() * inFlight);
}

void parallelCurl(benchmark::State& state)
{
    CURLM* const multi = curl_multi_init();
    curl_multi_setopt(multi, CURLMOPT_MAX_HOST_CONNECTIONS, connectionCap);
    std::vector<std::unique_ptr<PlainTransfer>> transfers;
    for (int index = 0; index < inFlight; ++index)
    {
        transfers.push_back(std::make_unique<PlainTransfer>());
        curl_easy_setopt(transfers.back()->handle(), CURLOPT_PRIVATE, transfers.back().get());
    }
    for (auto _ : state)
    {
        for (auto const& transfer : transfers)
        {
            curl_multi_add_handle(multi, transfer->handle());
        }
        for (int finished = 0; finished < inFlight;)
        {
            int running = 0;
            curl_multi_perform(multi, &running);
            int queued = 0;
            while (CURLMsg const* const message = curl_multi_info_read(multi, &queued))
            {
                CURL* const easy = message->easy_handle;
                PlainTransfer* transfer = nullptr;
                curl_easy_getinfo(easy, CURLINFO_PRIVATE, &transfer);
                if (message->data.result != CURLE_OK || !transfer->parse())
                {
                    state.SkipWithError("failed");
                }
                curl_multi_remove_handle(multi, easy);
                ++finished;
            }
            if (finished < inFlight)
            {
                curl_multi_poll(multi, nullptr, 0, 1000, nullptr);
            }
        }
    }
    state.SetItemsProcessed(state.iterations() * inFlight);
    transfers.clear();
    curl_multi_cleanup(multi);
}

void parallelQt(benchmark::State& state)
{
    QNetworkAccessManager manager;
    QNetworkRequest const request(QUrl(QString::fromStdString(settingsUrl())));
    for (auto _ : state)
    {
        QEventLoop loop;
        int missing = inFlight;
        for (int index = 0; index < inFlight; ++index)
        {
            QNetworkReply* const reply = manager.get(request);
            QObject::connect(
                reply, &QNetworkReply::finished, reply,
                [&, reply]
                {
                    if (!QJsonDocument::fromJson(reply->readAll()).isObject())
                    {
                        state.SkipWithError("failed");
                    }
                    reply->deleteLater();
                    if (--missing == 0)
                    {
                        loop.quit();
                    }
                });
        }
        loop.exec();
    }
    state.SetItemsProcessed(state.iterations() * inFlight);
}

BENCHMARK(sequentialLibrary)->UseRealTime();
BENCHMARK(sequentialCurl)->UseRealTime();
BENCHMARK(parallelLibrary)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(parallelCurl)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(parallelQt)->UseRealTime()->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv)
{
    bench::LoadServer const server(settingsReply());
    serverUrl = server.url();
    QCoreApplication const application(argc, argv);
    return bench::runWithRatios(
        argc, argv,
        {{"sequentialLibrary", "sequentialCurl", "typed GET, one after the other, over a libcurl easy handle"},
         {"parallelCurl", "parallelLibrary",
          "requests a second with 1000 in flight, library over a libcurl multi loop"},
         {"parallelQt", "parallelLibrary", "requests a second with 1000 in flight, library over Qt's access manager"}});
}
