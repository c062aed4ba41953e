#pragma once

#include <QString>

#include <curl/curl.h>

#include <platform/rest/internal/Call.h>

namespace rest
{

/// Why this library, not libcurl, ended a transfer.
enum class Failure : int
{
    None,
    TimedOut,
    NeverSent, ///< timed out while it waited for its turn
    ReplyTooLarge,
    HeadersTooLarge,
    BadCompression,
    OutOfMemory,
    WouldRepeatWrite, ///< libcurl was about to send a POST or PUT a second time
    FileUnreadable,   ///< that the request's body is part of
    FileShortened,    ///< since the request was made
    NotStored,        ///< the answer could not be written to its file
};

/// The error number of a failed exchange: one of libcurl's or, if the answer could not be stored, a `LocalError`.
int errorNumber(Failure failure, CURLcode result);

/// A sentence for people, without secrets; empty for `None`.
QString describeFailure(Failure failure, Request const& request);

/// How a call ends that has waited for its turn too long.
Outcome neverSent(Request const& request);

} // namespace rest
