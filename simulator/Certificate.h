#pragma once

#include <QByteArray>

#include <openssl/evp.h>
#include <openssl/x509.h>

#include <memory>

namespace simulator
{

/// A self-signed certificate for 127.0.0.1 and localhost, valid for a year, with its key.
struct Certificate
{
    std::unique_ptr<EVP_PKEY, void (*)(EVP_PKEY*)> key;
    std::unique_ptr<X509, void (*)(X509*)> certificate;

    /// Throws std::runtime_error when OpenSSL refuses.
    static Certificate make();

    /// The certificate alone, for clients that shall trust it.
    QByteArray pem() const;
};

} // namespace simulator
