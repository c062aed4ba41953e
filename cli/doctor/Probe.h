#pragma once

#include <chrono>

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QUrl>

#include <curl/curl.h>

#include <platform/rest/Proxy.h>

namespace cli
{

/// Where a connection leads, and how.
struct Way
{
    QUrl url;
    rest::Proxy proxy;
};

/// Whose certificates are believed.
struct Trust
{
    enum class Whose : int
    {
        System,
        Given, ///< those of a PEM text
        Anybody
    };

    Whose whose = Whose::System;
    QByteArray pem = {};
};

/// A connection that was made and ended without a request, as the library's transport makes its own. The library tells
/// no more of one that fails than a sentence, and of a certificate nothing.
struct Probe
{
    CURLcode result = CURLE_OK;
    QByteArray text = {};  ///< libcurl's own words for what has failed
    QString address = {};  ///< of the server, or of the proxy
    QString protocol = {}; ///< of TLS
    long systemError = 0;  ///< errno of a connection that was not made
    long proxyStatus = 0;  ///< HTTP status with which a proxy answered CONNECT
    long proxyError = 0;   ///< libcurl's number for what a SOCKS proxy said
    long verification = 0; ///< OpenSSL's number for what is wrong with the certificate
    double milliseconds = 0;
    /// The server's certificate by OpenSSL's names of its parts.
    QHash<QByteArray, QString> certificate = {};
};

/// Reaches the server, through the proxy if there is one, and does not say a word.
Probe probe(Way const& way, std::chrono::milliseconds limit);
/// Goes on to the end of the TLS handshake; the time is that of the handshake.
Probe probeTls(Way const& way, Trust const& trust, std::chrono::milliseconds limit);

} // namespace cli
