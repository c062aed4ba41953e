#pragma once

#include <memory>

#include <QByteArray>

#include <openssl/evp.h>
#include <openssl/x509.h>

#include <testkit/TlsOptions.h>

/// Certificates for servers that run for a test. All functions throw std::runtime_error when OpenSSL refuses.
namespace testkit
{

template <auto free>
struct Freed
{
    template <class T>
    void operator()(T* object) const
    {
        free(object);
    }
};

using Key = std::unique_ptr<EVP_PKEY, Freed<&EVP_PKEY_free>>;
using Certificate = std::unique_ptr<X509, Freed<&X509_free>>;

Key makeKey();
/// A server's certificate for `key`.
Certificate makeCertificate(TlsOptions const& options, EVP_PKEY* key);

/// The text form in which programs take certificates and keys.
QByteArray toPem(X509* certificate);
QByteArray toPem(EVP_PKEY* key);

/// The certificate authorities of this process, made when first asked for. Nobody trusts them unless told so: write
/// `pem()` to a file and give that to `TessalyConnection::setExtraCertificates`.
class TestAuthority
{
public:
    static TestAuthority const& instance();
    static TestAuthority const& stranger();

    QByteArray pem() const { return toPem(certificate()); }

    X509* certificate() const { return certificate_.get(); }

    EVP_PKEY* key() const { return key_.get(); }

private:
    explicit TestAuthority(char const* name);

    Key key_;
    Certificate certificate_;
};

} // namespace testkit
