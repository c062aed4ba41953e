#include <testkit/Certificates.h>

#include <openssl/x509v3.h>

namespace testkit
{

namespace
{

long secondsIn(std::chrono::hours duration)
{
    return static_cast<long>(std::chrono::seconds(duration).count());
}

void addExtension(X509* certificate, int kind, char const* value)
{
    X509V3_CTX context;
    X509V3_set_ctx_nodb(&context);
    X509V3_set_ctx(&context, certificate, certificate, nullptr, nullptr, 0);
    X509_EXTENSION* const extension = X509V3_EXT_conf_nid(nullptr, &context, kind, value);
    X509_add_ext(certificate, extension, -1);
    X509_EXTENSION_free(extension);
}

Certificate unsignedCertificate(TlsOptions const& options, EVP_PKEY* key, char const* commonName)
{
    static long serialNumber = 0;
    Certificate certificate(X509_new());
    X509_set_version(certificate.get(), 2);
    ASN1_INTEGER_set(X509_get_serialNumber(certificate.get()), ++serialNumber);
    X509_gmtime_adj(X509_getm_notBefore(certificate.get()), secondsIn(options.validFrom));
    X509_gmtime_adj(X509_getm_notAfter(certificate.get()), secondsIn(options.validUntil));
    X509_set_pubkey(certificate.get(), key);
    X509_NAME_add_entry_by_txt(
        X509_get_subject_name(certificate.get()), "CN", MBSTRING_ASC,
        reinterpret_cast<unsigned char const*>(commonName), -1, -1, 0);
    return certificate;
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
    bool const signsItself = options.signer == TlsOptions::Signer::Itself;
    auto const& authority =
        options.signer == TlsOptions::Signer::Stranger ? TestAuthority::stranger() : TestAuthority::instance();
    X509* const issuer = signsItself ? certificate.get() : authority.certificate();
    X509_set_issuer_name(certificate.get(), X509_get_subject_name(issuer));
    X509_sign(certificate.get(), signsItself ? key : authority.key(), EVP_sha256());
    return certificate;
}

TestAuthority const& TestAuthority::instance()
{
    static TestAuthority const authority("KELO test authority");
    return authority;
}

TestAuthority const& TestAuthority::stranger()
{
    static TestAuthority const authority("Nobody's authority");
    return authority;
}

TestAuthority::TestAuthority(char const* name)
    : key_(makeKey()), certificate_(unsignedCertificate(TlsOptions(), key_.get(), name))
{
    X509_set_issuer_name(certificate_.get(), X509_get_subject_name(certificate_.get()));
    addExtension(certificate_.get(), NID_basic_constraints, "critical,CA:TRUE");
    X509_sign(certificate_.get(), key_.get(), EVP_sha256());
}

} // namespace testkit
