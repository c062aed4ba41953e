#include "cli/doctor/Probe.h"

#include <algorithm>
#include <array>
#include <memory>

#include <openssl/ssl.h>

namespace cli
{

namespace
{

class Connector
{
public:
    explicit Connector(std::chrono::milliseconds limit)
    {
        set(CURLOPT_CONNECT_ONLY, 1L);
        set(CURLOPT_NOSIGNAL, 1L);
        set(CURLOPT_QUICK_EXIT, 1L);
        set(CURLOPT_TIMEOUT_MS, static_cast<long>(limit.count()));
        set(CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(limit.count()));
        set(CURLOPT_ERRORBUFFER, text_.data());
        set(CURLOPT_CERTINFO, 1L);
        // Called when the connection stands; afterwards libcurl has forgotten its protocol.
        set(CURLOPT_PREREQDATA, this);
        set(
            CURLOPT_PREREQFUNCTION,
            +[](void* self, char*, char*, int, int) { return static_cast<Connector*>(self)->keepProtocol(); });
    }

    /// As the transport has it.
    void goBy(Way const& way, QString const& scheme)
    {
        QUrl url = way.url.adjusted(QUrl::RemovePath);
        bool const isSecure = url.scheme() == QLatin1String("https");
        url.setPort(url.port(isSecure ? 443 : 80));
        url.setScheme(scheme);
        set(CURLOPT_URL, url.toEncoded().constData());
        set(CURLOPT_HTTPPROXYTUNNEL, isSecure ? 1L : 0L);
        set(CURLOPT_PROTOCOLS_STR, "http,https");
        set(CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
        set(CURLOPT_USERAGENT, KELO_USER_AGENT);
        set(CURLOPT_PROXY, way.proxy.address.isEmpty() ? "" : way.proxy.address.constData());
        set(CURLOPT_NOPROXY, "");
        if (!way.proxy.username.isEmpty())
        {
            set(CURLOPT_PROXYUSERNAME, way.proxy.username.constData());
            set(CURLOPT_PROXYPASSWORD, way.proxy.password.constData());
        }
    }

    void believe(Trust const& trust)
    {
        bool const verifies = trust.whose != Trust::Whose::Anybody;
        set(CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2));
        set(CURLOPT_SSL_VERIFYPEER, verifies ? 1L : 0L);
        set(CURLOPT_SSL_VERIFYHOST, verifies ? 2L : 0L);
        if (trust.whose == Trust::Whose::Given)
        {
            curl_blob blob{
                const_cast<char*>(trust.pem.constData()), static_cast<std::size_t>(trust.pem.size()), CURL_BLOB_COPY};
            set(CURLOPT_CAINFO_BLOB, &blob);
        }
    }

    Probe connect(bool isSecure)
    {
        Probe probe;
        probe.result = curl_easy_perform(handle_.get());
        probe.text = text_.data();
        probe.protocol = protocol_;
        probe.address = QString::fromLatin1(info<char const*>(CURLINFO_PRIMARY_IP));
        probe.systemError = info<long>(CURLINFO_OS_ERRNO);
        probe.proxyStatus = info<long>(CURLINFO_HTTP_CONNECTCODE);
        probe.proxyError = info<long>(CURLINFO_PROXY_ERROR);
        probe.verification = info<long>(CURLINFO_SSL_VERIFYRESULT);
        auto const from = info<curl_off_t>(isSecure ? CURLINFO_CONNECT_TIME_T : CURLINFO_NAMELOOKUP_TIME_T);
        auto const to = info<curl_off_t>(isSecure ? CURLINFO_APPCONNECT_TIME_T : CURLINFO_CONNECT_TIME_T);
        probe.milliseconds = static_cast<double>(std::max<curl_off_t>(to - from, 0)) / 1000;
        readCertificate(probe);
        return probe;
    }

private:
    struct Cleanup
    {
        void operator()(CURL* handle) const { curl_easy_cleanup(handle); }
    };

    template <class Value>
    void set(CURLoption option, Value value)
    {
        curl_easy_setopt(handle_.get(), option, value);
    }

    template <class Value>
    Value info(CURLINFO which) const
    {
        Value value{};
        curl_easy_getinfo(handle_.get(), which, &value);
        return value;
    }

    int keepProtocol()
    {
        auto const* const session = info<curl_tlssessioninfo*>(CURLINFO_TLS_SSL_PTR);
        if (session != nullptr && session->backend == CURLSSLBACKEND_OPENSSL && session->internals != nullptr)
        {
            protocol_ = QString::fromLatin1(SSL_get_version(static_cast<SSL*>(session->internals)));
        }
        return CURL_PREREQFUNC_OK;
    }

    void readCertificate(Probe& probe) const
    {
        auto const* const chain = info<curl_certinfo*>(CURLINFO_CERTINFO);
        if (chain == nullptr || chain->num_of_certs == 0)
        {
            return;
        }
        for (auto const* part = chain->certinfo[0]; part != nullptr; part = part->next)
        {
            QByteArray const line = part->data;
            auto const colon = line.indexOf(':');
            probe.certificate.insert(line.left(colon), QString::fromUtf8(line.mid(colon + 1)));
        }
    }

    std::array<char, CURL_ERROR_SIZE> text_{};
    QString protocol_;
    /// Last, so that it goes first: until then it may call back.
    std::unique_ptr<CURL, Cleanup> const handle_{curl_easy_init()};
};

} // namespace

Probe probe(Way const& way, std::chrono::milliseconds limit)
{
    Connector connector(limit);
    connector.goBy(way, QStringLiteral("http"));
    return connector.connect(false);
}

Probe probeTls(Way const& way, Trust const& trust, std::chrono::milliseconds limit)
{
    Connector connector(limit);
    connector.goBy(way, QStringLiteral("https"));
    connector.believe(trust);
    return connector.connect(true);
}

} // namespace cli
