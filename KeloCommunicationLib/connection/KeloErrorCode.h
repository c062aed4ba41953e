#pragma once

#include <cstdint>

/// The outcome of a call as one number. The list is not closed: any other value is the service's own error code.
enum class KeloErrorCode : std::int32_t
{
    NoConnection = 0,      ///< the service could not be reached
    Success = 200,         ///< the call succeeded
    UnreadableError = 1000 ///< the service answered with an error whose body held no readable code
};
