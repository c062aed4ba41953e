#include <testkit/Certificates.h>

#include <array>
#include <stdexcept>

#include <openssl/bio.h>
#include <openssl/pem.h>
#include <openssl/rand.h>
#include <openssl/x509v3.h>

namespace testkit
{

namespace
{

void require(bool isFine)
{
    if (!isFine)
    {
        throw std::runtime_error("A certificate cannot be made");
    }
}

long secondsIn(std::chrono::hours duration)
{
    return static_cast<long>(std::chrono::seconds(duration).count());
}

void addExtension(X509* certificate, int kind, char const* value)
{
    std::unique_ptr<X509_EXTENSION, Freed<&X509_EXTENSION_free>> const extension(
        X509V3_EXT_conf_nid(nullptr, nullptr, kind, value));
    require(extension != nullptr && X509_add_ext(certificate, extension.get(), -1) == 1);
}

void sign(X509* certificate, X509* issuer, EVP_PKEY* key)
{
    require(
        X509_set_issuer_name(certificate, X509_get_subject_name(issuer)) == 1
        && X509_sign(certificate, key, EVP_sha256()) > 0);
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

Certificate unsignedCertificate(TlsOptions const& options, EVP_PKEY* key, char const* commonName)
{
    Certificate certificate(X509_new());
    X509* const made = certificate.get();
    require(made != nullptr && key != nullptr);
    setRandomSerial(made);
    auto const* const name = reinterpret_cast<unsigned char const*>(commonName);
    require(
        X509_set_version(made, X509_VERSION_3) == 1
        && X509_gmtime_adj(X509_getm_notBefore(made), secondsIn(options.validFrom)) != nullptr
        && X509_gmtime_adj(X509_getm_notAfter(made), secondsIn(options.validUntil)) != nullptr
        && X509_set_pubkey(made, key) == 1
        && X509_NAME_add_entry_by_txt(X509_get_subject_name(made), "CN", MBSTRING_ASC, name, -1, -1, 0) == 1);
    return certificate;
}

template <class Write>
QByteArray written(Write write)
{
    std::unique_ptr<BIO, Freed<&BIO_free>> const memory(BIO_new(BIO_s_mem()));
    require(memory != nullptr && write(memory.get()) == 1);
    char* text = nullptr;
    auto const size = BIO_get_mem_data(memory.get(), &text);
    return {text, static_cast<qsizetype>(size)};
}

} // namespace

Key makeKey()
{
    return Key(EVP_EC_gen("P-256"));
}

Certificate makeCertificate(TlsOptions const& options, EVP_PKEY* key)
{
    Certificate certificate = unsignedCertificate(options, key, "KELO test server");
    addExtension(certificate.get(), NID_subject_alt_name, options.names);
    if (options.signer == TlsOptions::Signer::Itself)
    {
        // Those who are to trust it take it for an authority.
        addExtension(certificate.get(), NID_basic_constraints, "critical,CA:TRUE");
        sign(certificate.get(), certificate.get(), key);
        return certificate;
    }
    auto const& authority =
        options.signer == TlsOptions::Signer::Stranger ? TestAuthority::stranger() : TestAuthority::instance();
    sign(certificate.get(), authority.certificate(), authority.key());
    return certificate;
}

QByteArray toPem(X509* certificate)
{
    return written([certificate](BIO* memory) { return PEM_write_bio_X509(memory, certificate); });
}

QByteArray toPem(EVP_PKEY* key)
{
    return written([key](BIO* memory)
                   { return PEM_write_bio_PrivateKey(memory, key, nullptr, nullptr, 0, nullptr, nullptr); });
}

TestAuthority const& TestAuthority::instance()
{
    static TestAuthority const authority("KELO test authority");
    return authority;
}

TestAuthority const& TestAuthority::stranger()
{
    static TestAuthority const authority("Somebody's inspecting proxy");
    return authority;
}

TestAuthority::TestAuthority(char const* name)
    : key_(makeKey()), certificate_(unsignedCertificate(TlsOptions(), key_.get(), name))
{
    addExtension(certificate_.get(), NID_basic_constraints, "critical,CA:TRUE");
    sign(certificate_.get(), certificate_.get(), key_.get());
}

} // namespace testkit
