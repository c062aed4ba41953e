#pragma once

#include <QString>

#include <KeloCommunicationLib/Export.h>
#include <KeloCommunicationLib/connection/KeloErrorCode.h>
#include <platform/rest/RestReply.h>

namespace kelo
{

/// With this sentence ends the message of a call that may have changed something although no usable answer came. Calls
/// that change nothing (`operations::Route::isQuery`, and every GET) do not say so.
inline constexpr QLatin1StringView maybeProcessed("The server may have processed the request.");

/// The message without that sentence: what is left to say of a call that changes nothing.
inline QString withoutMaybeProcessed(QString message)
{
    return message.remove(maybeProcessed).trimmed();
}

/// The code of a call's outcome: `Success` for kind 0, `NoConnection` for kind 1, else the service's own code.
KELO_EXPORT KeloErrorCode errorCode(rest::RestReplyStatus const& status);

/// The outcome as one line for logs and users: "(code) message", with the status's own code and message.
KELO_EXPORT QString errorMessage(rest::RestReplyStatus const& status);

} // namespace kelo
