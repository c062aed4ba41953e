#include "simulator/Certificate.h"

#include <openssl/bio.h>
#include <openssl/pem.h>
#include <openssl/rand.h>
#include <openssl/x509v3.h>

#include <array>
#include <stdexcept>
#include <utility>

namespace simulator
{

namespace
{

void require(bool isFine)
{
    if (!isFine)
    {
        throw std::runtime_error("cannot make a certificate");
    }
}

void addExtension(X509* certificate, int nid, char const* value)
{
    std::unique_ptr<X509_EXTENSION, decltype(&X509_EXTENSION_free)> const extension(
        X509V3_EXT_conf_nid(nullptr, nullptr, nid, value), X509_EXTENSION_free);
    require(extension != nullptr && X509_add_ext(certificate, extension.get(), -1) == 1);
}

/// Clients that met an earlier certificate of the same name refuse a second one with the same serial number.
void setRandomSerial(X509* certificate)
{
    std::array<unsigned char, 4> bytes = {};
    require(RAND_bytes(bytes.data(), static_cast<int>(bytes.size())) == 1);
    long serial = 1;
    for (auto const byte : bytes)
    {
        serial = serial * 256 + byte;
    }
    require(ASN1_INTEGER_set(X509_get_serialNumber(certificate), serial) == 1);
}

} // namespace

Certificate Certificate::make()
{
    constexpr long day = 24L * 60 * 60;
    Certificate made = {.key = {EVP_EC_gen("P-256"), EVP_PKEY_free}, .certificate = {X509_new(), X509_free}};
    auto* const x509 = made.certificate.get();
    require(made.key != nullptr && x509 != nullptr);
    setRandomSerial(x509);
    auto* const name = X509_get_subject_name(x509);
    auto const* const commonName = reinterpret_cast<unsigned char const*>("kelo-simulator");
    require(
        X509_set_version(x509, X509_VERSION_3) == 1 && X509_gmtime_adj(X509_getm_notBefore(x509), -day) != nullptr
        && X509_gmtime_adj(X509_getm_notAfter(x509), 365 * day) != nullptr && X509_set_pubkey(x509, made.key.get()) == 1
        && X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_ASC, commonName, -1, -1, 0) == 1
        && X509_set_issuer_name(x509, name) == 1);
    addExtension(x509, NID_basic_constraints, "critical,CA:TRUE");
    addExtension(x509, NID_subject_alt_name, "DNS:localhost,IP:127.0.0.1");
    require(X509_sign(x509, made.key.get(), EVP_sha256()) > 0);
    return made;
}

QByteArray Certificate::pem() const
{
    std::unique_ptr<BIO, decltype(&BIO_free)> const memory(BIO_new(BIO_s_mem()), BIO_free);
    require(memory != nullptr && PEM_write_bio_X509(memory.get(), certificate.get()) == 1);
    char* data = nullptr;
    auto const size = BIO_get_mem_data(memory.get(), &data);
    return {data, static_cast<qsizetype>(size)};
}

} // namespace simulator
