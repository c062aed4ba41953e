#include <platform/rest/internal/TrustStore.h>

#include <QFileInfo>
#include <QSslCertificate>
#include <QSslConfiguration>

#include <openssl/bio.h>
#include <openssl/err.h>
#include <openssl/pem.h>
#include <openssl/ssl.h>

namespace rest
{

namespace
{

struct InfosDeleter
{
    void operator()(STACK_OF(X509_INFO) * infos) const { sk_X509_INFO_pop_free(infos, &X509_INFO_free); }
};

/// Calls `use` for each certificate in the text; false when there is none, or `use` said so.
template <class Use>
bool forEachCertificate(QByteArray const& pem, Use use)
{
    std::unique_ptr<BIO, decltype(&BIO_free)> const source(
        BIO_new_mem_buf(pem.constData(), static_cast<int>(pem.size())), &BIO_free);
    std::unique_ptr<STACK_OF(X509_INFO), InfosDeleter> const infos(
        PEM_X509_INFO_read_bio(source.get(), nullptr, nullptr, nullptr));
    // Texts without an end leave an error behind, which must not be taken for one of a later handshake.
    ERR_clear_error();
    int count = 0;
    for (int index = 0; index < (infos ? sk_X509_INFO_num(infos.get()) : 0); ++index)
    {
        if (X509* const certificate = sk_X509_INFO_value(infos.get(), index)->x509)
        {
            if (!use(certificate))
            {
                return false;
            }
            ++count;
        }
    }
    return count > 0;
}

/// The authorities of systems that keep them in no file: Windows, macOS.
void addSystemsOwn(X509_STORE* store)
{
    for (QSslCertificate const& authority : QSslConfiguration::systemCaCertificates())
    {
        QByteArray const der = authority.toDer();
        auto const* begin = reinterpret_cast<unsigned char const*>(der.constData());
        if (X509* const certificate = d2i_X509(nullptr, &begin, static_cast<long>(der.size())))
        {
            X509_STORE_add_cert(store, certificate);
            X509_free(certificate);
        }
    }
}

} // namespace

std::shared_ptr<TrustStore> const& TrustStore::system()
{
    // Never destroyed: transfers may go on while the process ends.
    static auto const& instance = *new std::shared_ptr<TrustStore>(new TrustStore({}));
    return instance;
}

std::shared_ptr<TrustStore> TrustStore::withCertificates(QByteArray const& pem)
{
    bool const isUsable = forEachCertificate(pem, [](X509*) { return true; });
    return isUsable ? std::shared_ptr<TrustStore>(new TrustStore(pem)) : nullptr;
}

void TrustStore::attach(CURL* handle)
{
    curl_easy_setopt(handle, CURLOPT_SSL_CTX_FUNCTION, &TrustStore::install);
    curl_easy_setopt(handle, CURLOPT_SSL_CTX_DATA, this);
    // libcurl would parse the system's authorities for each connection, and keep one store for all handles.
    curl_easy_setopt(handle, CURLOPT_CAINFO, nullptr);
    curl_easy_setopt(handle, CURLOPT_CAPATH, nullptr);
    curl_easy_setopt(handle, CURLOPT_CA_CACHE_TIMEOUT, 0L);
    if (!pem_.isEmpty())
    {
        // By this libcurl tells apart whose connections and TLS sessions may be used; the store has them already.
        curl_blob blob{const_cast<char*>(pem_.constData()), static_cast<std::size_t>(pem_.size()), CURL_BLOB_NOCOPY};
        curl_easy_setopt(handle, CURLOPT_CAINFO_BLOB, &blob);
    }
}

CURLcode TrustStore::install(CURL*, void* context, void* self)
{
    X509_STORE* const store = static_cast<TrustStore*>(self)->current();
    if (store == nullptr)
    {
        return CURLE_OUT_OF_MEMORY;
    }
    SSL_CTX_set1_cert_store(static_cast<SSL_CTX*>(context), store);
    return CURLE_OK;
}

X509_STORE* TrustStore::current()
{
    char const* const file = curl_version_info(CURLVERSION_NOW)->cainfo;
    QDateTime const time = file != nullptr ? QFileInfo(QString::fromUtf8(file)).lastModified() : QDateTime();
    if (!store_ || time != systemsTime_)
    {
        store_ = load();
        systemsTime_ = time;
    }
    return store_.get();
}

TrustStore::Store TrustStore::load() const
{
    Store store(X509_STORE_new());
    if (!store)
    {
        return nullptr;
    }
    auto const* const system = curl_version_info(CURLVERSION_NOW);
    if (system->cainfo != nullptr)
    {
        X509_STORE_load_file(store.get(), system->cainfo);
    }
    if (system->capath != nullptr)
    {
        X509_STORE_load_path(store.get(), system->capath);
    }
    if (system->cainfo == nullptr && system->capath == nullptr)
    {
        addSystemsOwn(store.get());
    }
    if (!pem_.isEmpty())
    {
        forEachCertificate(
            pem_, [&store](X509* certificate) { return X509_STORE_add_cert(store.get(), certificate) == 1; });
    }
    ERR_clear_error();
    return store;
}

} // namespace rest
