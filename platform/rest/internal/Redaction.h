#pragma once

#include <platform/rest/internal/Call.h>

namespace rest
{

/// A server may send back what it was sent. Takes the credentials of `request` out of the traces and out of an error's
/// body, whose text becomes the message that users see. The body of a success stays as it came.
void redactCredentials(Outcome& outcome, Request const& request);

} // namespace rest
