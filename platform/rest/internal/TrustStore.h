#pragma once

#include <memory>

#include <QByteArray>
#include <QDateTime>

#include <curl/curl.h>
#include <openssl/x509_vfy.h>

namespace rest
{

/// Whom a server's certificate may come from: the system's authorities and the certificates of a PEM text. All
/// connections share what is parsed, for parsing the system's authorities takes longer than a whole handshake.
class TrustStore
{
public:
    /// The system's authorities alone; they are read again when the system has changed them.
    static std::shared_ptr<TrustStore> const& system();
    /// Null when the text holds no certificate, or a broken one.
    static std::shared_ptr<TrustStore> withCertificates(QByteArray const& pem);

    /// Makes the handle verify certificates with this object, which must outlive the handle. Connections of handles
    /// that trust other certificates are not used. Neither this nor the transfer may run on two threads at once.
    void attach(CURL* handle);

private:
    struct StoreDeleter
    {
        void operator()(X509_STORE* store) const { X509_STORE_free(store); }
    };
    using Store = std::unique_ptr<X509_STORE, StoreDeleter>;

    explicit TrustStore(QByteArray pem) : pem_(std::move(pem)) {}

    static CURLcode install(CURL* handle, void* context, void* self);
    X509_STORE* current();
    Store load() const;

    QByteArray const pem_;
    Store store_;
    QDateTime systemsTime_;
};

} // namespace rest
