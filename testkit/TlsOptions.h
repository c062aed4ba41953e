#pragma once

#include <chrono>

namespace testkit
{

/// How a TLS server presents itself.
struct TlsOptions
{
    enum class Signer : int
    {
        Itself,
        Authority, ///< see `TestAuthority`
        Stranger   ///< another authority
    };

    Signer signer = Signer::Itself;
    /// As OpenSSL's configuration has them.
    char const* names = "IP:127.0.0.1,DNS:localhost";
    /// Counted from now.
    std::chrono::hours validFrom{-1};
    std::chrono::hours validUntil{24};
    /// The one version of the protocol, as OpenSSL numbers it; 0: all that OpenSSL speaks by default.
    int version = 0;
};

} // namespace testkit
