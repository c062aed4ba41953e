#pragma once

#include <QByteArray>
#include <QString>

#include <curl/curl.h>

#include <platform/rest/Proxy.h>
#include <platform/rest/internal/Call.h>

namespace rest
{

/// An exchange that libcurl has ended, as libcurl left it.
struct FailedExchange
{
    CURL* handle;
    CURLcode result;
    QByteArray text; ///< libcurl's own words: for its developers, and perhaps about an earlier or a later event
    bool isSent;
    Proxy const& proxy;
    Request const& request;

    /// A sentence for people, without secrets.
    QString description() const;
};

} // namespace rest
